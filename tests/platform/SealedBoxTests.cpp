#include "platform/SealedBox.h"

#include <array>
#include <gtest/gtest.h>
#include <string>

namespace MirrowvaleAuthenticator {

namespace {

constexpr std::array<std::uint8_t, sealingKeySize> key{1, 2, 3};
constexpr std::array<std::uint8_t, sealingKeySize> otherKey{1, 2, 4};

/// Whether a box opens, on both roads.
bool opensEitherWay(SealingKey with, std::string_view context, std::string_view box)
{
    const bool isOpened = unseal(with, context, SecretString(box)).has_value();
    EXPECT_EQ(opens(with, context, box), isOpened) << box.size();
    return isOpened;
}

} // namespace

TEST(SealedBox, opensForItsKeyAndContextWhateverItsSize)
{
    for (const std::size_t size : {0, 1, 63, 64, 65, 4095, 4096, 4097, 8192, 20'000}) {
        SCOPED_TRACE(size);
        const std::string plaintext(size, 'p');
        const auto box = seal(SealingKey(key), "context", plaintext);
        EXPECT_EQ(std::string(unseal(SealingKey(key), "context", box).value()), plaintext);
        EXPECT_TRUE(opensEitherWay(SealingKey(key), "context", box));
        EXPECT_FALSE(opensEitherWay(SealingKey(otherKey), "context", box));
        EXPECT_FALSE(opensEitherWay(SealingKey(key), "contexts", box));
        EXPECT_FALSE(opensEitherWay(SealingKey(key), "context", std::string_view(box).substr(1)));
        EXPECT_FALSE(
            opensEitherWay(SealingKey(key), "context", std::string_view(box).substr(0, box.size() - 1)));
        for (const std::size_t position : {std::size_t(0), std::size_t(8), box.size() / 2, box.size() - 1}) {
            auto damaged = box;
            damaged[position] = static_cast<char>(damaged[position] ^ 1);
            EXPECT_FALSE(opensEitherWay(SealingKey(key), "context", damaged)) << position;
        }
    }
    EXPECT_FALSE(opensEitherWay(SealingKey(key), "context", ""));
}

} // namespace MirrowvaleAuthenticator
