// SPDX-License-Identifier: MIT
#include "platform/tables/dbase_numbers.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "gis/errors.h"
#include "gis/numbers.h"
#include "platform/files/byte_source.h"
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

class NumbersOfTable {
  public:
    explicit NumbersOfTable(const std::string& table) : file_(table) {
        std::string header = file_.read(0, kDbaseHeaderBytes);
        if (header.size() == kDbaseHeaderBytes) header = file_.read(0, dbaseHeaderLength(header));
        layout_ = dbaseLayout(header, table);
    }
    const std::vector<DbaseColumn>& columns() const { return layout_.columns; }

    // Throws unless the numeric ones of these columns hold numbers or nothing in the records.
    void require(std::vector<DbaseColumn> columns, const std::vector<std::size_t>& records) const {
        std::erase_if(columns, [](const DbaseColumn& column) { return !column.numeric(); });
        if (columns.empty()) return;
        const std::size_t perBlock = std::max<std::size_t>(1, kBlockBytes / layout_.recordLength);
        std::string block;
        std::size_t first = 0;  // record of the block
        for (const std::size_t record : records) {
            const auto inBlock = [&] {
                return record >= first &&
                       (record - first + 1) * layout_.recordLength <= block.size();
            };
            if (!inBlock()) {
                first = record;
                block = file_.read(layout_.headerLength + record * layout_.recordLength,
                                   perBlock * layout_.recordLength);
            }
            const std::string_view bytes =
                inBlock() ? std::string_view(block).substr((record - first) * layout_.recordLength)
                          : std::string_view();
            for (const DbaseColumn& column : columns) requireNumber(bytes, column, record);
        }
    }

  private:
    void requireNumber(std::string_view bytes, const DbaseColumn& column,
                       std::size_t record) const {
        const std::string_view text = bytes.empty() ? "a record that is cut short"
                                                    : bytes.substr(column.offset, column.width);
        if (isDbaseNumber(text)) return;
        throw errorInField({.file = file_.path(), .field = column.name, .record = record + 1},
                           "\"" + shown(text) +
                               "\" is no number (a decimal point, no other separators) that a run "
                               "can take");
    }

    ByteSource file_;
    DbaseLayout layout_;
};

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
    const NumbersOfTable numbers(table);
    if (field >= numbers.columns().size()) {
        throw PlatformError("The table " + table + " has changed while it was read",
                            {.file = table});
    }
    numbers.require({numbers.columns()[field]}, records);
}

void requireNumbers(const std::string& table, const std::vector<std::size_t>& records) {
    const NumbersOfTable numbers(table);
    numbers.require(numbers.columns(), records);
}

}  // namespace velmora::platform
