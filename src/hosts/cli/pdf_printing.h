// SPDX-License-Identifier: MIT
// A page as a PDF file, by a browser without a window.
#pragma once

#include <string>

#include "gis/files.h"

namespace velmora::cli {

// The first of the browsers that can do it in PATH. Throws PlatformError when there is none.
std::string printingBrowser();

// Prints the page with all that is folded open. The file is there whole or not at all, and an older
// one of that name is replaced. Throws PlatformError.
void printPdf(IFileSystem& files, const std::string& browser, const std::string& page,
              const std::string& file);

}  // namespace velmora::cli
