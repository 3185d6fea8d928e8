// Runs a target over the files of a folder, without a fuzzer: every compiler can build it, and the tests use it.

#include "Fuzz.h"

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

int main(int argc, char* argv[])
{
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return 2;
    }
    int count = 0;
    for (auto const& entry : std::filesystem::directory_iterator(argv[1])) {
        std::ifstream file(entry.path(), std::ios::binary);
        std::string const input(std::istreambuf_iterator<char>(file), {});
        // Every beginning of it is an input too: cut short is what files and messages get.
        auto const run = [&](std::size_t size) {
            LLVMFuzzerTestOneInput(reinterpret_cast<std::uint8_t const*>(input.data()), size);
        };
        for (std::size_t size = 0; size < input.size(); size += input.size() / 64 + 1)
            run(size);
        run(input.size());
        ++count;
    }
    std::printf("%d inputs and their beginnings\n", count);
    return count > 0 ? 0 : 1;
}
