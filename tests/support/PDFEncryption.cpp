#include "support/PDFEncryption.h"

// Clang does not accept JSON.hh as C++20, and nothing here needs it.
#define JSON_HH
class JSON;
#include <qpdf/QPDF.hh>
#include <qpdf/QPDFWriter.hh>

#include <memory>

namespace quillmark::test {

Bytes encrypted(const Bytes& pdf, Encryption encryption, const std::string& userPassword)
{
    const char* user = userPassword.c_str();
    const char* owner = "the owner";
    QPDF document;
    document.processMemoryFile("test", reinterpret_cast<const char*>(pdf.data()), pdf.size());
    QPDFWriter writer(document);
    writer.setOutputMemory();
    writer.setStaticID(true);
    writer.setStaticAesIV(true);
    writer.setStreamDataMode(qpdf_s_preserve);
    writer.setDecodeLevel(qpdf_dl_none);
    switch (encryption) {
    case Encryption::rc4With40Bits:
        writer.setR2EncryptionParametersInsecure(user, owner, true, true, true, true);
        break;
    case Encryption::rc4With128Bits:
        writer.setR3EncryptionParametersInsecure(user, owner, true, true, true, true, true, true,
                                                 qpdf_r3p_full);
        break;
    case Encryption::aesWith128Bits:
        writer.setR4EncryptionParametersInsecure(user, owner, true, true, true, true, true, true,
                                                 qpdf_r3p_full, true, true);
        break;
    case Encryption::aesWith256Bits:
        writer.setR6EncryptionParameters(user, owner, true, true, true, true, true, true,
                                         qpdf_r3p_full, true);
        break;
    }
    writer.write();
    const auto buffer = writer.getBufferSharedPointer();
    const auto bytes = std::as_bytes(std::span(buffer->getBuffer(), buffer->getSize()));
    return {bytes.begin(), bytes.end()};
}

} // namespace quillmark::test
