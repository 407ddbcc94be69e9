// SPDX-License-Identifier: MIT
// Any arguments are understood, or end with a usage error. The input is one argument a line; what
// they ask for is not done.
#include <sstream>
#include <vector>

#include "hosts/cli/command_line.h"
#include "tests/fuzz/harness.h"

using namespace velmora;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<std::string> words = {"velmora"};
    std::istringstream input{std::string(fuzz::text(data, size))};
    for (std::string line; std::getline(input, line);) {
        words.push_back(line.substr(0, line.find('\0')));
    }
    std::vector<const char*> arguments;
    for (const std::string& word : words) arguments.push_back(word.c_str());
    cli::CommandLine commandLine;
    std::ostringstream out;
    std::ostringstream err;
    const auto ended =
        commandLine.parse(static_cast<int>(arguments.size()), arguments.data(), out, err);
    fuzz::require(!ended || *ended == 0 || !err.str().empty());  // no error without a word
    return 0;
}
