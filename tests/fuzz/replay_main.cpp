// SPDX-License-Identifier: MIT
// Runs a fuzzer's harness over the files of its corpus, with any compiler: replay FOLDER.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

int main(int argc, char** argv) {
    namespace fs = std::filesystem;
    if (argc != 2 || !fs::is_directory(argv[1])) {
        std::fprintf(stderr, "replay: name the folder of a corpus\n");
        return 2;
    }
    std::vector<fs::path> inputs;
    for (const auto& entry : fs::directory_iterator(argv[1])) inputs.push_back(entry.path());
    std::ranges::sort(inputs);
    for (const fs::path& path : inputs) {
        std::printf("%s\n", path.c_str());
        std::fflush(stdout);  // names the input that ends the program
        std::ifstream file(path, std::ios::binary);
        const std::vector<char> bytes((std::istreambuf_iterator<char>(file)), {});
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    std::printf("%zu inputs\n", inputs.size());
    return inputs.empty() ? 1 : 0;
}
