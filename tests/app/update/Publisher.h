// Somebody who signs lists of updates, with a key made for the occasion.
#pragma once

#include <QByteArray>

namespace quillmark::test {

class Publisher {
public:
    Publisher();

    [[nodiscard]] QByteArray publicKey() const { return m_publicKey; }
    /// In Base64.
    [[nodiscard]] QByteArray signatureOf(const QByteArray& text) const;
    /// The comment that carries a signature.
    [[nodiscard]] static QByteArray comment(const QByteArray& signature, qsizetype length);
    [[nodiscard]] QByteArray withSignature(const QByteArray& text) const;

private:
    QByteArray m_publicKey; // in Base64
    QByteArray m_secretKey;
};

} // namespace quillmark::test
