// SPDX-License-Identifier: MIT
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "gis/features.h"
#include "gis/projection.h"
#include "platform/features/vector_dataset.h"
#include "platform/tables/dbase_records.h"

namespace velmora::platform {

// The existing file of that path with one of the endings ("shp" for the path itself, "x.SHP" or
// "x.shp"), or a PlatformError that names it.
std::string existingFile(const std::string& path, const std::string& extension,
                         const std::string& kind);

// A layer of features or records, each column read when it is first asked for, from a dBASE table
// itself where its bytes are plain. Such columns of a large table are not held: each value is read
// when it is asked for. Used by one thread. What is damaged, and
// a number that is none, is a PlatformError that names file, record and field.
class OgrTable : public IFeatureClass {
  public:
    // Transformed to `crs`, unless that is empty.
    OgrTable(const std::string& path, ISpatialReferenceFactory& spatialReferences,
             const std::string& crs = {});

    std::string name() const override;
    std::string path() const override { return path_; }
    const std::vector<Field>& fields() const override { return fields_; }
    std::size_t recordCount() const override { return places_.size(); }
    std::size_t placeInFile(std::size_t record) const override { return places_.at(record); }
    bool takesEdits() const override;
    FieldValue value(std::size_t record, const std::string& field) const override;

    Envelope extent() const override;
    std::string crs() const override { return crs_; }
    const std::string& sourceCrs() const { return ownCrs_; }  // of the file, "" for none
    std::vector<Point> points(const std::string& crs) const override;
    void forEachRing(const std::string& crs,
                     const std::function<void(std::span<const Point> ring)>& visit) const override;
    bool holdsPolygons() const override;
    std::vector<double> areas() const override;

  private:
    void readOnly(const std::vector<std::string>& wanted, bool geometry) const;
    std::vector<std::size_t> places() const;
    bool readsInPlace(int field) const;
    const std::vector<FieldValue>& column(int field) const;
    std::vector<FieldValue> columnByGdal(int field) const;
    void requireNumbersOf(int field) const;
    bool transformed() const;

    std::string path_;
    ISpatialReferenceFactory& spatialReferences_;
    VectorLayer opened_;
    OGRLayer* layer_ = nullptr;
    std::vector<Field> fields_;
    mutable std::optional<DbaseRecords> stored_;  // the dBASE table, if it is one's
    std::vector<std::size_t> places_;             // of the records in the file
    std::string ownCrs_;
    std::string crs_;
    mutable std::map<int, std::vector<FieldValue>> columns_;
    mutable std::map<int, bool> inPlace_;  // of a large table, by field
};

}  // namespace velmora::platform
