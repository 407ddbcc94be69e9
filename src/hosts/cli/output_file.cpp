// SPDX-License-Identifier: MIT
#include "hosts/cli/output_file.h"

#include <exception>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/files/posix_file.h"

namespace velmora::cli {

void writeOutput(const std::string& file, const std::string& content) {
    platform::sweepUnfinished(parentFolderName(file));
    const std::string unfinished = platform::unfinishedPath(file);
    try {
        platform::writeWholeFile(unfinished, content);
        platform::replaceDurably(unfinished, file);
    } catch (const std::exception& e) {
        platform::removeTree(unfinished);
        throw PlatformError("Cannot write " + file + ": " + e.what());
    }
}

}  // namespace velmora::cli
