// SPDX-License-Identifier: MIT
#include <fcntl.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>
#include <memory>
#include <utility>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/features/spatial_reference.h"
#include "platform/files/posix_file.h"
#include "platform/grid/big_endian.h"
#include "platform/grid/esri_grid.h"

namespace velmora::platform {

namespace {

constexpr std::size_t kHeaderBytes = 100;
constexpr std::size_t kLengthBytes = 2;  // in front of a tile's cells

class EsriGridRaster : public IRaster {
  public:
    EsriGridRaster(std::string folder, GridGeometry geometry, int tileColumns, int tileRows,
                   int tilesAcross, std::vector<std::uint64_t> offsets,
                   std::unique_ptr<const PosixFile> file)
        : folder_(std::move(folder)),
          geometry_(std::move(geometry)),
          tileColumns_(tileColumns),
          tileRows_(tileRows),
          tilesAcross_(tilesAcross),
          offsets_(std::move(offsets)),
          file_(std::move(file)) {}

    const GridGeometry& geometry() const override { return geometry_; }

    void read(const CellBlock& block, std::span<float> values) const override {
        std::vector<std::uint32_t> tile(tileCells() + 1);
        const int lastRow = block.row + block.rows - 1;
        const int lastColumn = block.column + block.columns - 1;
        for (int tr = block.row / tileRows_; tr <= lastRow / tileRows_; ++tr) {
            for (int tc = block.column / tileColumns_; tc <= lastColumn / tileColumns_; ++tc) {
                readTile(static_cast<std::size_t>(tr) * static_cast<std::size_t>(tilesAcross_) +
                             static_cast<std::size_t>(tc),
                         tile);
                copyPart(tile, tc * tileColumns_, tr * tileRows_, block, values);
            }
        }
    }

  private:
    std::size_t tileCells() const {
        return static_cast<std::size_t>(tileColumns_) * static_cast<std::size_t>(tileRows_);
    }

    // Reads a tile into one word more than it has cells, so that the length in front of them, which
    // must be the one that the index tells, leaves the cells aligned.
    void readTile(std::size_t index, std::vector<std::uint32_t>& tile) const {
        auto* bytes = reinterpret_cast<char*>(tile.data()) + kLengthBytes;
        const std::size_t size = kLengthBytes + tileCells() * 4;
        if (file_->readAt(bytes, size, offsets_[index] - kLengthBytes) != size) {
            throw PlatformError("The grid " + folder_ + " is cut short", {.file = folder_});
        }
        const std::size_t words =
            static_cast<unsigned char>(bytes[0]) * 256U + static_cast<unsigned char>(bytes[1]);
        if (words != tileCells() * 2) {
            throw PlatformError("The grid " + folder_ + " is damaged: tile " +
                                    std::to_string(index + 1) + " of w001001.adf has a length of " +
                                    std::to_string(words) + " words, its index tells " +
                                    std::to_string(tileCells() * 2),
                                {.file = folder_});
        }
    }

    // Copies the cells that the tile at (column, row) shares with the block.
    void copyPart(const std::vector<std::uint32_t>& tile, int column, int row,
                  const CellBlock& block, std::span<float> values) const {
        const int left = std::max(column, block.column);
        const int right = std::min(column + tileColumns_, block.column + block.columns);
        const int top = std::max(row, block.row);
        const int bottom = std::min(row + tileRows_, block.row + block.rows);
        for (int r = top; r < bottom; ++r) {
            const std::uint32_t* from =
                tile.data() + 1 +
                static_cast<std::size_t>(r - row) * static_cast<std::size_t>(tileColumns_) +
                static_cast<std::size_t>(left - column);
            float* to =
                values.data() +
                static_cast<std::size_t>(r - block.row) * static_cast<std::size_t>(block.columns) +
                static_cast<std::size_t>(left - block.column);
            for (int c = left; c < right; ++c) *to++ = std::bit_cast<float>(swapped(*from++));
        }
    }

