// SPDX-License-Identifier: MIT
#include "tests/support/jet_writer.h"

#include <array>
#include <cstring>
#include <numeric>
#include <stdexcept>
#include <utility>

namespace velmora::test {

namespace {

constexpr std::size_t kPage = 4096;
constexpr std::size_t kCatalogPage = 2;  // the definition of MSysObjects
constexpr std::size_t kMapPage = 1;
constexpr std::uint8_t kOle = 11;
constexpr std::uint8_t kInteger = 3;

using Bytes = std::string;

Bytes number(std::uint64_t value, int bytes) {
    Bytes text;
    for (int i = 0; i < bytes; ++i, value >>= 8U) text += static_cast<char>(value & 0xFFU);
    return text;
}

template <class Float>
Bytes floating(Float value) {
    Bytes text(sizeof value, '\0');
    std::memcpy(text.data(), &value, sizeof value);
    return text;
}

Bytes wide(const std::string& text) {
    Bytes bytes;
    for (const char c : text) bytes += {c, '\0'};
    return bytes;
}

// The header's bytes from 0x18 on are enciphered with a fixed key; these are the zeros.
Bytes headerCipher(std::size_t length) {
    constexpr std::array<std::uint8_t, 4> key = {0xC7, 0xDA, 0x39, 0x6B};
    std::array<std::uint8_t, 256> state{};
    std::iota(state.begin(), state.end(), std::uint8_t{0});
    for (unsigned i = 0, j = 0; i < 256; ++i) {
        j = (j + state[i] + key[i % 4]) & 0xFFU;
        std::swap(state[i], state[j]);
    }
    Bytes bytes;
    for (unsigned n = 0, i = 0, j = 0; n < length; ++n) {
        i = (i + 1) & 0xFFU;
        j = (j + state[i]) & 0xFFU;
        std::swap(state[i], state[j]);
        bytes += static_cast<char>(state[(state[i] + state[j]) & 0xFFU]);
    }
    return bytes;
}

// A column as the file describes it.
struct Column {
    std::string name;
    std::uint8_t type = 0;
    std::size_t size = 0;  // bytes; of a text at most
    bool fixed = true;
};

Column described(const JetColumn& column) {
    const auto type = static_cast<std::uint8_t>(column.type);
    switch (column.type) {
        case JetType::yesNo:
            return {column.name, type, 1, true};
        case JetType::longInteger:
        case JetType::single:
            return {column.name, type, 4, true};
        case JetType::real:
        case JetType::date:
            return {column.name, type, 8, true};
        case JetType::text:
            break;
    }
    return {column.name, type, static_cast<std::size_t>(column.size) * 2, false};
}

Bytes valueBytes(const FieldValue& value, const Column& column) {
    if (isNull(value)) return {};
    if (const auto* text = std::get_if<std::string>(&value)) return wide(*text);
    const double n = std::get<double>(value);
    if (column.type == static_cast<std::uint8_t>(JetType::single)) {
        return floating(static_cast<float>(n));
    }
    if (column.size == 8) return floating(n);
    return number(static_cast<std::uint64_t>(static_cast<std::int64_t>(n)),
                  static_cast<int>(column.size));
}

Bytes rowBytes(const std::vector<FieldValue>& row, const std::vector<Column>& columns) {
    Bytes fixedPart = number(columns.size(), 2);
    Bytes variable;
    std::vector<std::size_t> ends;
    Bytes mask((columns.size() + 7) / 8, '\0');
    for (std::size_t c = 0; c < columns.size(); ++c) {
        const Bytes bytes = valueBytes(row[c], columns[c]);
        if (!isNull(row[c])) mask[c / 8] = static_cast<char>(mask[c / 8] | 1 << c % 8);
        if (columns[c].fixed) {
            fixedPart += bytes + Bytes(columns[c].size - bytes.size(), '\0');
        } else {
            ends.push_back(variable.size());
            variable += bytes;
        }
    }
    ends.push_back(variable.size());
    Bytes text = fixedPart + variable;
    for (auto end = ends.rbegin(); end != ends.rend(); ++end) {
        text += number(fixedPart.size() + *end, 2);
    }
    return text + number(ends.size() - 1, 2) + mask;
}

// Pages that hold rows from their end on.
std::vector<Bytes> dataPages(const std::vector<Bytes>& rows, std::size_t owner) {
    std::vector<Bytes> pages;
    std::size_t next = 0;
    while (next < rows.size()) {
        Bytes page(kPage, '\0');
        std::size_t end = kPage;
        std::size_t count = 0;
        while (next < rows.size() && end >= rows[next].size() + 14 + 2 * (count + 1)) {
            end -= rows[next].size();
            page.replace(end, rows[next].size(), rows[next]);
            page.replace(14 + 2 * count, 2, number(end, 2));
            ++count;
            ++next;
        }
        if (count == 0) throw std::length_error("a row is longer than a page");
        page.replace(0, 8, number(0x0101, 2) + number(end - 14 - 2 * count, 2) + number(owner, 4));
        page.replace(12, 2, number(count, 2));
        pages.push_back(page);
    }
    return pages;
}

// The definition of a table whose pages stand in row `map` of the map page.
Bytes definition(const std::vector<Column>& columns, std::size_t rows, std::size_t map,
                 bool system) {
    std::size_t variable = 0;
    std::size_t offset = 0;
    Bytes descriptions;
    Bytes names;
    for (std::size_t c = 0; c < columns.size(); ++c) {
        const Column& column = columns[c];
        Bytes text(25, '\0');
        text[0] = static_cast<char>(column.type);
        text.replace(5, 2, number(c, 2));
        text.replace(7, 2, number(variable, 2));
        text.replace(9, 2, number(c, 2));
        text[15] = static_cast<char>(column.fixed ? 3 : 2);
        text.replace(21, 2, number(column.fixed ? offset : 0, 2));
        text.replace(23, 2, number(column.size, 2));
        (column.fixed ? offset : variable) += column.fixed ? column.size : 1;
        descriptions += text;
        names += number(2 * column.name.size(), 2) + wide(column.name);
    }
    const std::size_t where = kMapPage << 8U | map;
    Bytes page = number(0x0102, 2) + "VC" + number(0, 4);
    page += number(63 + descriptions.size() + names.size() - 8, 4) + number(0, 4) + number(rows, 4);
    page += Bytes(20, '\0') + (system ? "S" : "N");
    page += number(columns.size(), 2) + number(variable, 2) + number(columns.size(), 2);
    page += number(0, 8) + number(where, 4) + number(where, 4) + descriptions + names;
    page.resize(kPage, '\0');
    return page;
}

// A row of the map page: which pages from 0 on belong to a table.
Bytes pageMap(std::size_t first, std::size_t count) {
    Bytes bits(64, '\0');
    for (std::size_t p = first; p < first + count; ++p) {
        bits.at(p / 8) = static_cast<char>(bits.at(p / 8) | 1 << p % 8);
    }
    return number(0, 5) + bits;
}

}  // namespace

std::string jetDatabase(const std::vector<JetTable>& tables) {
    Bytes header = number(0x100, 4) + "Standard Jet DB" + Bytes(1, '\0') + number(1, 4);
    header += headerCipher(128);
    header.resize(kPage, '\0');

    // Behind the catalog's definition and its one page of rows: each table's definition and rows.
    std::vector<Bytes> maps = {pageMap(kCatalogPage + 1, 1)};
    std::vector<Bytes> catalog;
    std::vector<Bytes> pages;
    const std::vector<Column> catalogColumns = {{"Id", 4, 4, true},
                                                {"Name", 10, 128, false},
                                                {"Type", kInteger, 2, true},
                                                {"Flags", 4, 4, true},
                                                {"LvProp", kOle, 0, false}};
    for (const JetTable& table : tables) {
        std::vector<Column> columns;
        for (const JetColumn& column : table.columns) columns.push_back(described(column));
        std::vector<Bytes> rows;
        for (const auto& row : table.rows) rows.push_back(rowBytes(row, columns));
        const std::size_t at = kCatalogPage + 2 + pages.size();
        const std::vector<Bytes> data = dataPages(rows, at);
        pages.push_back(definition(columns, rows.size(), maps.size(), false));
        pages.insert(pages.end(), data.begin(), data.end());
        maps.push_back(pageMap(at + 1, data.size()));
        catalog.push_back(
            rowBytes({static_cast<double>(at), table.name, 1.0, 0.0, {}}, catalogColumns));
    }
    Bytes file = header + dataPages(maps, 0).at(0);
    file += definition(catalogColumns, catalog.size(), 0, true) +
            dataPages(catalog, kCatalogPage).at(0);
    for (const Bytes& page : pages) file += page;
    return file;
}

}  // namespace velmora::test
