#include "update/FeedSignature.h"

#include <QByteArrayView>
#include <QList>

#include <sodium.h>

namespace quillmark {
namespace {

constexpr QByteArrayView commentBegin = "<!-- sparkle-signatures:";
constexpr QByteArrayView commentEnd = "-->";

struct Signature {
    QByteArray bytes;
    qsizetype length{}; // of what is signed, from the list's start
};

std::optional<QByteArray> fromBase64(const QByteArray& text, std::size_t size)
{
    const auto decoded =
        QByteArray::fromBase64Encoding(text, QByteArray::AbortOnBase64DecodingErrors);
    if (!decoded || static_cast<std::size_t>(decoded.decoded.size()) != size) return std::nullopt;
    return decoded.decoded;
}

/// The last comment of its kind, which a publisher's tool has put behind the list.
std::optional<Signature> signatureOf(const QByteArray& feed)
{
    const qsizetype begin = feed.lastIndexOf(commentBegin);
    if (begin < 0) return std::nullopt;
    const qsizetype fields = begin + commentBegin.size();
    const qsizetype end = feed.indexOf(commentEnd, fields);
    if (end < 0) return std::nullopt;

    Signature signature;
    for (const QByteArray& line : feed.mid(fields, end - fields).split('\n')) {
        const qsizetype colon = line.indexOf(':');
        const QByteArray name = line.left(colon).trimmed();
        const QByteArray value = line.mid(colon + 1).trimmed();
        if (name == "edSignature")
            signature.bytes = fromBase64(value, crypto_sign_BYTES).value_or(QByteArray());
        else if (name == "length")
            signature.length = value.toLongLong();
    }
    if (signature.bytes.isEmpty() || signature.length <= 0 || signature.length > begin)
        return std::nullopt;
    return signature;
}

const unsigned char* octets(const QByteArray& bytes)
{
    return reinterpret_cast<const unsigned char*>(bytes.constData());
}

} // namespace

std::optional<QByteArray> signedPart(const QByteArray& feed, const QByteArray& publicKey)
{
    const auto key = fromBase64(publicKey, crypto_sign_PUBLICKEYBYTES);
    const auto signature = signatureOf(feed);
    if (!key || !signature || sodium_init() < 0) return std::nullopt;
    const auto length = static_cast<unsigned long long>(signature->length);
    if (crypto_sign_verify_detached(octets(signature->bytes), octets(feed), length, octets(*key)) !=
        0)
        return std::nullopt;
    return feed.left(signature->length);
}

} // namespace quillmark
