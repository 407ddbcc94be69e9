// SPDX-License-Identifier: MIT
// A table of any content gets a field, or is refused and stays as it is.
#include <unistd.h>

#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

#include "gis/errors.h"
#include "platform/tables/dbase_edit.h"

namespace {

// A table that knows its path alone.
class PathOnly : public velmora::ITable {
  public:
    explicit PathOnly(std::string path) : path_(std::move(path)) {}
    std::string name() const override { return "t"; }
    std::string path() const override { return path_; }
    const std::vector<velmora::Field>& fields() const override { return fields_; }
    std::size_t recordCount() const override { return 1; }
    velmora::FieldValue value(std::size_t, const std::string&) const override { return {}; }

  private:
    std::string path_;
    std::vector<velmora::Field> fields_;
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::string path = (std::filesystem::temp_directory_path() /
                                     ("velmora-fuzz-" + std::to_string(getpid()) + ".dbf"))
                                        .string();
    const std::string bytes(reinterpret_cast<const char*>(data), size);
    std::ofstream(path, std::ios::binary) << bytes;
    velmora::platform::DbaseEdit edit(std::make_shared<PathOnly>(path));
    edit.addNumericField("TempTTT");
    edit.setValue(0, "TempTTT", 1.5);
    edit.appendRecord({{"TempTTT", 2.0}, {"NAME", std::string("\u00E9")}});
    try {
        edit.save();
    } catch (const velmora::PlatformError&) {
        std::ifstream file(path, std::ios::binary);
        const std::string after((std::istreambuf_iterator<char>(file)), {});
        if (after != bytes) std::abort();
    }
    return 0;
}
