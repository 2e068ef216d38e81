#include "platform/crypto/SealedBox.h"

#include <array>
#include <gtest/gtest.h>
#include <string>

namespace MirrowvaleAuthenticator {

// Short boxes are the fuzz target's.
TEST(SealedBox, opensInPiecesWhateverItsSize)
{
    constexpr std::array<std::uint8_t, sealingKeySize> key{1, 2, 3};
    for (const std::size_t size : {4095, 4096, 4097, 8192, 20'000}) {
        SCOPED_TRACE(size);
        const std::string plaintext(size, 'p');
        const auto box = seal(SealingKey(key), "context", plaintext);
        EXPECT_EQ(std::string(unseal(SealingKey(key), "context", box).value()), plaintext);
        EXPECT_TRUE(opens(SealingKey(key), "context", box));
        EXPECT_FALSE(opens(SealingKey(key), "context", std::string_view(box).substr(0, box.size() - 1)));
        for (const std::size_t position : {std::size_t(0), box.size() / 2, box.size() - 1}) {
            auto damaged = box;
            damaged[position] = static_cast<char>(damaged[position] ^ 1);
            EXPECT_FALSE(opens(SealingKey(key), "context", damaged)) << position;
        }
    }
}

} // namespace MirrowvaleAuthenticator
