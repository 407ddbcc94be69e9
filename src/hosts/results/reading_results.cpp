// SPDX-License-Identifier: MIT
#include "hosts/results/reading_results.h"

#include <unistd.h>

namespace velmora {

std::unique_ptr<IFolderLock> readingResults(IFileSystem& files, const std::string& folder) {
    if (::access(folder.c_str(), W_OK) != 0) return nullptr;
    return files.shareFolder(folder);
}

}  // namespace velmora
