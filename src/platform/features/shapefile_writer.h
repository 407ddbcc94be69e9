// SPDX-License-Identifier: MIT
#pragma once

#include <ogrsf_frmts.h>

#include <array>
#include <functional>
#include <string>
#include <vector>

#include "gis/features.h"

namespace velmora::platform {

// The files of a shapefile. The first is the one without which it is none: it goes first when the
// shapefile is deleted, and comes last when it is made.
constexpr std::array<const char*, 8> kShapefileParts = {"shp", "shx", "dbf", "prj",
                                                        "cpg", "qix", "sbn", "sbx"};

// Adds a record with its shape, if any.
using LayerWriter =
    std::function<void(const std::vector<FieldValue>& values, OGRGeometryUniquePtr shape)>;

// How texts are stored: the driver's own one byte a character, or UTF-8 with a ".cpg" that says so.
enum class TextEncoding { latin1, utf8 };

// UTF-8 when one of the names of the fields or of the texts has a character that Latin-1 lacks.
class EncodingChoice {
  public:
    void add(const std::vector<Field>& fields);
    void add(const FieldValue& value);
    TextEncoding encoding() const { return encoding_; }

  private:
    TextEncoding encoding_ = TextEncoding::latin1;
};

// Makes a shapefile, or with wkbNone a dBASE table, in a folder beside and moves its files in
// place when `fill` has added all records. A process that is killed leaves the old one, the new one
// or none. Throws PlatformError.
void writeLayer(const std::string& path, OGRwkbGeometryType type, const std::string& crs,
                const std::vector<Field>& fields, TextEncoding encoding,
                const std::function<void(const LayerWriter& add)>& fill);

}  // namespace velmora::platform
