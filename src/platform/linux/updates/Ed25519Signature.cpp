// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/linux/updates/Ed25519Signature.h"

#include <openssl/evp.h>

#include <memory>

namespace tolvane {

namespace {

struct KeyFree
{
    void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
};
struct ContextFree
{
    void operator()(EVP_MD_CTX* context) const { EVP_MD_CTX_free(context); }
};

const unsigned char* bytes(const QByteArray& data)
{
    return reinterpret_cast<const unsigned char*>(data.constData());
}

} // namespace

bool isValidEd25519Signature(const QByteArray& publicKey, const QByteArray& message, const QByteArray& signature)
{
    constexpr qsizetype keySize = 32;
    constexpr qsizetype signatureSize = 64;
    if (publicKey.size() != keySize || signature.size() != signatureSize)
        return false;
    const std::unique_ptr<EVP_PKEY, KeyFree> key(
        EVP_PKEY_new_raw_public_key(EVP_PKEY_ED25519, nullptr, bytes(publicKey), size_t(publicKey.size())));
    const std::unique_ptr<EVP_MD_CTX, ContextFree> context(EVP_MD_CTX_new());
    if (!key || !context)
        return false;
    // Ed25519 hashes inside the algorithm: no digest is named, and the message goes in one piece.
    if (EVP_DigestVerifyInit(context.get(), nullptr, nullptr, nullptr, key.get()) != 1)
        return false;
    return EVP_DigestVerify(context.get(), bytes(signature), size_t(signature.size()), bytes(message),
                            size_t(message.size())) == 1;
}

} // namespace tolvane
