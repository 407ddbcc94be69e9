// SPDX-License-Identifier: MIT
// Feature classes (shapefiles) and attribute tables (dBASE files) by records and fields.
#pragma once

#include <functional>
#include <memory>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "gis/envelope.h"
#include "gis/field_value.h"

namespace velmora {

// Records with named fields. Field names are compared without regard to ASCII case.
class ITable {
  public:
    virtual ~ITable() = default;
    virtual std::string name() const = 0;  // the file's name without its extension
    virtual std::string path() const = 0;
    virtual const std::vector<Field>& fields() const = 0;
    virtual std::size_t recordCount() const = 0;  // deleted records do not count
    // The place of a record in the file, where deleted records have places too.
    virtual std::size_t placeInFile(std::size_t record) const { return record; }
    // Whether an edit session can store changes in it: it is a dBASE file or a shapefile's own,
    // and both file and folder can be written to.
    virtual bool takesEdits() const { return true; }
    // Throws PlatformError naming table and field when there is no such field.
    virtual FieldValue value(std::size_t record, const std::string& field) const = 0;
    int fieldIndex(const std::string& field) const;  // -1 when there is none
};

// Changes to the fields of a table that are stored all together or not at all.
class IEditSession {
  public:
    virtual ~IEditSession() = default;
    // Adds a numeric field that keeps a double's full precision, unless the table has the field.
    virtual void addNumericField(const std::string& field) = 0;
    virtual void setValue(std::size_t record, const std::string& field,
                          const FieldValue& value) = 0;
    // Adds a record at the end; fields that are not named are null.
    virtual void appendRecord(const std::vector<std::pair<std::string, FieldValue>>& values) = 0;
    // Stores the changes: other columns, their order and types, the text encoding, the records and
    // the files beside the table stay as they are. Throws PlatformError and leaves the files
    // untouched when it cannot.
    virtual void save() = 0;
};

class IFeatureClass : public ITable {
  public:
    virtual Envelope extent() const = 0;
    virtual std::string crs() const = 0;  // WKT, "" when the file carries none
    // Representative points of the features, in `crs` ("" or an unknown own system: as stored).
    // Throws PlatformError when the features are no points.
    virtual std::vector<Point> points(const std::string& crs) const = 0;
    virtual bool holdsPolygons() const = 0;
    // The areas of the polygons by record, in square units of crs(); 0 for a feature without a
    // shape. Throws PlatformError when the features are no polygons.
    virtual std::vector<double> areas() const = 0;
    // Hands over the rings of the polygons, outer and inner, one after the other, in `crs` ("" or
    // an unknown own system: as stored). Throws PlatformError when the features are no polygons.
    virtual void forEachRing(
        const std::string& crs,
        const std::function<void(std::span<const Point> ring)>& visit) const = 0;
};

// A ring-by-ring polygon or a point, for making feature classes.
struct NewFeature {
    std::vector<Point> ring;  // one point, or a closed exterior ring
    std::vector<FieldValue> values;
};

// A rectangle as a polygon.
inline NewFeature rectangle(const Envelope& e, std::vector<FieldValue> values) {
    return {
        {{e.xMin, e.yMin}, {e.xMin, e.yMax}, {e.xMax, e.yMax}, {e.xMax, e.yMin}, {e.xMin, e.yMin}},
        std::move(values)};
}

class IFeatureWorkspaceFactory {
  public:
    virtual ~IFeatureWorkspaceFactory() = default;
    // A shapefile by its path, ".shp" optional. Throws PlatformError.
    virtual std::shared_ptr<IFeatureClass> openFeatureClass(const std::string& path) = 0;
    // The same, transformed to the coordinate system `crs` (WKT): its extent and areas are in that
    // system. A file without a coordinate system is taken to be in it.
    virtual std::shared_ptr<IFeatureClass> openFeatureClass(const std::string& path,
                                                            const std::string& crs) = 0;
    // A dBASE table by its path, ".dbf" optional. Throws PlatformError.
    virtual std::shared_ptr<ITable> openTable(const std::string& path) = 0;
    virtual std::unique_ptr<IEditSession> edit(std::shared_ptr<ITable> table) = 0;
    // True when a feature class was there and has been deleted with the files beside it.
    virtual bool deleteFeatureClass(const std::string& path) = 0;
    virtual void createFeatureClass(const std::string& path, bool polygons, const std::string& crs,
                                    const std::vector<Field>& fields,
                                    const std::vector<NewFeature>& features) = 0;
    virtual void createTable(const std::string& path, const std::vector<Field>& fields,
                             const std::vector<std::vector<FieldValue>>& records) = 0;
};

}  // namespace velmora
