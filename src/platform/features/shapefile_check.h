// SPDX-License-Identifier: MIT
// Whether the files of a shapefile or a dBASE table are whole, by their headers and sizes alone: a
// file that was cut off would else be read as far as it goes.
//
// Shapes and their index have exactly the size that their headers say, and the table has a record
// for each shape. A table ends with its last record or later: behind it there may be an end mark
// (0x1A), which some programs leave out and others follow up with what an older, longer file had
// there, or bytes that fill up a block. Only what looks like a record that the header does not
// count is refused.
#pragma once

#include <cstddef>
#include <string>

namespace velmora::platform {

// For a path that ends in ".shp" or ".dbf"; of any other file only that it can be opened. Throws
// PlatformError naming the file that is damaged, cut short or cannot be read.
void requireWholeFiles(const std::string& path);

// The file of that name with another extension ("shx"), in small letters or capitals; "" when there
// is none.
std::string fileBeside(const std::string& path, const std::string& extension);

// The shapes that a whole shapefile's index lists.
std::size_t shapeCount(const std::string& shapefile);

// The records of a whole table, deleted ones too.
std::size_t tableRecordCount(const std::string& table);

}  // namespace velmora::platform
