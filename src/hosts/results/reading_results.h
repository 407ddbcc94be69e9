// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>

#include "gis/files.h"

namespace velmora {

// Held while results are read, so that no run changes them meanwhile; nothing where nobody could
// write into the folder. Throws PlatformError while a run works there.
std::unique_ptr<IFolderLock> readingResults(IFileSystem& files, const std::string& folder);

}  // namespace velmora
