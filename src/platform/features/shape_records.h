// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "platform/files/byte_source.h"

namespace velmora::platform {

// The records of a shapefile, whose files are whole, as its index lists them. Used by one thread.
class ShapeRecords {
  public:
    explicit ShapeRecords(const std::string& shapefile);  // a path that ends in ".shp"

    // Whether the record (its place in the file) holds points. Throws PlatformError naming file
    // and record unless it is whole: it lies where the index says, has the file's type of shape or
    // none, and its parts and points fill it.
    bool holdsShape(std::size_t record) const;

    // The points of a record that holds a shape, x and y one after the other as the file has them,
    // when it is a polygon of one ring; nothing for other shapes. They hold until the next look.
    std::optional<std::string_view> onlyRing(std::size_t record) const;

  private:
    std::uint64_t placeOf(std::size_t record) const;
    std::string_view bytes(std::uint64_t at, std::size_t count) const;

    ByteSource shapes_;
    std::string index_;
    mutable std::string block_;  // of the file, read ahead
    mutable std::uint64_t blockAt_ = 0;
    std::uint32_t type_ = 0;
};

// Those of a path that ends in ".shp"; nothing for a data set of another kind.
std::optional<ShapeRecords> shapeRecords(const std::string& path);

}  // namespace velmora::platform
