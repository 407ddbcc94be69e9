// SPDX-License-Identifier: MIT
#include "platform/tables/dbase_numbers.h"

#include <cmath>
#include <limits>

#include "gis/errors.h"
#include "gis/numbers.h"
#include "platform/tables/dbase_records.h"

namespace velmora::platform {

namespace {

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
    explicit NumbersOfTable(const std::string& table) : records_(table) {}
    const std::vector<DbaseColumn>& columns() const { return records_.layout().columns; }

    // Throws unless the numeric ones of these columns hold numbers or nothing in the records.
    void require(std::vector<DbaseColumn> columns, const std::vector<std::size_t>& records) {
        std::erase_if(columns, [](const DbaseColumn& column) { return !column.numeric(); });
        if (columns.empty()) return;
        for (const std::size_t record : records) {
            const std::string_view bytes = records_.record(record);
            for (const DbaseColumn& column : columns) requireNumber(bytes, column, record);
        }
    }

  private:
    void requireNumber(std::string_view bytes, const DbaseColumn& column,
                       std::size_t record) const {
        const std::string_view text = bytes.empty() ? "a record that is cut short"
                                                    : bytes.substr(column.offset, column.width);
        if (isDbaseNumber(text)) return;
        throw errorInField({.file = records_.path(), .field = column.name, .record = record + 1},
                           "\"" + shown(text) +
                               "\" is no number (a decimal point, no other separators) that a run "
                               "can take");
    }

    DbaseRecords records_;
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
    NumbersOfTable numbers(table);
    if (field >= numbers.columns().size()) {
        throw PlatformError("The table " + table + " has changed while it was read",
                            {.file = table});
    }
    numbers.require({numbers.columns()[field]}, records);
}

void requireNumbers(const std::string& table, const std::vector<std::size_t>& records) {
    NumbersOfTable numbers(table);
    numbers.require(numbers.columns(), records);
}

}  // namespace velmora::platform
