#include "platform/crypto/HMAC.h"

#include <nettle/hmac.h>

namespace MirrowvaleAuthenticator {

namespace {

template <typename Context, auto setKey, auto update, auto digest, std::size_t digestSize>
std::size_t authenticate(std::span<const std::uint8_t> key, std::span<const std::uint8_t> message,
                         std::uint8_t* result)
{
    Wiped<Context> context;
    setKey(&*context, key.size(), key.data());
    update(&*context, message.size(), message.data());
    digest(&*context, digestSize, result);
    return digestSize;
}

} // namespace

AuthenticationCode::AuthenticationCode(HashFunction hash, std::span<const std::uint8_t> key,
                                       std::span<const std::uint8_t> message)
{
    switch (hash) {
    case HashFunction::sha1:
        size_ = authenticate<hmac_sha1_ctx, hmac_sha1_set_key, hmac_sha1_update, hmac_sha1_digest,
                             SHA1_DIGEST_SIZE>(key, message, storage_->data());
        return;
    case HashFunction::sha256:
        size_ = authenticate<hmac_sha256_ctx, hmac_sha256_set_key, hmac_sha256_update, hmac_sha256_digest,
                             SHA256_DIGEST_SIZE>(key, message, storage_->data());
        return;
    case HashFunction::sha512:
        size_ = authenticate<hmac_sha512_ctx, hmac_sha512_set_key, hmac_sha512_update, hmac_sha512_digest,
                             SHA512_DIGEST_SIZE>(key, message, storage_->data());
        return;
    }
    __builtin_unreachable();
}

} // namespace MirrowvaleAuthenticator
