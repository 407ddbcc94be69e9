// SPDX-License-Identifier: MIT
#include "platform/tables/dbase_edit.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstring>
#include <filesystem>

#include "gis/errors.h"
#include "gis/numbers.h"
#include "gis/text.h"
#include "platform/files/posix_file.h"
#include "platform/files/unfinished_file.h"
#include "platform/tables/dbase_encoding.h"
#include "platform/tables/dbase_utf8.h"

namespace velmora::platform {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kDescriptorBytes = 32;
constexpr std::size_t kBeginning = 33;  // of the header, without which a file is none
constexpr int kNumberWidth = 24;  // a sign, 17 digits, the point and an exponent's worth of zeros
constexpr int kNumberDecimals = 15;

struct DbaseField {
    std::string name;
    std::size_t offset = 0;  // in the record
    std::size_t width = 0;
    char type = 'N';
};

// The header of a dBASE file taken apart.
struct DbaseFile {
    std::string header;  // up to and including the end mark of the descriptors
    std::string tail;    // header bytes behind the end mark
    std::vector<DbaseField> fields;
    std::size_t records = 0;

    std::size_t recordLength() const { return number(10, 2); }
    std::size_t number(std::size_t at, std::size_t bytes) const {
        std::size_t value = 0;
        for (std::size_t i = bytes; i > 0; --i) {
            value = value << 8U | static_cast<unsigned char>(header[at + i - 1]);
        }
        return value;
    }
    std::size_t headerLength() const { return header.size() + tail.size(); }
    // Where the bytes of a record, and of its field, begin.
    std::size_t place(std::size_t record) const { return headerLength() + record * recordLength(); }
    std::size_t place(std::size_t record, const DbaseField& field) const {
        return place(record) + field.offset;
    }
    void setNumber(std::size_t at, std::size_t bytes, std::size_t value) {
        for (std::size_t i = 0; i < bytes; ++i, value >>= 8U)
            header[at + i] = static_cast<char>(value);
    }
    const DbaseField* find(const std::string& name) const {
        const auto found = std::find_if(fields.begin(), fields.end(), [&](const DbaseField& f) {
            return sameIgnoringCase(f.name, name);
        });
        return found == fields.end() ? nullptr : &*found;
    }
};

// Where the end mark of the field descriptors stands. They have 32 bytes each, any of which may
// look like the mark: a width or a number of decimals of 13 does. npos when there is none.
std::size_t endOfDescriptors(const std::string& bytes, std::size_t headerLength) {
    for (std::size_t at = kDescriptorBytes; at < headerLength; at += kDescriptorBytes) {
        if (bytes[at] == '\r') return at;
    }
    return std::string::npos;
}

DbaseFile parsed(const std::string& bytes, const std::string& path) {
    DbaseFile file;
    file.header = bytes.substr(0, kBeginning);
    if (bytes.size() < kBeginning)
        throw PlatformError("The table " + path + " is no dBASE file", {.file = path});
    const std::size_t headerLength = file.number(8, 2);
    const std::size_t recordLength = file.recordLength();
    const std::size_t records = file.number(4, 4);
    if (headerLength > bytes.size() || recordLength == 0 ||
        (bytes.size() - headerLength) / recordLength < records) {
        throw PlatformError("The table " + path + " is damaged: it is shorter than its header says",
                            {.file = path});
    }
    const std::size_t end = endOfDescriptors(bytes, headerLength);
    if (end == std::string::npos) {
        throw PlatformError("The table " + path + " is damaged: its list of fields has no end",
                            {.file = path});
    }
    std::size_t offset = 1;  // behind the deletion mark
    for (std::size_t at = kDescriptorBytes; at < end; at += kDescriptorBytes) {
        DbaseField field;
        field.name = bytes.substr(at, strnlen(bytes.data() + at, 11));
        field.type = bytes[at + 11];
        field.offset = offset;
        field.width = static_cast<unsigned char>(bytes[at + 16]);
        offset += field.width;
        file.fields.push_back(field);
    }
    constexpr std::size_t kLongest = 65535;  // header and records have lengths of 16 bits
    if (offset > recordLength || recordLength + kNumberWidth > kLongest ||
        headerLength + kDescriptorBytes > kLongest) {
        throw PlatformError(
            "The table " + path + " is damaged or full: its fields do not fit into its records",
            {.file = path});
    }
    file.header = bytes.substr(0, end + 1);
    file.tail = bytes.substr(end + 1, headerLength - end - 1);
    file.records = records;
    return file;
}

void appendNumberField(DbaseFile& file, const std::string& name, const std::string& path) {
    const std::size_t end =
        file.fields.empty() ? 1 : file.fields.back().offset + file.fields.back().width;
    if (end != file.recordLength()) {
        throw PlatformError(
            "The table " + path + " is damaged: its records are longer than their fields together",
            {.file = path});
    }
    std::string descriptor(kDescriptorBytes, '\0');
    name.copy(descriptor.data(), 10);
    descriptor[11] = 'N';
    descriptor[16] = static_cast<char>(kNumberWidth);
    descriptor[17] = static_cast<char>(kNumberDecimals);
    file.fields.push_back({name, file.recordLength(), kNumberWidth, 'N'});
    file.setNumber(8, 2, file.number(8, 2) + kDescriptorBytes);
    file.setNumber(10, 2, file.recordLength() + kNumberWidth);
    file.header.insert(file.header.size() - 1, descriptor);
}

// The new header and the old records, with blanks for the fields that are new. Takes memory for
// `bytes` more than these add.
std::string widened(const std::string& before, const DbaseFile& old, const DbaseFile& file,
                    std::size_t bytes) {
    const std::size_t added = file.recordLength() - old.recordLength();
    std::string after;
    after.reserve(file.header.size() + bytes + old.records * added);
    after += file.header + file.tail;
    for (std::size_t r = 0; r < old.records; ++r) {
        after.append(before, old.place(r), old.recordLength()).append(added, ' ');
    }
    return after;
}

// The text in the table's own encoding, filled up with blanks.
std::string encodedText(const std::string& text, const DbaseField& field,
                        const std::string& encoding) {
    std::string bytes = encodedIn(encoding, text);
    if (bytes.size() > field.width) {
        throw PlatformError("\"" + text + "\" is longer than the " + std::to_string(field.width) +
                            " characters of the field");
    }
    return bytes + std::string(field.width - bytes.size(), ' ');
}

std::string fieldText(const FieldValue& value, const DbaseField& field,
                      const std::string& encoding) {
    const bool numeric = field.type == 'N' || field.type == 'F';
    if (!numeric && field.type != 'C') {
        throw PlatformError("the field holds neither numbers nor text");
    }
    if (isNull(value)) return std::string(field.width, ' ');
    if (const auto* number = std::get_if<double>(&value)) {
        if (!numeric) throw PlatformError("the field is no field of numbers: rename or delete it");
        return dbaseNumber(*number, static_cast<int>(field.width));
    }
    const std::string& text = std::get<std::string>(value);
    if (numeric) throw PlatformError("\"" + text + "\" is no number");
    return encodedText(text, field, encoding);
}

bool belongsToShapefile(const std::string& table) {
    return withoutExtension(table) != table && fs::exists(withoutExtension(table) + ".shp");
}

}  // namespace

