// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <memory>
#include <string>
#include <vector>

#include "gis/features.h"
#include "tests/support/memory_files.h"

namespace velmora::test {

// What a table holds; with shapes it is a layer, one ring (or one point) a record.
struct TableContent {
    std::vector<Field> fields;
    std::vector<std::vector<FieldValue>> records;
    bool layer = false;
    bool polygons = false;
    std::string crs;
    std::vector<std::vector<Point>> rings;
};

using ContentPtr = std::shared_ptr<const TableContent>;

// Keeps tables behind the files of a file system: a file holds the mark of its content, so that it
// may be copied and deleted like any other. Field widths bind nobody.
class FakeTables {
  public:
    explicit FakeTables(MemoryFiles& files) : files_(files) {}
    bool exists(const std::string& path) const { return files_.fileExists(path); }
    // Throws PlatformError when the file is missing or no table.
    ContentPtr content(const std::string& path) const;
    void store(const std::string& path, TableContent content);
    void remove(const std::string& path) { files_.deleteFile(path); }
    const MemoryFiles& files() const { return files_; }

  private:
    MemoryFiles& files_;
    std::map<std::string, ContentPtr> byMark_;
};

}  // namespace velmora::test
