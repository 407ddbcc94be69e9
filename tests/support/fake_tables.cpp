// SPDX-License-Identifier: MIT
#include "tests/support/fake_tables.h"

#include <utility>

#include "gis/errors.h"

namespace velmora::test {

ContentPtr FakeTables::content(const std::string& path) const {
    const auto file = files_.files.find(path);
    if (file == files_.files.end()) throw PlatformError("There is no table " + path);
    const auto found = byMark_.find(file->second);
    if (found == byMark_.end()) throw PlatformError("The file " + path + " is no table");
    return found->second;
}

void FakeTables::store(const std::string& path, TableContent content) {
    const std::string mark = "table " + std::to_string(byMark_.size());
    byMark_[mark] = std::make_shared<const TableContent>(std::move(content));
    files_.files[path] = mark;
}

}  // namespace velmora::test
