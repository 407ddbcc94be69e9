// SPDX-License-Identifier: MIT
#pragma once

#include <string>

#include "tests/support/folder.h"

namespace velmora::test {

// A folder of its own that goes when the test ends.
class TempFolder : public Folder {
  public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
};

std::string contentOf(const std::string& path);
void write(const std::string& path, const std::string& content);

}  // namespace velmora::test
