// SPDX-License-Identifier: MIT
// How a dBASE file is laid out, as its header says. Nothing here looks at records.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace velmora::platform {

constexpr std::size_t kDbaseHeaderBytes = 32;      // before the field descriptors
constexpr std::size_t kDbaseDescriptorBytes = 32;  // of each field

struct DbaseColumn {
    std::string name;
    char type = 'N';
    std::size_t offset = 0;  // in the record, whose first byte is the deletion mark
    std::size_t width = 0;
    std::size_t decimals = 0;
    bool numeric() const { return type == 'N' || type == 'F'; }
};

struct DbaseLayout {
    std::size_t records = 0;  // deleted ones too
    std::size_t headerLength = 0;
    std::size_t recordLength = 0;
    std::size_t descriptorsEnd = 0;  // behind the last descriptor
    std::vector<DbaseColumn> columns;

    std::size_t recordsEnd() const { return headerLength + records * recordLength; }
    // By name, without regard to ASCII case; nullptr when there is none.
    const DbaseColumn* find(std::string_view name) const;
};

// The length of the header of a file that begins with these bytes (at least 32); its records begin
// there.
std::size_t dbaseHeaderLength(std::string_view beginning);

// Takes the header apart, given the file's bytes up to the records or more. Throws PlatformError
// naming the table `path` when the header is cut short or its fields do not fit into its records.
DbaseLayout dbaseLayout(std::string_view bytes, const std::string& path);

}  // namespace velmora::platform
