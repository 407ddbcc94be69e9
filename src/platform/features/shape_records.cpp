// SPDX-License-Identifier: MIT
#include "platform/features/shape_records.h"

#include <algorithm>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/features/shapefile_check.h"

namespace velmora::platform {

namespace {

constexpr std::size_t kHeaderBytes = 100;
constexpr std::size_t kIndexBytes = 8;
constexpr std::size_t kRecordHeaderBytes = 8;
constexpr std::size_t kPointBytes = 20;  // type, x, y
constexpr std::size_t kPartsBytes = 44;  // type, box, numbers of parts and points
constexpr std::size_t kPointPairBytes = 16;
constexpr std::uint32_t kFlatPolygon = 5;
constexpr std::size_t kBeginningBytes = kRecordHeaderBytes + kPartsBytes + 4;
constexpr std::size_t kBlockBytes = 1 << 18;  // records mostly follow each other
constexpr std::size_t kLongest = 100000000000;

std::string indexOf(const std::string& shapefile) {
    const ByteSource file(fileBeside(shapefile, "shx"));
    return file.read(0, file.size());
}

bool isPoint(std::uint32_t type) { return type % 10 == 1; }
bool hasParts(std::uint32_t type) { return type % 10 == 3 || type % 10 == 5; }

// Whether a line or polygon of that type, with so many parts and points, has that many bytes. The
// measures of points may be left out.
bool fills(std::uint32_t type, std::uint64_t parts, std::uint64_t points, std::uint64_t bytes) {
    if (parts > kLongest || points > kLongest) return false;
    const std::uint64_t flat = kPartsBytes + 4 * parts + 16 * points;
    const std::uint64_t more = 16 + 8 * points;  // a range and a number of each point
    if (type > 10 && type < 20) return bytes == flat + more || bytes == flat + 2 * more;
    if (type > 20) return bytes == flat || bytes == flat + more;
    return bytes == flat;
}

}  // namespace

ShapeRecords::ShapeRecords(const std::string& shapefile)
    : shapes_(shapefile),
      index_(indexOf(shapefile)),
      type_(littleEndian(shapes_.read(0, kHeaderBytes), 32)) {}

std::optional<ShapeRecords> shapeRecords(const std::string& path) {
    if (!sameIgnoringCase(withoutEnding(path, ".shp") + ".shp", path) || path.size() < 5) return {};
    return std::optional<ShapeRecords>(std::in_place, path);
}

// The bytes from that place on, fewer at the end of the file.
std::string_view ShapeRecords::bytes(std::uint64_t at, std::size_t count) const {
    const bool held = at >= blockAt_ && at + count <= blockAt_ + block_.size();
    if (!held) {
        block_ = shapes_.read(at, std::max(count, kBlockBytes));
        blockAt_ = at;
    }
    return std::string_view(block_).substr(at - blockAt_, count);
}

std::uint64_t ShapeRecords::placeOf(std::size_t record) const {
    return 2ULL * bigEndian(index_, kHeaderBytes + kIndexBytes * record);
}

std::optional<std::string_view> ShapeRecords::onlyRing(std::size_t record) const {
    const std::uint64_t at = placeOf(record) + kRecordHeaderBytes;
    const std::string_view beginning = bytes(at, kPartsBytes);
    const bool flat = littleEndian(beginning, 0) == kFlatPolygon;
    if (!flat || littleEndian(beginning, 36) != 1) return std::nullopt;
    const std::size_t points = littleEndian(beginning, 40);
    return bytes(at + kPartsBytes + 4, kPointPairBytes * points);
}

bool ShapeRecords::holdsShape(std::size_t record) const {
    const auto require = [&](bool holds, const char* what) {
        if (holds) return;
        throw PlatformError("Record " + std::to_string(record + 1) + " of " + shapes_.path() +
                                " is damaged: " + what + ". Put a whole copy in place",
                            {.file = shapes_.path(), .record = record + 1});
    };
    const std::size_t entry = kHeaderBytes + kIndexBytes * record;
    require(entry + 8 <= index_.size(), "the index has no place for it");
    const std::uint64_t at = placeOf(record);
    const std::uint64_t length = 2ULL * bigEndian(index_, entry + 4);
    require(at >= kHeaderBytes && at + kRecordHeaderBytes + length <= shapes_.size(),
            "its place lies outside of the file");
    const std::string_view beginning = bytes(at, kBeginningBytes);
    require(2ULL * bigEndian(beginning, 4) == length && length >= 4,
            "its length is not what the index says");
    const std::uint32_t type = littleEndian(beginning, kRecordHeaderBytes);
    if (type == 0) return false;
    require(type == type_, "its shape is not of the file's type");
    if (isPoint(type)) {
        require(length >= kPointBytes, "it ends within its point");
        return true;
    }
    if (!hasParts(type)) return true;
    require(length >= kPartsBytes, "it ends before its points");
    const std::uint64_t parts = littleEndian(beginning, kRecordHeaderBytes + 36);
    const std::uint64_t points = littleEndian(beginning, kRecordHeaderBytes + 40);
    require(fills(type, parts, points, length) && (parts > 0) == (points > 0),
            "its parts and points do not fill it");
    if (points == 0) return false;
    require(littleEndian(beginning, kRecordHeaderBytes + kPartsBytes) == 0,
            "its first part does not begin with its first point");
    return true;
}

}  // namespace velmora::platform
