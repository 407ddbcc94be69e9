// SPDX-License-Identifier: MIT
#include "platform/tables/dbase_numbers.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "gis/errors.h"
#include "gis/numbers.h"
#include "platform/features/byte_source.h"
#include "platform/tables/dbase_layout.h"

namespace velmora::platform {

namespace {

constexpr std::size_t kBlockBytes = 1 << 20;

// As a message may show it.
std::string shown(std::string_view text) {
    std::string plain;
    for (const char c : text.substr(0, text.find('\0'))) {
        plain += c >= ' ' && c <= '~' ? c : '?';
    }
    const auto first = plain.find_first_not_of(' ');
    return first == std::string::npos
               ? plain
               : plain.substr(first, plain.find_last_not_of(' ') - first + 1);
}

}  // namespace

bool isDbaseNumber(std::string_view text) {
    text = text.substr(0, text.find('\0'));
    if (text.find_first_not_of(' ') == std::string_view::npos) return true;
    const auto stars = text.substr(text.find_first_not_of(' '));
    if (stars.substr(0, stars.find_last_not_of(' ') + 1).find_first_not_of('*') ==
        std::string_view::npos) {
        return true;
    }
    const auto number = strictNumber(text);
    return number && std::abs(*number) <= std::numeric_limits<float>::max();
}

void requireNumbers(const std::string& table, std::size_t field,
                    const std::vector<std::size_t>& records) {
    const ByteSource file(table);
    std::string header = file.read(0, kDbaseHeaderBytes);
    if (header.size() == kDbaseHeaderBytes) header = file.read(0, dbaseHeaderLength(header));
    const DbaseLayout layout = dbaseLayout(header, table);
    if (field >= layout.columns.size()) {
        throw PlatformError("The table " + table + " has changed while it was read");
    }
    const DbaseColumn& column = layout.columns[field];
    if (!column.numeric()) return;
    const std::size_t perBlock = std::max<std::size_t>(1, kBlockBytes / layout.recordLength);
    std::string block;
    std::size_t first = 0;  // record of the block
    for (const std::size_t record : records) {
        const auto inBlock = [&] {
            return record >= first && (record - first + 1) * layout.recordLength <= block.size();
        };
        if (!inBlock()) {
            first = record;
            block = file.read(layout.headerLength + record * layout.recordLength,
                              perBlock * layout.recordLength);
        }
        const std::string_view text =
            inBlock() ? std::string_view(block).substr(
                            (record - first) * layout.recordLength + column.offset, column.width)
                      : "a record that is cut short";
        if (isDbaseNumber(text)) continue;
        throw PlatformError("In " + table + ", record " + std::to_string(record + 1) + ", field " +
                            column.name + ": \"" + shown(text) +
                            "\" is no number (a decimal point, no other separators) that a run "
                            "can take");
    }
}

}  // namespace velmora::platform