    std::string folder_;
    GridGeometry geometry_;
    int tileColumns_;
    int tileRows_;
    int tilesAcross_;
    std::vector<std::uint64_t> offsets_;  // in bytes, of each tile's first cell
    std::unique_ptr<const PosixFile> file_;
};

std::string optionalFile(const std::string& path, std::size_t most) {
    return isFile(path) ? readWholeFile(path, most) : std::string();
}

int nearestInt(double value) {
    return value > 0 && value < 2.0e9 ? static_cast<int>(std::lround(value)) : 0;
}

// Throws when the index names places that the tile file does not have.
void requireWhole(const std::string& folder, const PosixFile& file,
                  const std::vector<std::uint64_t>& offsets, std::uint64_t tileBytes) {
    const std::uint64_t size = file.size();
    for (const std::uint64_t offset : offsets) {
        if (offset < kHeaderBytes + kLengthBytes) {
            throw PlatformError("The grid " + folder +
                                    " is damaged: its index w001001x.adf points into the header of "
                                    "w001001.adf",
                                {.file = folder});
        }
        if (offset + tileBytes > size)
            throw PlatformError("The grid " + folder + " is cut short", {.file = folder});
    }
}

}  // namespace

RasterPtr openEsriGrid(const std::string& folder) {
    const std::string header = optionalFile(joinedPath(folder, "hdr.adf"), 308);
    const std::string bounds = optionalFile(joinedPath(folder, "dblbnd.adf"), 32);
    const std::string tilePath = joinedPath(folder, "w001001.adf");
    if (header.size() < 308 || bounds.size() < 32 || !header.starts_with("GRID1.2") ||
        int32At(header.data() + 16) != 2 || int32At(header.data() + 20) != 1) {
        return nullptr;
    }
    GridGeometry geometry;
    geometry.cellSize = doubleAt(header.data() + 256);
    geometry.xMin = doubleAt(bounds.data());
    geometry.yMax = doubleAt(bounds.data() + 24);
    if (!(geometry.cellSize > 0) || geometry.cellSize != doubleAt(header.data() + 264)) {
        return nullptr;
    }
    geometry.columns =
        nearestInt((doubleAt(bounds.data() + 16) - geometry.xMin) / geometry.cellSize);
    geometry.rows = nearestInt((geometry.yMax - doubleAt(bounds.data() + 8)) / geometry.cellSize);
    const auto tilesAcross = static_cast<int>(int32At(header.data() + 288));
    const auto tilesDown = static_cast<int>(int32At(header.data() + 292));
    const auto tileColumns = static_cast<int>(int32At(header.data() + 296));
    const auto tileRows = static_cast<int>(int32At(header.data() + 304));
    if (geometry.columns < 1 || geometry.rows < 1 || tileColumns < 1 || tileRows < 1 ||
        tileColumns > 65536 || tileRows > 65536 ||
        static_cast<double>(geometry.cells()) > kMostCells ||
        tilesAcross != (geometry.columns + tileColumns - 1) / tileColumns ||
        tilesDown < (geometry.rows + tileRows - 1) / tileRows || tilesDown > geometry.rows + 1) {
        return nullptr;
    }
    const std::size_t tiles = static_cast<std::size_t>(tilesAcross) *
                              static_cast<std::size_t>((geometry.rows + tileRows - 1) / tileRows);
    const std::string index = optionalFile(joinedPath(folder, "w001001x.adf"), 100 + tiles * 8);
    if (index.size() < 100 + tiles * 8) return nullptr;
    const std::uint64_t words =
        static_cast<std::uint64_t>(tileColumns) * static_cast<std::uint64_t>(tileRows) * 2;
    if (words > 65535) return nullptr;  // a tile tells its length in 16 bits
    std::vector<std::uint64_t> offsets;
    offsets.reserve(tiles);
    for (std::size_t tile = 0; tile < tiles; ++tile) {
        const char* entry = index.data() + 100 + tile * 8;
        if (int32At(entry + 4) != words)
            return nullptr;  // empty tiles and the like: GDAL's business
        offsets.push_back(static_cast<std::uint64_t>(int32At(entry)) * 2 + kLengthBytes);
    }
    geometry.crs = wktFromEsri(optionalFile(joinedPath(folder, "prj.adf"), 65536));
    auto file = std::make_unique<const PosixFile>(tilePath, O_RDONLY, "Cannot open the grid");
    requireWhole(folder, *file, offsets, words * 2);
    return std::make_shared<EsriGridRaster>(folder, std::move(geometry), tileColumns, tileRows,
                                            tilesAcross, std::move(offsets), std::move(file));
}

}  // namespace velmora::platform
