// Repeats the inputs of a folder, as libFuzzer would. The inputs abort where something is wrong.
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

#include "framesTaken.h"

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv);
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size);

int main(int argc, char **argv) {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s FOLDER\n", argv[0]);
        return 2;
    }
    LLVMFuzzerInitialize(&argc, &argv);
    std::size_t inputs = 0;
    try {
        for (const auto &entry : std::filesystem::directory_iterator(argv[1])) {
            std::ifstream file(entry.path(), std::ios::binary);
            const std::vector<char> bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
            std::fprintf(stderr, "%s\n", entry.path().c_str());
            const std::vector<std::uint8_t> input(bytes.begin(), bytes.end());
            LLVMFuzzerTestOneInput(input.data(), input.size());
            ++inputs;
        }
    } catch (const std::exception &failure) {
        std::fprintf(stderr, "%s\n", failure.what());
        return 1;
    }
    std::printf("%zu inputs\n", inputs);
    return inputs > 0 && fuzz::framesTaken() > 0 ? 0 : 1; // else they test nothing
}
