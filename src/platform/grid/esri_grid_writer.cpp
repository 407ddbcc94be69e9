// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <utility>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/features/spatial_reference.h"
#include "platform/files/posix_file.h"
#include "platform/grid/big_endian.h"
#include "platform/grid/esri_grid.h"

namespace velmora::platform {

namespace {

constexpr std::size_t kTileCells = static_cast<std::size_t>(kTileColumns) * kTileRows;
constexpr std::size_t kTileBytes = 2 + kTileCells * 4;  // its length word and its cells
constexpr std::size_t kHeaderBytes = 100;
static_assert(kTileBytes == kGridTilePiece && kHeaderBytes == kGridHeaderPiece);
constexpr std::size_t kTileWords = kTileCells * 2;
constexpr double kMostWords = 2147483647.0;  // offsets are int32 counts of 16-bit words

std::string fileHeader(std::size_t fileBytes) {
    std::string header("\x00\x00\x27\x0A\xFF\xFF\x00\x00", 8);
    header.resize(24, '\0');
    appendInt32(header, static_cast<std::uint32_t>(fileBytes / 2));
    header.resize(kHeaderBytes, '\0');
    return header;
}

std::size_t tileFileBytes(const GridTiles& tiles) {
    return kHeaderBytes + tiles.count() * kTileBytes;
}

}  // namespace

EsriGridWriter::EsriGridWriter(std::string folder, GridGeometry geometry)
    : folder_(std::move(folder)),
      geometry_(std::move(geometry)),
      tiles_(geometry_),
      hash_(1 + tiles_.count()) {
    if (static_cast<double>(tileFileBytes(tiles_)) / 2 > kMostWords) {
        throw PlatformError("A grid of " + std::to_string(geometry_.columns) + " x " +
                            std::to_string(geometry_.rows) +
                            " cells is larger than a grid dataset can be (4 GiB): use larger "
                            "cells or a smaller extent");
    }
    statistics_.resize(tiles_.count());
    if (::mkdir(folder_.c_str(), 0777) != 0) throwFileError("Cannot create the grid", folder_);
    file_.emplace(joinedPath(folder_, "w001001.adf"), O_WRONLY | O_CREAT, "Cannot create the grid");
}

// Partial sums in several lanes, so that the additions of a row do not wait for each other. Which
// lane a cell goes to depends on its place alone.
void EsriGridWriter::TileStatistics::add(std::span<const float> row) {
    for (std::size_t c = 0; c < row.size(); ++c) {
        const std::size_t lane = c % kLanes;
        const bool has = row[c] != kNoData;
        const double value = has ? static_cast<double>(row[c]) : 0;
        cells[lane] += has ? 1 : 0;
        sum[lane] += value;
        sumOfSquares[lane] += value * value;
        low = std::min(low, has ? row[c] : low);
        high = std::max(high, row[c]);  // no-data is the lowest of all
    }
}

void EsriGridWriter::writeTile(std::size_t tile, std::span<const float> values) {
    const CellBlock block = tiles_.block(tile, geometry_);
    std::array<std::uint32_t, kTileCells + 1> buffer;  // a length word of 16 bits stands in front
    const std::uint32_t padding = swapped(std::bit_cast<std::uint32_t>(kNoData));
    std::uint32_t* cells = buffer.data() + 1;
    TileStatistics part;
    const auto columns = static_cast<std::size_t>(block.columns);
    for (int r = 0; r < kTileRows; ++r, cells += kTileColumns) {
        if (r >= block.rows) {
            std::fill_n(cells, kTileColumns, padding);
            continue;
        }
        const auto row = values.subspan(static_cast<std::size_t>(r) * columns, columns);
        for (std::size_t c = 0; c < columns; ++c) {
            cells[c] = swapped(std::bit_cast<std::uint32_t>(row[c]));
        }
        std::fill(cells + columns, cells + kTileColumns, padding);
        part.add(row);
    }
    statistics_[tile] = part;
    char* bytes = reinterpret_cast<char*>(buffer.data()) + 2;
    const std::uint16_t words = __builtin_bswap16(static_cast<std::uint16_t>(kTileWords));
    std::memcpy(bytes, &words, 2);
    file_->writeAt(bytes, kTileBytes, kHeaderBytes + tile * kTileBytes);
    hash_.set(1 + tile, {bytes, kTileBytes});
}

void EsriGridWriter::finish() {
    const std::string header = fileHeader(tileFileBytes(tiles_));
    file_->writeAt(header.data(), header.size(), 0);
    file_->close();
    hash_.set(0, header);
    files_.push_back({"w001001.adf", tileFileBytes(tiles_), hash_.text(), true});

    std::string hdr("GRID1.2");
    hdr.resize(16, '\0');
    appendInt32(hdr, 2);  // floating point cells
    appendInt32(hdr, 1);  // not compressed
    hdr.resize(256, '\0');
    appendDouble(hdr, geometry_.cellSize);
    appendDouble(hdr, geometry_.cellSize);
    appendDouble(hdr, geometry_.xMin - geometry_.cellSize / 2);
    appendDouble(hdr, geometry_.yMax + geometry_.cellSize / 2);
    for (const int number : {tiles_.across, tiles_.down, kTileColumns, 1, kTileRows}) {
        appendInt32(hdr, static_cast<std::uint32_t>(number));
    }
    writeBeside("hdr.adf", hdr);

    const Envelope extent = geometry_.extent();
    std::string bounds;
    for (const double bound : {extent.xMin, extent.yMin, extent.xMax, extent.yMax}) {
        appendDouble(bounds, bound);
    }
    writeBeside("dblbnd.adf", bounds);
    writeIndex();
    writeStatistics();
    if (!geometry_.crs.empty()) {
        writeBeside("prj.adf", esriWkt(geometry_.crs) + "\n");
    }
}

void EsriGridWriter::writeBeside(const std::string& name, const std::string& bytes) {
    writeWholeFile(joinedPath(folder_, name), bytes);
    files_.push_back({name, bytes.size(), xxh3Of(bytes), false});
}

void EsriGridWriter::writeIndex() {
    std::string index = fileHeader(kHeaderBytes + tiles_.count() * 8);
    index.reserve(kHeaderBytes + tiles_.count() * 8);
    for (std::size_t tile = 0; tile < tiles_.count(); ++tile) {
        appendInt32(index, static_cast<std::uint32_t>((kHeaderBytes + tile * kTileBytes) / 2));
        appendInt32(index, static_cast<std::uint32_t>(kTileWords));
    }
    writeBeside("w001001x.adf", index);
}

// Readers want the file also for a grid without a single value, whose statistics are no-data.
void EsriGridWriter::writeStatistics() {
    double cells = 0;
    double sum = 0;
    double sumOfSquares = 0;
    float low = -kNoData;
    float high = kNoData;
    for (const TileStatistics& part : statistics_) {
        for (std::size_t lane = 0; lane < kLanes; ++lane) {
            cells += part.cells[lane];
            sum += part.sum[lane];
            sumOfSquares += part.sumOfSquares[lane];
        }
        low = std::min(low, part.low);
        high = std::max(high, part.high);
    }
    const bool empty = cells == 0;
    const double mean = empty ? static_cast<double>(kNoData) : sum / cells;
    const double variance = empty ? 0 : std::max(0.0, sumOfSquares / cells - mean * mean);
    std::string bytes;
    for (const double number : {static_cast<double>(empty ? kNoData : low),
                                static_cast<double>(high), mean, std::sqrt(variance)}) {
        appendDouble(bytes, number);
    }
    writeBeside("sta.adf", bytes);
}

}  // namespace velmora::platform
