// Loading and saving lists of 10 to 100,000 tokens, each beside its yardstick.
//   bench_storage FOLDER [benchmark options]

#include "bench/SampleTokens.h"
#include "bench/SealedHome.h"
#include "core/StoredForm.h"
#include "storage/KeychainTokenStore.h"
#include "storage/TokenStore.h"

#include <benchmark/benchmark.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>
#include <unistd.h>
#include <vector>

namespace {

using namespace MirrowvaleAuthenticator;

std::filesystem::path folder;

void require(bool holds, const char* what)
{
    if (!holds) {
        throw std::runtime_error(what);
    }
}

std::vector<AuthToken> tokensFor(const benchmark::State& state)
{
    return sampleTokens(static_cast<std::size_t>(state.range(0)));
}

/// What a start does with the stored list.
void loading(benchmark::State& state)
{
    KeychainTokenStore("app.mirrowvale.authenticator.tokens", "vault").save(tokensFor(state));
    TokenStore store;
    for (auto _ : state) {
        store.load();
    }
    require(store.tokens->size() == static_cast<std::size_t>(state.range(0)), "not loaded");
}

/// The JSON library's parse of the same bytes, and a plain sort of its issuers.
void parsingAndSorting(benchmark::State& state)
{
    const auto text = encodeTokens(tokensFor(state));
    for (auto _ : state) {
        const auto list = nlohmann::json::parse(text);
        std::vector<std::string_view> keys;
        keys.reserve(list.size());
        for (const auto& token : list) {
            keys.emplace_back(token.at("issuer").get_ref<const std::string&>());
        }
        std::ranges::sort(keys);
        benchmark::DoNotOptimize(keys);
    }
}

/// What every change of the list does.
void saving(benchmark::State& state)
{
    TokenStore store;
    store.tokens = tokensFor(state);
    store.persist();
    for (auto _ : state) {
        store.persist();
    }
    require(!*store.lastError, "not saved");
}

nlohmann::ordered_json documentOf(const AuthToken& token)
{
    return {{"id", token.id.string()},
            {"kind", rawValue(token.kind)},
            {"issuer", token.issuer},
            {"account", token.account},
            {"secretBase32", token.secretBase32},
            {"algorithm", rawValue(token.algorithm)},
            {"digits", token.digits},
            {"period", token.period},
            {"counter", token.counter},
            {"createdAt", token.createdAt.secondsSinceReferenceDate()}};
}

/// The JSON library's encoding, plus write plus flush of the same bytes.
void encodingAndWriting(benchmark::State& state)
{
    const auto tokens = tokensFor(state);
    const auto path = folder / "yardstick";
    for (auto _ : state) {
        auto document = nlohmann::ordered_json::array();
        for (const auto& token : tokens) {
            document.push_back(documentOf(token));
        }
        const auto text = document.dump();
        const int file = open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0600);
        require(file >= 0 && write(file, text.data(), text.size()) == static_cast<ssize_t>(text.size())
                    && fsync(file) == 0 && close(file) == 0,
                "not written");
    }
}

void encoding(benchmark::State& state)
{
    const auto tokens = tokensFor(state);
    for (auto _ : state) {
        benchmark::DoNotOptimize(encodeTokens(tokens));
    }
}

void decoding(benchmark::State& state)
{
    const auto text = encodeTokens(tokensFor(state));
    for (auto _ : state) {
        benchmark::DoNotOptimize(decodeTokens(text));
    }
}

void everyCount(benchmark::internal::Benchmark* growing)
{
    growing->RangeMultiplier(10)->Range(10, 100'000)->Unit(benchmark::kMicrosecond)->UseRealTime();
}

void tenThousand(benchmark::internal::Benchmark* single)
{
    single->Arg(10'000)->Unit(benchmark::kMicrosecond)->UseRealTime();
}

BENCHMARK(loading)->Name("load")->Apply(everyCount);
BENCHMARK(parsingAndSorting)->Name("parse and sort")->Apply(tenThousand);
BENCHMARK(saving)->Name("save")->Apply(everyCount);
BENCHMARK(encodingAndWriting)->Name("encode and write")->Apply(tenThousand);
BENCHMARK(encoding)->Name("encode")->Apply(tenThousand);
BENCHMARK(decoding)->Name("decode")->Apply(tenThousand);

} // namespace

int main(int argc, char* argv[])
{
    if (argc < 2 || argv[1][0] == '-') { // an option would become a folder of that name
        std::fputs("usage: bench_storage FOLDER [benchmark options]\n", stderr);
        return EXIT_FAILURE;
    }
    folder = std::filesystem::absolute(argv[1]);
    std::filesystem::create_directories(folder); // the yardstick may write first
    useSealedHome(folder);
    argv[1] = argv[0];
    int count = argc - 1;
    benchmark::Initialize(&count, argv + 1);
    benchmark::RunSpecifiedBenchmarks();
    return EXIT_SUCCESS;
}
