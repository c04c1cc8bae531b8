#include "Publisher.h"

#include <sodium.h>

#include <gtest/gtest.h>

namespace quillmark::test {
namespace {

unsigned char* octets(QByteArray& bytes)
{
    return reinterpret_cast<unsigned char*>(bytes.data());
}

const unsigned char* octets(const QByteArray& bytes)
{
    return reinterpret_cast<const unsigned char*>(bytes.data());
}

} // namespace

Publisher::Publisher()
    : m_publicKey(crypto_sign_PUBLICKEYBYTES, '\0'), m_secretKey(crypto_sign_SECRETKEYBYTES, '\0')
{
    EXPECT_GE(sodium_init(), 0);
    EXPECT_EQ(crypto_sign_keypair(octets(m_publicKey), octets(m_secretKey)), 0);
    m_publicKey = m_publicKey.toBase64();
}

QByteArray Publisher::signatureOf(const QByteArray& text) const
{
    QByteArray signature(crypto_sign_BYTES, '\0');
    EXPECT_EQ(crypto_sign_detached(octets(signature), nullptr, octets(text),
                                   static_cast<unsigned long long>(text.size()),
                                   octets(m_secretKey)),
              0);
    return signature.toBase64();
}

QByteArray Publisher::comment(const QByteArray& signature, qsizetype length)
{
    return "<!-- sparkle-signatures:\nedSignature: " + signature +
           "\nlength: " + QByteArray::number(length) + "\n-->\n";
}

QByteArray Publisher::withSignature(const QByteArray& text) const
{
    return text + comment(signatureOf(text), text.size());
}

} // namespace quillmark::test
