// Stands in for the fuzzer in builds without one: feeds a target its seeds, each also cut short at every
// byte.

#include "fuzz/Fuzzing.h"

#include <fstream>
#include <iostream>
#include <iterator>
#include <span>
#include <vector>

int main(int count, char** arguments)
{
    for (const auto* path : std::span(arguments, static_cast<std::size_t>(count)).subspan(1)) {
        std::cerr << path << std::endl; // the last one is what a failure is of
        std::ifstream file(path, std::ios::binary);
        const std::vector<std::uint8_t> seed(std::istreambuf_iterator<char>(file), {});
        for (std::size_t size = 0; size <= seed.size(); ++size) {
            const std::vector<std::uint8_t> input(seed.data(), seed.data() + size);
            LLVMFuzzerTestOneInput(input.data(), input.size());
        }
    }
}
