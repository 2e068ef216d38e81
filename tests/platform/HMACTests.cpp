#include "platform/HMAC.h"

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
        result += "0123456789abcdef"[byte >> 4];
        result += "0123456789abcdef"[byte & 15];
    }
    return result;
}

} // namespace

// RFC 2202 and RFC 4231, and keys around the block sizes of 64 and 128 bytes.
TEST(HMAC, givesThePublishedCodes)
{
    const std::string longKeyText = "Test Using Larger Than Block-Size Key - Hash Key First";
    const std::string eightZeros(8, '\0');
    struct {
        std::string key, message;
        const char *sha1, *sha256, *sha512;
    } const table[] = {{std::string(20, '\x0b'), "Hi There", "b617318655057264e28bc0b6fb378c8ef146be00",
                        "b0344c61d8db38535ca8afceaf0bf12b881dc200c9833da726e9376c2e32cff7",
                        "87aa7cdea5ef619d4ff0b4241a1d6cb02379f4e2ce4ec2787ad0b30545e17cde"
                        "daa833b7d6b8a702038b274eaea3f4e4be9d914eeb61f1702e696c203a126854"},
                       {"Jefe", "what do ya want for nothing?", "effcdf6ae5eb2fa2d27416d5f184df9c259a7c79",
                        "5bdcc146bf60754e6a042426089575c75a003f089d2739839dec58b964ec3843",
                        "164b7a7bfcf819e2e395fbe73b56e0a387bd64222e831fd610270cd7ea250554"
                        "9758bf75c05a994a6d034f65f8f0e6fdcaeab1a34d4a6b4b636e070a38bce737"},
                       {std::string(131, '\xaa'), longKeyText, "90d0dace1c1bdc957339307803160335bde6df2b",
                        "60e431591ee0b67f0d8a26aacbf5b77f8e0bc6213728c5140546040f0ee37f54",
                        "80b24263c7c1a3ebb71493c1dd7be8b49b46d1f41b4aeec1121b013783f8f352"
                        "6b56d037e05f2598bd0fd2215d6a1e5295e64f73f63f0aec8b915a985d786598"},
                       {std::string(64, '\xaa'), eightZeros, "00264b75e153f623fa41e60a9eb3dda5c24f1bd5",
                        "186254f09fbe5b75bb6af73cd3631627c4dd7bd2b361983e3dc7d1ca424b499f",
                        "f0b0cfec6738c665d4d1602beeeb36a48078e538d010d9b3f5f930d8167d0079"
                        "21db35aebe8933c6df7617a54514d7c09ef3353a945af4b9c3883fd29029da37"},
                       {std::string(129, '\xaa'), eightZeros, "feceb43f9b1675d6bfd80d93396d799527e7d56d",
                        "e66e88e6e9d56d6f049841adb24d9da8bba133fb3d1a65be9e13e6c8dbed7d32",
                        "f268854a0cf42b5eb83e01ab43a0b3773f3a6144c88c808d5c102879a240e798"
                        "f6930a42aa7b4854f0348fd31ade0f814c6c1f431b71e64dfd093b627d164e93"}};
    for (const auto& row : table) {
        const auto code = [&](HashFunction hash) {
            return hexadecimal(AuthenticationCode(hash, bytes(row.key), bytes(row.message)).bytes());
        };
        SCOPED_TRACE(row.key.size());
        EXPECT_EQ(code(HashFunction::sha1), row.sha1);
        EXPECT_EQ(code(HashFunction::sha256), row.sha256);
        EXPECT_EQ(code(HashFunction::sha512), row.sha512);
    }
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