std::string attributeTable(const std::string& path) {
    if (sameIgnoringCase(fs::path(path).extension().string(), ".dbf")) return path;
    if (!sameIgnoringCase(fs::path(path).extension().string(), ".shp")) return {};
    for (const char* extension : {".dbf", ".DBF"}) {
        std::string beside = withoutExtension(path) + extension;
        if (fs::exists(beside)) return beside;
    }
    return {};
}

std::string dbaseNumber(double value, int width) {
    if (!std::isfinite(value)) throw PlatformError(numberText(value) + " is no number for a table");
    std::array<char, 400> buffer{};
    char* const begin = buffer.data();
    char* const limit = begin + buffer.size();
    auto result = std::to_chars(begin, limit, value, std::chars_format::fixed);
    for (int decimals = width; result.ptr - begin > width && decimals >= 0; --decimals) {
        result = std::to_chars(begin, limit, value, std::chars_format::fixed, decimals);
    }
    std::string text(begin, result.ptr);
    if (static_cast<int>(text.size()) > width) {
        throw PlatformError(numberText(value) + " does not fit into " + std::to_string(width) +
                            " characters");
    }
    return std::string(static_cast<std::size_t>(width) - text.size(), ' ') + text;
}

DbaseEdit::DbaseEdit(std::shared_ptr<ITable> table)
    : table_(std::move(table)), target_(attributeTable(table_->path())) {
    if (target_.empty()) {
        throw PlatformError(
            table_->path() + " takes no changes: only dBASE tables and shapefiles with one do",
            {.file = table_->path()});
    }
}

void DbaseEdit::addNumericField(const std::string& field) {
    if (field.empty() || field.size() > 10) {
        throw PlatformError("\"" + field + "\" is no name for a dBASE field (1 to 10 characters)",
                            {.file = table_->path(), .field = field});
    }
    asked_.addedFields.push_back(field);
}

void DbaseEdit::setValue(std::size_t record, const std::string& field, const FieldValue& value) {
    if (record >= table_->recordCount()) {
        throw PlatformError(
            "The table " + table_->path() + " has no record " + std::to_string(record + 1),
            {.file = table_->path(), .record = record + 1});
    }
    asked_.values[field].set(table_->placeInFile(record), value);
}

