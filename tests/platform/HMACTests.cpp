#include "platform/crypto/HMAC.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <memory>
#include <vector>

namespace MirrowvaleAuthenticator {

TEST(HMAC, wipesTheCodeWhenItGoes)
{
    alignas(AuthenticationCode) std::array<std::uint8_t, sizeof(AuthenticationCode)> memory{};
    const std::array<std::uint8_t, 3> text{'k', 'e', 'y'};
    auto* code = new (memory.data()) AuthenticationCode(HashFunction::sha512, text, text);
    const std::vector<std::uint8_t> value(code->bytes().begin(), code->bytes().end());
    const std::span<const std::uint8_t> watched(std::launder(memory.data()), memory.size());
    const auto holds = [&](std::size_t from) {
        return !std::ranges::search(watched, std::span(value).subspan(from, 16)).empty();
    };
    ASSERT_TRUE(holds(0) && holds(48));
    std::destroy_at(code);
    EXPECT_FALSE(holds(0) || holds(16) || holds(32) || holds(48));
}

} // namespace MirrowvaleAuthenticator
