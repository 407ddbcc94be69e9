// SPDX-License-Identifier: MIT
#include "hosts/cli/output_file.h"

#include <exception>
#include <filesystem>

#include "gis/errors.h"
#include "platform/files/posix_file.h"

namespace velmora::cli {

void writeOutput(const std::string& file, const std::string& content) {
    const std::string unfinished = platform::unfinishedPath(file);
    try {
        platform::writeWholeFile(unfinished, content);
        std::filesystem::rename(unfinished, file);
    } catch (const std::exception& e) {
        platform::removeTree(unfinished);
        throw PlatformError("Cannot write " + file + ": " + e.what());
    }
}

}  // namespace velmora::cli
