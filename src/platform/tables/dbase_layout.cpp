// SPDX-License-Identifier: MIT
#include "platform/tables/dbase_layout.h"

#include <algorithm>

#include "gis/errors.h"
#include "gis/text.h"

namespace velmora::platform {

namespace {

std::size_t byteAt(std::string_view bytes, std::size_t at) {
    return static_cast<unsigned char>(bytes[at]);
}

DbaseColumn columnAt(std::string_view bytes, std::size_t at) {
    DbaseColumn column;
    const std::string_view name = bytes.substr(at, 11);
    column.name = std::string(name.substr(0, name.find('\0')));
    column.type = bytes[at + 11];
    column.width = byteAt(bytes, at + 16);
    column.decimals = byteAt(bytes, at + 17);
    return column;
}

}  // namespace

const DbaseColumn* DbaseLayout::find(std::string_view name) const {
    const auto found = std::find_if(columns.begin(), columns.end(), [&](const DbaseColumn& c) {
        return sameIgnoringCase(c.name, name);
    });
    return found == columns.end() ? nullptr : &*found;
}

std::size_t dbaseHeaderLength(std::string_view beginning) {
    return byteAt(beginning, 8) + 256 * byteAt(beginning, 9);
}

DbaseLayout dbaseLayout(std::string_view bytes, const std::string& path) {
    DbaseLayout layout;
    if (bytes.size() >= kDbaseHeaderBytes) layout.headerLength = dbaseHeaderLength(bytes);
    if (bytes.size() < kDbaseHeaderBytes || bytes.size() < layout.headerLength ||
        layout.headerLength < kDbaseHeaderBytes) {
        throw PlatformError(
            "The table " + path + " is damaged or cut short: it ends in its " + "header",
            {.file = path});
    }
    for (std::size_t i = 0; i < 4; ++i) layout.records += byteAt(bytes, 4 + i) << 8 * i;
    layout.recordLength = byteAt(bytes, 10) + 256 * byteAt(bytes, 11);
    std::size_t offset = 1;
    std::size_t at = kDbaseHeaderBytes;
    while (at + kDbaseDescriptorBytes <= layout.headerLength && bytes[at] != '\r') {
        layout.columns.push_back(columnAt(bytes, at));
        layout.columns.back().offset = offset;
        offset += layout.columns.back().width;
        at += kDbaseDescriptorBytes;
    }
    layout.descriptorsEnd = at;
    if (offset > layout.recordLength) {
        throw PlatformError(
            "The table " + path + " is damaged: its fields are together wider than its records",
            {.file = path});
    }
    return layout;
}

}  // namespace velmora::platform
