// SPDX-License-Identifier: MIT
#include "platform/features/shapefile_check.h"

#include <cstdint>
#include <filesystem>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/files/byte_source.h"
#include "platform/tables/dbase_edit.h"
#include "platform/tables/dbase_layout.h"

namespace velmora::platform {

namespace fs = std::filesystem;

namespace {

constexpr std::size_t kHeaderBytes = 100;  // of .shp and .shx
constexpr std::size_t kIndexBytes = 8;     // of each shape
constexpr std::uint32_t kFileCode = 9994;

bool hasExtension(const std::string& path, const std::string& extension) {
    return sameIgnoringCase(fs::path(path).extension().string(), extension);
}

[[noreturn]] void damaged(const std::string& path, const std::string& what) {
    throw PlatformError(path + " is damaged or cut short: " + what + ". Put a whole copy in place",
                        {.file = path});
}

void requireSize(const ByteSource& file) {
    const std::string header = file.read(0, kHeaderBytes);
    if (header.size() < kHeaderBytes) damaged(file.path(), "it ends in its header");
    if (bigEndian(header, 0) != kFileCode) damaged(file.path(), "it does not begin as a shapefile");
    const std::uint64_t said = 2ULL * bigEndian(header, 24);
    if (said != file.size()) {
        damaged(file.path(), "it has " + std::to_string(file.size()) + " bytes, its header says " +
                                 std::to_string(said));
    }
}

std::size_t indexedShapes(const ByteSource& index) {
    requireSize(index);
    if ((index.size() - kHeaderBytes) % kIndexBytes != 0) {
        damaged(index.path(), "it ends within a shape");
    }
    return (index.size() - kHeaderBytes) / kIndexBytes;
}

// Gives the number of records.
std::size_t requireWholeTable(const std::string& path) {
    const ByteSource file(path);
    std::string header = file.read(0, kDbaseHeaderBytes);
    if (header.size() == kDbaseHeaderBytes) header = file.read(0, dbaseHeaderLength(header));
    const DbaseLayout layout = dbaseLayout(header, path);
    const std::uint64_t end = layout.recordsEnd();
    if (file.size() < end) {
        damaged(path, "it has " + std::to_string(file.size()) + " bytes, its header says " +
                          std::to_string(layout.records) + " records, which need " +
                          std::to_string(end));
    }
    if (file.size() - end >= layout.recordLength) {
        const std::string next = file.read(end, 1);
        if (next == " " || next == "*") {
            damaged(path, "it goes on behind the " + std::to_string(layout.records) +
                              " records that its header says");
        }
    }
    return layout.records;
}

void requireWholeShapes(const std::string& path) {
    requireSize(ByteSource(path));
    const std::string index = fileBeside(path, "shx");
    if (index.empty()) return;  // which GDAL tells
    const std::size_t shapes = indexedShapes(ByteSource(index));
    const std::string table = attributeTable(path);
    if (table.empty()) return;
    const std::size_t records = requireWholeTable(table);
    if (records != shapes) {
        throw PlatformError(
            "The files of the shapefile " + path + " do not belong together: " + index + " lists " +
                std::to_string(shapes) + " shapes, " + table + " has " + std::to_string(records) +
                " records. One of them is damaged or was replaced",
            {.file = path});
    }
}

}  // namespace

void requireWholeFiles(const std::string& path) {
    if (hasExtension(path, ".shp")) {
        requireWholeShapes(path);
    } else if (hasExtension(path, ".dbf")) {
        requireWholeTable(path);
    } else {
        const ByteSource readable(path);
    }
}

std::string fileBeside(const std::string& path, const std::string& extension) {
    std::string capitals = extension;
    for (char& c : capitals) {
        if (c >= 'a' && c <= 'z') c = static_cast<char>(c - 'a' + 'A');
    }
    for (const std::string& candidate : {extension, capitals}) {
        std::string beside = withoutExtension(path) + "." + candidate;
        if (fs::exists(beside)) return beside;
    }
    return {};
}

std::size_t shapeCount(const std::string& shapefile) {
    return indexedShapes(ByteSource(fileBeside(shapefile, "shx")));
}

std::size_t tableRecordCount(const std::string& table) { return requireWholeTable(table); }

}  // namespace velmora::platform
