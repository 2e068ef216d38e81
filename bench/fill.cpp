// Writes a stored list for the application to start with, and prints the size of its JSON in bytes.
//   bench_fill FOLDER COUNT

#include "bench/SampleTokens.h"
#include "bench/SealedHome.h"
#include "core/StoredForm.h"
#include "storage/KeychainTokenStore.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>

int main(int argc, char* argv[])
{
    using namespace MirrowvaleAuthenticator;
    if (argc != 3) {
        std::fputs("usage: bench_fill FOLDER COUNT\n", stderr);
        return EXIT_FAILURE;
    }
    try {
        useSealedHome(std::filesystem::absolute(argv[1]));
        const auto tokens = sampleTokens(std::stoul(argv[2]));
        KeychainTokenStore("app.mirrowvale.authenticator.tokens", "vault").save(tokens);
        std::printf("%zu\n", encodeTokens(tokens).size());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
