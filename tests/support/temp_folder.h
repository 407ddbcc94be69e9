// SPDX-License-Identifier: MIT
#pragma once

#include <string>

namespace velmora::test {

// A folder of its own that goes when the test ends.
class TempFolder {
  public:
    TempFolder();
    ~TempFolder();
    TempFolder(const TempFolder&) = delete;
    TempFolder& operator=(const TempFolder&) = delete;
    const std::string& path() const { return path_; }
    std::string file(const std::string& name) const { return path_ + "/" + name; }

  private:
    std::string path_;
};

std::string contentOf(const std::string& path);
void write(const std::string& path, const std::string& content);

}  // namespace velmora::test
