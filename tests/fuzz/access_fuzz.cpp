// SPDX-License-Identifier: MIT
// An Access file of any content is copied into a database, or refused.
#include <sqlite3.h>

#include <memory>

#include "platform/tables/access_reader.h"
#include "tests/fuzz/harness.h"

using namespace velmora;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string path = fuzz::memoryFolder().write("f.mdb", fuzz::text(data, size));
    sqlite3* opened = nullptr;
    sqlite3_open(":memory:", &opened);
    const std::unique_ptr<sqlite3, int (*)(sqlite3*)> database(opened, sqlite3_close_v2);
    fuzz::tried([&] { platform::copyAccessTables(path, database.get()); });
    return 0;
}