void DbaseEdit::appendRecord(const std::vector<std::pair<std::string, FieldValue>>& values) {
    asked_.appended.push_back(values);
}

std::vector<std::string> DbaseEdit::newTexts() const {
    std::vector<std::string> texts;
    const auto take = [&](const FieldValue& value) {
        if (const auto* text = std::get_if<std::string>(&value)) texts.push_back(*text);
    };
    for (const auto& [name, values] : asked_.values) {
        for (std::size_t i = 0; i < values.size(); ++i) take(values.value(i));
    }
    for (const auto& values : asked_.appended) {
        for (const auto& [name, value] : values) take(value);
    }
    return texts;
}

// The whole file with the changes made in it.
std::string DbaseEdit::changed(const std::string& before, const std::string& encoding) const {
    const DbaseFile old = parsed(before, target_);
    DbaseFile file = old;
    for (const std::string& name : asked_.addedFields) {
        if (!file.find(name)) appendNumberField(file, name, target_);
    }
    std::string after =
        widened(before, old, file, before.size() + asked_.appended.size() * file.recordLength());
    const auto field = [&](const std::string& name) -> const DbaseField& {
        const DbaseField* found = file.find(encodedIn(encoding, name));
        if (found) return *found;
        throw PlatformError("The table " + target_ + " has no field " + name,
                            {.file = target_, .field = name});
    };
    const auto put = [&](std::size_t record, const std::string& name, const DbaseField& column,
                         const FieldValue& value) {
        try {
            after.replace(file.place(record, column), column.width,
                          fieldText(value, column, encoding));
        } catch (const PlatformError& e) {
            throw errorInField({.file = target_, .field = name, .record = record + 1}, e.what());
        }
    };
    for (const auto& [name, values] : asked_.values) {
        const DbaseField& column = field(name);
        for (std::size_t i = 0; i < values.size(); ++i) {
            requireRecord(values.record(i), file.records);
            put(values.record(i), name, column, values.value(i));
        }
    }
    if (!asked_.appended.empty() && belongsToShapefile(target_)) {
        throw PlatformError(
            "The table " + target_ + " belongs to a shapefile, so no record can be added",
            {.file = target_});
    }
    for (const auto& values : asked_.appended) {
        after.append(file.recordLength(), ' ');
        for (const auto& [name, value] : values) {
            put(file.records, name, field(name), value);
        }
        ++file.records;
    }
    file.setNumber(4, 4, file.records);
    after.replace(0, file.header.size(), file.header);
    after.append(before, old.place(old.records));
    return after;
}

void DbaseEdit::requireRecord(std::size_t record, std::size_t records) const {
    if (record < records) return;
    throw PlatformError("The table " + target_ + " has no record " + std::to_string(record + 1),
                        {.file = target_, .record = record + 1});
}

void DbaseEdit::write(const std::string& unfinished, const std::string& bytes) {
    writeWholeFile(unfinished, bytes);
}

void DbaseEdit::requireRight(const std::string& unfinished, const std::string& before,
                             const std::string& encoding) const {
    requireOnlyChanges(before, readWholeFile(unfinished, kLargestDbase), asked_, encoding);
}

std::string DbaseEdit::inUtf8(const std::string& before, const std::string& encoding) const {
    return platform::inUtf8(before, encoding, target_);
}

void DbaseEdit::save() {
    const std::string encoding = dbaseEncoding(target_);
    const std::string before = readWholeFile(target_, kLargestDbase);
    const bool fits = std::ranges::all_of(
        newTexts(), [&](const std::string& text) { return encodes(encoding, text); });
    if (fits) {
        store(before, encoding);
        return;
    }
    const std::string rewritten = inUtf8(before, encoding);
    EncodingChange change(target_, encoding, [&] { namesChanged(); });
    store(rewritten, kUtf8, [&] {
        requireSameTexts(before, rewritten, encoding);
        change.tellByMark();
    });
    try {
        change.tellUtf8();
    } catch (const std::exception& e) {
        throw PlatformError("The changes are stored in " + target_ +
                                ", in UTF-8, but the .cpg that tells so is not: " + e.what(),
                            {.file = target_});
    }
}

// The file `before` with the changes, read again; `ready` is called before it takes its name.
void DbaseEdit::store(const std::string& before, const std::string& encoding,
                      const std::function<void()>& ready) {
    std::string after = changed(before, encoding);
    try {
        UnfinishedFile table(target_);
        write(table.path(), after);
        std::string().swap(after);  // which is read again
        requireRight(table.path(), before, encoding);
        fs::permissions(table.path(), fs::status(target_).permissions());
        ready();
        table.finish();
        namesChanged();
    } catch (const std::exception& e) {
        throw PlatformError("Cannot store changes in " + target_ + ": " + e.what(),
                            {.file = target_});
    }
}

}  // namespace velmora::platform
