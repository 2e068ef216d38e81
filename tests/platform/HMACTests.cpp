#include "platform/crypto/HMAC.h"

#include "platform/text/Hexadecimal.h"

#include <gtest/gtest.h>
#include <memory>
#include <string>
#include <string_view>

namespace MirrowvaleAuthenticator {

namespace {

std::span<const std::uint8_t> bytes(const std::string& text)
{
    return {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()};
}

std::string hexadecimal(std::span<const std::uint8_t> bytes)
{
    std::string result;
    for (const auto byte : bytes) {
        appendHexadecimal(result, byte);
    }
    return result;
}

} // namespace

// RFC 2202 and RFC 4231; the published one-time codes tell the rest.
TEST(HMAC, takesAKeyLargerThanABlock)
{
    const auto code = [](HashFunction hash) {
        const AuthenticationCode made(hash, bytes(std::string(131, '\xaa')),
                                      bytes("Test Using Larger Than Block-Size Key - Hash Key First"));
        return hexadecimal(made.bytes());
    };
    EXPECT_EQ(code(HashFunction::sha1), "90D0DACE1C1BDC957339307803160335BDE6DF2B");
    EXPECT_EQ(code(HashFunction::sha256), "60E431591EE0B67F0D8A26AACBF5B77F8E0BC6213728C5140546040F0EE37F54");
    EXPECT_EQ(code(HashFunction::sha512),
              "80B24263C7C1A3EBB71493C1DD7BE8B49B46D1F41B4AEEC1121B013783F8F352"
              "6B56D037E05F2598BD0FD2215D6A1E5295E64F73F63F0AEC8B915A985D786598");
}

TEST(HMAC, wipesTheCodeWhenItGoes)
{
    alignas(AuthenticationCode) std::array<std::uint8_t, sizeof(AuthenticationCode)> memory{};
    auto* code = new (memory.data()) AuthenticationCode(HashFunction::sha512, bytes("key"), bytes("message"));
    const std::string value(code->bytes().begin(), code->bytes().end());
    const auto* const watched = reinterpret_cast<const char*>(std::launder(memory.data()));
    const auto holds = [&](std::size_t from) {
        return std::string_view(watched, memory.size()).find(value.substr(from, 16))
            != std::string_view::npos;
    };
    ASSERT_TRUE(holds(0) && holds(48));
    std::destroy_at(code);
    EXPECT_FALSE(holds(0) || holds(16) || holds(32) || holds(48));
}

} // namespace MirrowvaleAuthenticator
