// SPDX-License-Identifier: MIT
#include "examples/basin/sample_folder.h"

#include <filesystem>
#include <fstream>
#include <iterator>

#include "gis/errors.h"
#include "gis/text.h"

namespace velmora::examples {

namespace {

constexpr const char* kMark = ".velmora-demo";

bool isMarked(const std::string& folder) {
    std::ifstream file(joinedPath(folder, kMark), std::ios::binary);
    const std::string place{std::istreambuf_iterator<char>(file), {}};
    return place == folder + "\n";
}

}  // namespace

void claimSampleFolder(const std::string& given) {
    namespace fs = std::filesystem;
    const std::string folder =
        given.size() > 1 && given.ends_with('/') ? given.substr(0, given.size() - 1) : given;
    try {
        fs::create_directories(folder);
        if (isMarked(folder)) return;
        if (!fs::is_empty(folder)) {
            throw PlatformError(
                folder +
                " is not empty, and no sample basin was made there that may be made anew: give "
                "another folder, or delete this one when nothing in it is needed");
        }
    } catch (const fs::filesystem_error& e) {
        throw PlatformError("Cannot make the folder " + folder + ": " + e.code().message());
    }
    std::ofstream mark(joinedPath(folder, kMark), std::ios::binary);
    mark << folder << "\n";
    if (!mark.flush()) throw PlatformError("Cannot write in the folder " + folder);
}

}  // namespace velmora::examples
