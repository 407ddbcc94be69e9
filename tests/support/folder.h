// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <utility>

namespace velmora::test {

// A folder of a platform, by its path.
class Folder {
  public:
    explicit Folder(std::string path) : path_(std::move(path)) {}
    const std::string& path() const { return path_; }
    std::string file(const std::string& name) const { return path_ + "/" + name; }

  private:
    std::string path_;
};

}  // namespace velmora::test
