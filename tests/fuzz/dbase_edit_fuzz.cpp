// SPDX-License-Identifier: MIT
// A table of any content gets a field, a value and a record and keeps all else, or is refused and
// stays as it is.
#include <string>
#include <utility>
#include <vector>

#include "gis/text.h"
#include "platform/files/file_system.h"
#include "platform/files/posix_file.h"
#include "platform/tables/dbase_edit.h"
#include "tests/fuzz/harness.h"

using namespace velmora;
using fuzz::require;

namespace {

// A table that knows its path alone.
class PathOnly : public ITable {
  public:
    explicit PathOnly(std::string path) : path_(std::move(path)) {}
    std::string name() const override { return "t"; }
    std::string path() const override { return path_; }
    const std::vector<Field>& fields() const override { return fields_; }
    std::size_t recordCount() const override { return 1; }
    FieldValue value(std::size_t, const std::string&) const override { return {}; }

  private:
    std::string path_;
    std::vector<Field> fields_;
};

// The parts of a dBASE file, taken apart by nothing but the format's description.
struct Parts {
    explicit Parts(const std::string& file) : bytes(file) {
        const auto number = [&](std::size_t from, std::size_t size) {
            std::size_t value = 0;
            for (std::size_t i = 0; i < size; ++i) {
                value += static_cast<std::size_t>(static_cast<unsigned char>(bytes.at(from + i)))
                         << 8 * i;
            }
            return value;
        };
        records = number(4, 4);
        header = number(8, 2);
        length = number(10, 2);
        for (end = 32; bytes.at(end) != '\r'; end += 32) {
            const auto own = static_cast<unsigned char>(bytes.at(end + 16));
            const std::string name = bytes.substr(end, 11).c_str();
            if (at == 0 && sameIgnoringCase(name, "TempTTT")) {
                at = width;
                atWidth = own;
            }
            width += own;
        }
    }
    std::string record(std::size_t r) const { return bytes.substr(header + r * length, length); }

    const std::string& bytes;
    std::size_t records = 0;
    std::size_t header = 0;
    std::size_t length = 0;
    std::size_t end = 0;    // of the descriptors
    std::size_t width = 1;  // of all fields and the deletion mark
    std::size_t at = 0;     // of the field TempTTT in a record
    std::size_t atWidth = 0;
};

// All fields, the bytes behind them, all records but for the new value, and the end are the same.
void requireKept(const std::string& before, const std::string& after) {
    const Parts a(before);
    const Parts b(after);
    require(b.records == a.records + 1 && b.at > 0 && b.width <= b.length);
    require(before.substr(12, a.end - 12) == after.substr(12, a.end - 12));
    require(before.substr(a.end, a.header - a.end) == after.substr(b.end, b.header - b.end));
    require(before.substr(a.header + a.records * a.length) ==
            after.substr(b.header + b.records * b.length));
    require(b.length == a.length + (a.at > 0 ? 0 : b.atWidth));
    for (std::size_t r = 0; r < a.records; ++r) {
        std::string was = a.record(r);
        std::string is = b.record(r).substr(0, a.length);
        if (r == 0 && a.at > 0) {
            was.erase(a.at, a.atWidth);
            is.erase(b.at, b.atWidth);
        }
        require(was == is);
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::MemoryFolder& folder = fuzz::memoryFolder();
    platform::setSyncing(false);
    const std::string bytes(fuzz::text(data, size));
    std::filesystem::remove(folder.file("f.cpg"));  // of an input before
    platform::DbaseEdit edit(std::make_shared<PathOnly>(folder.write("f.dbf", bytes)));
    edit.addNumericField("TempTTT");
    edit.setValue(0, "TempTTT", 1.5);
    std::vector<std::pair<std::string, FieldValue>> record = {{"TempTTT", 2.0}};
    if (size % 2 == 1) record.emplace_back("NAME", std::string("\u00E9"));
    edit.appendRecord(record);
    if (fuzz::tried([&] { edit.save(); })) {
        requireKept(bytes, folder.content("f.dbf"));
    } else {
        require(folder.content("f.dbf") == bytes);
    }
    return 0;
}
