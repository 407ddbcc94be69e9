// SPDX-License-Identifier: MIT
// A dBASE table by its own bytes. What they say plainly, numbers and texts in ASCII, is read here
// at a fraction of the time; GDAL reads the rest.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "gis/field_value.h"
#include "platform/files/byte_source.h"
#include "platform/tables/dbase_layout.h"

namespace velmora::platform {

// The records as they are stored, deleted ones too, read block by block from the file as it was
// when it was opened.
class DbaseRecords {
  public:
    // Throws PlatformError when the file cannot be read or its header is damaged.
    explicit DbaseRecords(const std::string& table);

    const std::string& path() const { return file_.path(); }
    const DbaseLayout& layout() const { return layout_; }
    // The bytes of a record, of which the first is the deletion mark; none when the file ends
    // before it does. They hold until another record is read.
    std::string_view record(std::size_t record);

  private:
    ByteSource file_;
    DbaseLayout layout_;
    std::string block_;
    std::size_t first_ = 0;  // record of the block
};

// The places of the records that are not deleted.
std::vector<std::size_t> presentRecords(DbaseRecords& table);

// What the bytes of a record's column say, null for blanks. Nothing where they do not say it
// plainly: a text with other characters than ASCII's, a number that is none, a field of another
// type.
std::optional<FieldValue> plainValue(std::string_view record, const DbaseColumn& column,
                                     FieldType type);

// Whether a column is plain in all these records, and its values if it is.
bool isPlain(DbaseRecords& table, std::size_t column, FieldType type,
             const std::vector<std::size_t>& records);
std::optional<std::vector<FieldValue>> plainColumn(DbaseRecords& table, std::size_t column,
                                                   FieldType type,
                                                   const std::vector<std::size_t>& records);

}  // namespace velmora::platform
