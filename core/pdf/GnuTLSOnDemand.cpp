// Stands in for GnuTLS in programs that contain libqpdf: libqpdf wants it for encrypted documents
// only, but to load and set up GnuTLS takes longer than all the rest of starting. Here is what
// libqpdf calls of it; GnuTLS itself is loaded at the first call. Where it is not installed,
// encryption fails to start, and an encrypted document cannot be opened.

#include <cstddef>
#include <type_traits>

#include <dlfcn.h>
#include <gnutls/crypto.h>
#include <gnutls/gnutls.h>

namespace {

struct GnuTLS {
    decltype(&gnutls_cipher_init) cipherInit{};
    decltype(&gnutls_cipher_encrypt2) cipherEncrypt{};
    decltype(&gnutls_cipher_decrypt2) cipherDecrypt{};
    decltype(&gnutls_cipher_deinit) cipherDeinit{};
    decltype(&gnutls_cipher_get_key_size) cipherKeySize{};
    decltype(&gnutls_hash_init) hashInit{};
    decltype(&gnutls_hash) hash{};
    decltype(&gnutls_hash_deinit) hashDeinit{};
    decltype(&gnutls_rnd) random{};
    decltype(&gnutls_strerror) errorText{};
};

/// Nothing but null pointers when GnuTLS cannot be loaded.
GnuTLS load()
{
    GnuTLS loaded;
    void* const library = dlopen(QUILLMARK_GNUTLS, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) return loaded;
    const auto find = [library](auto& function, const char* name) {
        using Function = std::remove_reference_t<decltype(function)>;
        function = reinterpret_cast<Function>(dlsym(library, name));
    };
    find(loaded.cipherInit, "gnutls_cipher_init");
    find(loaded.cipherEncrypt, "gnutls_cipher_encrypt2");
    find(loaded.cipherDecrypt, "gnutls_cipher_decrypt2");
    find(loaded.cipherDeinit, "gnutls_cipher_deinit");
    find(loaded.cipherKeySize, "gnutls_cipher_get_key_size");
    find(loaded.hashInit, "gnutls_hash_init");
    find(loaded.hash, "gnutls_hash");
    find(loaded.hashDeinit, "gnutls_hash_deinit");
    find(loaded.random, "gnutls_rnd");
    find(loaded.errorText, "gnutls_strerror");
    return loaded;
}

const GnuTLS& gnutls()
{
    static const GnuTLS loaded = load();
    return loaded;
}

} // namespace

// A cipher and a hash that could not be made are not used either: only making them can be asked of
// a GnuTLS that is not there. Parameters have the names of GnuTLS's own declarations.
extern "C" {

int gnutls_cipher_init(gnutls_cipher_hd_t* handle, gnutls_cipher_algorithm_t cipher,
                       const gnutls_datum_t* key, const gnutls_datum_t* iv)
{
    const auto function = gnutls().cipherInit;
    return function == nullptr ? GNUTLS_E_UNIMPLEMENTED_FEATURE : function(handle, cipher, key, iv);
}

int gnutls_cipher_encrypt2(gnutls_cipher_hd_t handle, const void* text, std::size_t textlen,
                           void* ciphertext, std::size_t ciphertextlen)
{
    return gnutls().cipherEncrypt(handle, text, textlen, ciphertext, ciphertextlen);
}

int gnutls_cipher_decrypt2(gnutls_cipher_hd_t handle, const void* ciphertext,
                           std::size_t ciphertextlen, void* text, std::size_t textlen)
{
    return gnutls().cipherDecrypt(handle, ciphertext, ciphertextlen, text, textlen);
}

void gnutls_cipher_deinit(gnutls_cipher_hd_t handle)
{
    gnutls().cipherDeinit(handle);
}

std::size_t gnutls_cipher_get_key_size(gnutls_cipher_algorithm_t algorithm)
{
    const auto function = gnutls().cipherKeySize;
    return function == nullptr ? 0 : function(algorithm);
}

int gnutls_hash_init(gnutls_hash_hd_t* dig, gnutls_digest_algorithm_t algorithm)
{
    const auto function = gnutls().hashInit;
    return function == nullptr ? GNUTLS_E_UNIMPLEMENTED_FEATURE : function(dig, algorithm);
}

int gnutls_hash(gnutls_hash_hd_t handle, const void* text, std::size_t textlen)
{
    return gnutls().hash(handle, text, textlen);
}

void gnutls_hash_deinit(gnutls_hash_hd_t handle, void* digest)
{
    gnutls().hashDeinit(handle, digest);
}

int gnutls_rnd(gnutls_rnd_level_t level, void* data, std::size_t len)
{
    const auto function = gnutls().random;
    return function == nullptr ? GNUTLS_E_UNIMPLEMENTED_FEATURE : function(level, data, len);
}

const char* gnutls_strerror(int error)
{
    const auto function = gnutls().errorText;
    return function == nullptr ? "GnuTLS is not installed" : function(error);
}

} // extern "C"
