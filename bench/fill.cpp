// Writes a stored list for the application to start with, and prints the size of its JSON in bytes.
//   bench_fill FOLDER COUNT [keyring]    keyring: into that of the session, instead of a sealed file in the
//   folder

#include "bench/SampleTokens.h"
#include "bench/SealedHome.h"
#include "core/StoredForm.h"
#include "storage/KeychainTokenStore.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>

int main(int argc, char* argv[])
{
    using namespace MirrowvaleAuthenticator;
    const bool keyring = argc == 4 && argv[3] == std::string_view("keyring");
    if (argc != (keyring ? 4 : 3)) {
        std::fputs("usage: bench_fill FOLDER COUNT [keyring]\n", stderr);
        return EXIT_FAILURE;
    }
    try {
        const auto folder = std::filesystem::absolute(argv[1]);
        keyring ? useHome(folder) : useSealedHome(folder);
        const auto tokens = sampleTokens(std::stoul(argv[2]));
        KeychainTokenStore("app.mirrowvale.authenticator.tokens", "vault").save(tokens);
        std::printf("%zu\n", encodeTokens(tokens).size());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
