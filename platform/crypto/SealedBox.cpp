#include "platform/crypto/SealedBox.h"

#include "platform/crypto/RandomBytes.h"

#include <algorithm>
#include <array>
#include <nettle/chacha-poly1305.h>
#include <nettle/memops.h>
#include <string>

namespace MirrowvaleAuthenticator {

namespace {

constexpr std::string_view magic = "MVSEAL01";
constexpr std::size_t nonceSize = CHACHA_POLY1305_NONCE_SIZE;
constexpr std::size_t tagSize = CHACHA_POLY1305_DIGEST_SIZE;
constexpr std::size_t headerSize = magic.size() + nonceSize;

using Tag = std::array<std::uint8_t, tagSize>;

const std::uint8_t* bytes(std::string_view text)
{
    return reinterpret_cast<const std::uint8_t*>(text.data());
}

/// One use of the cipher, wiped when it goes.
class Cipher {
public:
    /// @param box  with its header, which holds the nonce
    Cipher(SealingKey key, std::string_view box, std::string_view context)
    {
        chacha_poly1305_set_key(&*state_, key.data());
        chacha_poly1305_set_nonce(&*state_, bytes(box.substr(magic.size())));
        // One run: the library takes associated data in blocks of 16, only the last of which may be short.
        const auto associated = std::string(magic).append(context);
        chacha_poly1305_update(&*state_, associated.size(), bytes(associated));
    }

    void encrypt(std::string_view from, char* to)
    {
        chacha_poly1305_encrypt(&*state_, from.size(), reinterpret_cast<std::uint8_t*>(to), bytes(from));
    }
    void decrypt(std::string_view from, char* to)
    {
        chacha_poly1305_decrypt(&*state_, from.size(), reinterpret_cast<std::uint8_t*>(to), bytes(from));
    }
    Tag tag()
    {
        Tag result;
        chacha_poly1305_digest(&*state_, result.size(), result.data());
        return result;
    }

    bool hasTagOf(std::string_view box)
    {
        const auto expected = tag();
        return memeql_sec(expected.data(), tagOf(box).data(), tagSize) != 0;
    }

private:
    Wiped<chacha_poly1305_ctx> state_;
};

/// What lies between the header and the tag, or nothing where there is no room for them.
std::optional<std::string_view> ciphertextOf(std::string_view box)
{
    if (box.size() < headerSize + tagSize || !box.starts_with(magic)) {
        return std::nullopt;
    }
    return box.substr(headerSize, box.size() - headerSize - tagSize);
}

} // namespace

SecretString seal(SealingKey key, std::string_view context, std::string_view plaintext)
{
    std::array<std::uint8_t, nonceSize> nonce;
    fillWithRandomBytes(nonce);

    SecretString box;
    box.reserve(headerSize + plaintext.size() + tagSize);
    box.append(magic).append(nonce.begin(), nonce.end());
    box.resize(headerSize + plaintext.size());
    Cipher cipher(key, box, context);
    cipher.encrypt(plaintext, box.data() + headerSize);
    const auto tag = cipher.tag();
    box.append(tag.begin(), tag.end());
    return box;
}

std::optional<SecretString> unseal(SealingKey key, std::string_view context, SecretString box)
{
    const auto ciphertext = ciphertextOf(box);
    if (!ciphertext) {
        return std::nullopt;
    }
    Cipher cipher(key, box, context);
    cipher.decrypt(*ciphertext, box.data() + headerSize);
    if (!cipher.hasTagOf(box)) {
        return std::nullopt;
    }
    box.resize(headerSize + ciphertext->size());
    box.erase(0, headerSize);
    return box;
}

std::string_view tagOf(std::string_view box)
{
    return box.substr(box.size() - std::min(box.size(), tagSize));
}

bool opens(SealingKey key, std::string_view context, std::string_view box)
{
    auto ciphertext = ciphertextOf(box);
    if (!ciphertext) {
        return false;
    }
    Cipher cipher(key, box, context);
    Wiped<std::array<char, 4096>> piece; // whole blocks of the cipher
    for (; !ciphertext->empty(); ciphertext->remove_prefix(std::min(piece->size(), ciphertext->size()))) {
        cipher.decrypt(ciphertext->substr(0, piece->size()), piece->data());
    }
    return cipher.hasTagOf(box);
}

} // namespace MirrowvaleAuthenticator
