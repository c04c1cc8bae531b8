// The signature of a list of updates, for builds that know their publisher's key.
#pragma once

#include <QByteArray>

#include <optional>

namespace quillmark {

/// The part of a list that its publisher has signed (Ed25519, RFC 8032), without the signature,
/// which stands in a comment behind it. Absent when there is no such comment, or when it was not
/// made with the publisher's secret key. `publicKey` is 32 bytes in Base64; with anything else no
/// signature holds.
[[nodiscard]] std::optional<QByteArray> signedPart(const QByteArray& feed,
                                                   const QByteArray& publicKey);

} // namespace quillmark
