// SPDX-License-Identifier: MIT
#include "tests/faults/dbase_text.h"

#include <algorithm>
#include <cstddef>

namespace velmora::faults {

namespace {

constexpr std::size_t kDescriptor = 32;

std::size_t number(const std::string& bytes, std::size_t at, std::size_t count) {
    std::size_t value = 0;
    for (std::size_t i = count; i > 0; --i) {
        value = value * 256 + static_cast<unsigned char>(bytes.at(at + i - 1));
    }
    return value;
}

std::string nameOf(const std::string& descriptor) {
    return descriptor.substr(0, std::min<std::size_t>(descriptor.find('\0'), 11));
}

// Fields and records without those of these names.
DbaseText without(const std::set<std::string>& names, const DbaseText& table) {
    DbaseText rest{table.whole, {}, std::vector<std::vector<std::string>>(table.records.size())};
    for (std::size_t r = 0; r < table.records.size(); ++r) {
        rest.records[r].push_back(table.records[r][0]);
    }
    for (std::size_t f = 0; f < table.fields.size(); ++f) {
        if (names.contains(nameOf(table.fields[f]))) continue;
        rest.fields.push_back(table.fields[f]);
        for (std::size_t r = 0; r < table.records.size(); ++r) {
            rest.records[r].push_back(table.records[r][f + 1]);
        }
    }
    return rest;
}

}  // namespace

DbaseText dbaseText(const std::string& bytes) {
    DbaseText table;
    if (bytes.size() < kDescriptor + 1) return table;
    const std::size_t records = number(bytes, 4, 4);
    const std::size_t header = number(bytes, 8, 2);
    const std::size_t width = number(bytes, 10, 2);
    const std::size_t end = header + records * width;
    if (header < kDescriptor + 1 || width == 0 || bytes.size() < end || bytes.size() > end + 1) {
        return table;
    }
    std::size_t inRecord = 1;
    std::vector<std::size_t> widths;
    for (std::size_t at = kDescriptor; at + kDescriptor < header; at += kDescriptor) {
        std::string descriptor = bytes.substr(at, kDescriptor);
        widths.push_back(number(bytes, at + 16, 1));
        inRecord += widths.back();
        table.fields.push_back(descriptor.replace(12, 4, 4, '\0'));
    }
    if (inRecord != width || bytes.at(header - 1) != '\r') return table;
    for (std::size_t r = 0; r < records; ++r) {
        std::size_t at = header + r * width;
        table.records.push_back({bytes.substr(at++, 1)});
        for (const std::size_t field : widths) {
            table.records.back().push_back(bytes.substr(at, field));
            at += field;
        }
    }
    table.whole = true;
    return table;
}

bool sameBut(const std::set<std::string>& names, const std::string& a, const std::string& b) {
    const DbaseText first = without(names, dbaseText(a));
    const DbaseText second = without(names, dbaseText(b));
    return first.whole && second.whole && first.fields == second.fields &&
           first.records == second.records;
}

bool holdsRecordsOf(const std::string& bytes, const std::string& of) {
    const DbaseText part = dbaseText(bytes);
    const DbaseText all = dbaseText(of);
    if (!part.whole || part.fields != all.fields) return false;
    auto from = all.records.begin();
    return std::ranges::all_of(part.records, [&](const auto& record) {
        from = std::find(from, all.records.end(), record);
        if (from == all.records.end()) return false;
        ++from;
        return true;
    });
}

}  // namespace velmora::faults
