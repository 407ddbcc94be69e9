// SPDX-License-Identifier: MIT
#include "platform/features/shapefile_writer.h"

#include <cpl_error.h>
#include <cpl_string.h>
#include <fcntl.h>

#include <filesystem>
#include <optional>

#include "gis/errors.h"
#include "gis/text.h"
#include "gis/zone_keys.h"
#include "platform/features/shapefile_check.h"
#include "platform/features/spatial_reference.h"
#include "platform/features/vector_dataset.h"
#include "platform/files/gdal_library.h"
#include "platform/files/posix_file.h"
#include "platform/files/run_notes.h"
#include "platform/files/unfinished_file.h"

namespace velmora::platform {

namespace fs = std::filesystem;

namespace {

constexpr char kEndMark = 0x1A;  // of a dBASE table
constexpr std::size_t kLongestText = 1 << 20;
constexpr int kDigitsOfInteger = 9;  // that any integer of 32 bits can have

OGRFieldType typeOf(const Field& field) {
    if (field.type == FieldType::text) return OFTString;
    if (field.type != FieldType::integer) return OFTReal;
    return field.width > kDigitsOfInteger + 1 ? OFTInteger64 : OFTInteger;
}

void createField(OGRLayer& layer, const Field& field) {
    OGRFieldDefn definition(field.name.c_str(), typeOf(field));
    definition.SetWidth(field.width);
    definition.SetPrecision(field.decimals);
    if (layer.CreateField(&definition) != OGRERR_NONE) {
        throw PlatformError("field " + field.name + ": " + gdalMessage("it cannot be made"));
    }
}

void setFields(OGRFeature& feature, const std::vector<FieldValue>& values) {
    for (std::size_t i = 0; i < values.size(); ++i) {
        const int index = static_cast<int>(i);
        if (const auto* number = std::get_if<double>(&values[i])) {
            feature.SetField(index, *number);
        } else if (const auto* text = std::get_if<std::string>(&values[i])) {
            feature.SetField(index, text->c_str());
        } else {
            feature.SetFieldNull(index);
        }
    }
}

// The small files beside, which GDAL writes without a look at what becomes of them.
bool textsAreWhole(const std::string& path) {
    for (const char* part : {".prj", ".cpg"}) {
        if (!fs::exists(path + part)) continue;
        const std::string text = trimmedRight(readWholeFile(path + part, kLongestText));
        if (text.empty() || (part == std::string(".prj") && text.back() != ']')) return false;
    }
    return true;
}

// The records of what lies under the path (without an extension), nothing when it is not whole.
std::optional<std::size_t> recordsWritten(const std::string& path, bool shapes) {
    if (!textsAreWhole(path)) return std::nullopt;
    try {
        if (!shapes) return tableRecordCount(path + ".dbf");
        requireWholeFiles(path + ".shp");
        return shapeCount(path + ".shp");
    } catch (const PlatformError&) {
        return std::nullopt;
    }
}

void appendEndMark(const std::string& table) {
    PosixFile file(table, O_WRONLY | O_APPEND, "Cannot write");
    file.write(&kEndMark, 1);
    file.close();
}

void moveInPlace(const fs::path& folder, const std::string& stem, const std::string& target,
                 bool shapes) {
    for (const char* part : kShapefileParts) {  // a name must never be stored before its contents
        const fs::path from = folder / (stem + "." + part);
        if (fs::exists(from)) syncToDisk(from.string());
    }
    if (shapes) fs::remove(target + ".shp");
    // A new table without its note is read as UTF-8 all the same; an old one beside the note of a
    // new one would be, too.
    const fs::path note = folder / (stem + ".cpg");
    const bool notedLast = !shapes && fs::exists(note);
    fs::remove(target + ".CPG");  // which readers know, too
    for (auto part = kShapefileParts.rbegin(); part != kShapefileParts.rend(); ++part) {
        const fs::path from = folder / (stem + "." + *part);
        const fs::path to = target + "." + *part;
        if (notedLast && from == note) continue;
        if (fs::exists(from)) {
            fs::rename(from, to);
        } else if (shapes || from == note) {
            fs::remove(to);  // an old one's would say what is not so
        }
    }
    if (notedLast) fs::rename(note, target + ".cpg");
}

}  // namespace

void EncodingChoice::add(const std::vector<Field>& fields) {
    for (const Field& field : fields) add(FieldValue(field.name));
}

void EncodingChoice::add(const FieldValue& value) {
    const auto* text = std::get_if<std::string>(&value);
    if (text && !fitsLatin1(*text)) encoding_ = TextEncoding::utf8;
}

void writeLayer(const std::string& path, OGRwkbGeometryType type, const std::string& crs,
                const std::vector<Field>& fields, TextEncoding encoding,
                const std::function<void(const LayerWriter& add)>& fill) {
    const std::string stem = baseName(path);
    CPLErrorReset();
    const GdalFailures failures;  // those of the last flush are told to nobody else
    try {
        const UnfinishedFile folder(withoutExtension(path));
        auto* driver = GetGDALDriverManager()->GetDriverByName("ESRI Shapefile");
        DatasetPtr dataset(driver->Create(folder.path().c_str(), 0, 0, 0, GDT_Unknown, nullptr));
        CPLStringList options;
        options.SetNameValue("DBF_EOF_CHAR", "NO");  // which each record would overwrite
        if (encoding == TextEncoding::utf8) options.SetNameValue("ENCODING", "UTF-8");
        OGRSpatialReference system;
        if (!crs.empty()) system = spatialReference(crs);
        OGRLayer* layer = dataset
                              ? dataset->CreateLayer(stem.c_str(), crs.empty() ? nullptr : &system,
                                                     type, options.List())
                              : nullptr;
        if (!layer) throw PlatformError(gdalMessage("the folder may not be writable"));
        for (const Field& field : fields) createField(*layer, field);
        std::size_t records = 0;
        fill([&](const std::vector<FieldValue>& values, OGRGeometryUniquePtr shape) {
            ++records;
            OGRFeature record(layer->GetLayerDefn());
            setFields(record, values);
            if (shape) record.SetGeometryDirectly(shape.release());
            if (layer->CreateFeature(&record) != OGRERR_NONE)
                throw PlatformError(gdalMessage("disk full"));
        });
        dataset->FlushCache();
        dataset.reset();
        if (failures.any()) throw PlatformError(failures.first());
        appendEndMark(joinedPath(folder.path(), stem + ".dbf"));
        const bool shapes = type != wkbNone;
        if (recordsWritten(joinedPath(folder.path(), stem), shapes) != std::optional(records)) {
            throw PlatformError("not all records reached the disk, which may be full");
        }
        moveInPlace(folder.path(), stem, withoutExtension(path), shapes);
        noteWritten(withoutExtension(path) + (shapes ? ".shp" : ".dbf"));
    } catch (const std::exception& e) {
        throw PlatformError("Cannot write " + path + ": " + e.what(), {.file = path});
    }
}

}  // namespace velmora::platform
