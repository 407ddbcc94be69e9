// SPDX-License-Identifier: MIT
// A layer with a working field: a numeric field that a step overwrites again and again. Reading the
// layer shows the step's values at once; the file gets them only when they are stored.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "gis/features.h"

namespace velmora {

class WorkingLayer : public IFeatureClass {
  public:
    // The field starts with what the file holds, null where the file lacks it.
    WorkingLayer(std::shared_ptr<IFeatureClass> layer, std::string field);

    void setValue(std::size_t record, const FieldValue& value);
    // Writes the values that were set into the layer's table through an edit session, which adds
    // the field when it is missing; records that were not set keep what they have. Throws
    // PlatformError and leaves the table as it was when that fails.
    void store(IFeatureWorkspaceFactory& features);

    std::string name() const override { return layer_->name(); }
    std::string path() const override { return layer_->path(); }
    const std::vector<Field>& fields() const override { return fields_; }
    std::size_t recordCount() const override { return layer_->recordCount(); }
    std::size_t placeInFile(std::size_t record) const override {
        return layer_->placeInFile(record);
    }
    bool takesEdits() const override { return layer_->takesEdits(); }
    FieldValue value(std::size_t record, const std::string& field) const override;
    Envelope extent() const override { return layer_->extent(); }
    std::string crs() const override { return layer_->crs(); }
    std::vector<Point> points(const std::string& crs) const override { return layer_->points(crs); }
    bool holdsPolygons() const override { return layer_->holdsPolygons(); }
    std::vector<double> areas() const override { return layer_->areas(); }
    void forEachRing(const std::string& crs,
                     const std::function<void(std::span<const Point> ring)>& visit) const override {
        layer_->forEachRing(crs, visit);
    }

  private:
    std::shared_ptr<IFeatureClass> layer_;
    std::string field_;
    std::vector<Field> fields_;
    std::vector<FieldValue> values_;
    std::vector<bool> set_;
};

}  // namespace velmora
