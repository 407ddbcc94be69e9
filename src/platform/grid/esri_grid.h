// SPDX-License-Identifier: MIT
// The ESRI binary grid, single precision: a folder with a few small files and one tile file. All
// numbers are big-endian. Layout of the tile file: a header of 100 bytes, then tile after tile
// (left to right, top to bottom), each an int16 length in 16-bit words followed by its cells row by
// row.
#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "gis/grid_tiles.h"
#include "gis/rasters.h"
#include "platform/files/file_hash.h"
#include "platform/files/posix_file.h"
#include "platform/files/run_notes.h"

namespace velmora::platform {

// Writes a grid folder tile by tile, in any order and from several threads. The folder of a
// grid that does not get finished is its owner's to remove.
class EsriGridWriter {
  public:
    // Creates the folder, which must not be there. Throws PlatformError when that fails or the grid
    // is too large.
    EsriGridWriter(std::string folder, GridGeometry geometry);
    EsriGridWriter(const EsriGridWriter&) = delete;
    EsriGridWriter& operator=(const EsriGridWriter&) = delete;

    const GridGeometry& geometry() const { return geometry_; }
    // `values` are the cells of the tile's block.
    void writeTile(std::size_t tile, std::span<const float> values);
    // Writes the files beside the tile file. The folder is a whole grid after that.
    void finish();
    // All files, with their hashes; that of the tile file is of its header and its tiles in pieces.
    const std::vector<WrittenFile>& files() const { return files_; }

  private:
    static constexpr std::size_t kLanes = 8;
    // Partial sums, added up in tile order so that they never depend on threads.
    struct TileStatistics {
        void add(std::span<const float> row);
        std::array<double, kLanes> cells{};  // with data
        std::array<double, kLanes> sum{};
        std::array<double, kLanes> sumOfSquares{};
        float low = -kNoData;
        float high = kNoData;
    };
    void writeBeside(const std::string& name, const std::string& bytes);
    void writeIndex();
    void writeStatistics();

    std::string folder_;
    GridGeometry geometry_;
    GridTiles tiles_;
    std::vector<TileStatistics> statistics_;
    std::optional<PosixFile> file_;
    PiecesHash hash_;
    std::vector<WrittenFile> files_;
};

// Reads a grid folder of uncompressed single precision tiles straight from its files, or returns
// nothing when the folder is of another kind (GDAL then reads it). Throws PlatformError when the
// folder is of this kind but damaged.
RasterPtr openEsriGrid(const std::string& folder);

}  // namespace velmora::platform
