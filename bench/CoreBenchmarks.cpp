// The core's hot paths, each beside its yardstick.

#include "bench/AllocationCount.h"
#include "core/Base32.h"
#include "core/CodeGeneration.h"
#include "core/OTPAuthURI.h"

#include <benchmark/benchmark.h>
#include <nettle/hmac.h>
#include <uriparser/Uri.h>

#include <array>
#include <cstring>
#include <string>
#include <string_view>

namespace {

using namespace MirrowvaleAuthenticator;

constexpr std::string_view key = "12345678901234567890";
constexpr std::string_view keyBase32 = "GEZDGNBVGY3TQOJQGEZDGNBVGY3TQOJQ";
constexpr std::string_view uri = "otpauth://totp/Northwind%20Mail:person42@example.com"
                                 "?secret=GEZDGNBVGY3TQOJQGEZDGNBVGY3TQOJQ&issuer=Northwind%20Mail"
                                 "&algorithm=SHA1&digits=6&period=30";

template <AuthToken::Algorithm algorithm>
void generating(benchmark::State& state)
{
    std::uint64_t counter = 55'555'555;
    for (auto _ : state) {
        benchmark::DoNotOptimize(generateOTP(keyBase32, ++counter, algorithm, 6));
    }
}
BENCHMARK(generating<AuthToken::Algorithm::sha1>)->Name("code SHA1");
BENCHMARK(generating<AuthToken::Algorithm::sha256>)->Name("code SHA256");
BENCHMARK(generating<AuthToken::Algorithm::sha512>)->Name("code SHA512");

template <typename Context, auto setKey, auto update, auto digest, std::size_t size>
void authenticating(benchmark::State& state)
{
    std::uint64_t counter = 55'555'555;
    for (auto _ : state) {
        ++counter;
        std::array<std::uint8_t, 8> message{};
        std::memcpy(message.data(), &counter, message.size());
        std::array<std::uint8_t, size> mac{};
        Context context;
        setKey(&context, key.size(), reinterpret_cast<const std::uint8_t*>(key.data()));
        update(&context, message.size(), message.data());
        digest(&context, mac.size(), mac.data());
        benchmark::DoNotOptimize(mac);
    }
}
BENCHMARK(authenticating<hmac_sha1_ctx, hmac_sha1_set_key, hmac_sha1_update, hmac_sha1_digest, 20>)
    ->Name("HMAC SHA1");
BENCHMARK(authenticating<hmac_sha256_ctx, hmac_sha256_set_key, hmac_sha256_update, hmac_sha256_digest, 32>)
    ->Name("HMAC SHA256");
BENCHMARK(authenticating<hmac_sha512_ctx, hmac_sha512_set_key, hmac_sha512_update, hmac_sha512_digest, 64>)
    ->Name("HMAC SHA512");

void allocatingForCode(benchmark::State& state)
{
    AuthToken token;
    token.secretBase32 = keyBase32;
    const auto now = Date::now();
    const auto before = allocationCount();
    for (auto _ : state) {
        benchmark::DoNotOptimize(currentCode(token, now));
    }
    state.counters["allocations"] = benchmark::Counter(static_cast<double>(allocationCount() - before),
                                                       benchmark::Counter::kAvgIterations);
}
BENCHMARK(allocatingForCode)->Name("current code");

void decoding(benchmark::State& state)
{
    std::string text(keyBase32);
    std::array<std::uint8_t, base32DecodedCapacity(keyBase32)> output{};
    for (auto _ : state) {
        benchmark::DoNotOptimize(text);
        benchmark::DoNotOptimize(decodeBase32(text, output));
        benchmark::DoNotOptimize(output);
    }
}
BENCHMARK(decoding)->Name("Base32");

void copyingAndLookingUp(benchmark::State& state)
{
    std::array<std::uint8_t, 256> table{};
    for (std::size_t index = 0; index < table.size(); ++index) {
        table[index] = static_cast<std::uint8_t>(index * 7);
    }
    std::string text(keyBase32);
    std::string result(key);
    std::array<std::uint8_t, key.size()> output{};
    for (auto _ : state) {
        benchmark::DoNotOptimize(text);
        benchmark::DoNotOptimize(result);
        std::uint8_t seen = 0;
        for (const char character : text) {
            seen |= table[static_cast<unsigned char>(character)];
        }
        std::memcpy(output.data(), result.data(), output.size());
        benchmark::DoNotOptimize(seen);
        benchmark::DoNotOptimize(output);
    }
}
BENCHMARK(copyingAndLookingUp)->Name("copy and look-ups");

void parsingWithIdentifier(benchmark::State& state)
{
    const auto id = UUID::random();
    const auto now = Date::now();
    for (auto _ : state) {
        benchmark::DoNotOptimize(parseOTPAuthURI(uri, id, now));
    }
}
BENCHMARK(parsingWithIdentifier)->Name("otpauth URI with an identifier");

void parsingWithTheLibrary(benchmark::State& state)
{
    for (auto _ : state) {
        UriUriA parsed;
        benchmark::DoNotOptimize(uriParseSingleUriExA(&parsed, uri.data(), uri.data() + uri.size(), nullptr));
        uriFreeUriMembersA(&parsed);
    }
}
BENCHMARK(parsingWithTheLibrary)->Name("URI library");

} // namespace

BENCHMARK_MAIN();
