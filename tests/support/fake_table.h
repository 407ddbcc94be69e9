// SPDX-License-Identifier: MIT
#pragma once

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "gis/projection.h"
#include "tests/support/fake_tables.h"

namespace velmora::test {

// A stored table, opened. Throws PlatformError naming table and field for an unknown field.
FieldValue valueOf(const TableContent& content, const std::string& path, std::size_t record,
                   const std::string& field);

class FakeTable : public ITable {
  public:
    FakeTable(std::string path, ContentPtr content)
        : path_(std::move(path)), content_(std::move(content)) {}
    std::string name() const override;
    std::string path() const override { return path_; }
    const std::vector<Field>& fields() const override { return content_->fields; }
    std::size_t recordCount() const override { return content_->records.size(); }
    FieldValue value(std::size_t record, const std::string& field) const override {
        return valueOf(*content_, path_, record, field);
    }

  private:
    std::string path_;
    ContentPtr content_;
};

class FakeFeatureClass : public IFeatureClass {
  public:
    FakeFeatureClass(std::string path, ContentPtr content, ISpatialReferenceFactory& systems)
        : path_(std::move(path)), content_(std::move(content)), systems_(systems) {}
    std::string name() const override;
    std::string path() const override { return path_; }
    const std::vector<Field>& fields() const override { return content_->fields; }
    std::size_t recordCount() const override { return content_->records.size(); }
    FieldValue value(std::size_t record, const std::string& field) const override {
        return valueOf(*content_, path_, record, field);
    }
    Envelope extent() const override;
    std::string crs() const override { return content_->crs; }
    std::vector<Point> points(const std::string& crs) const override;
    bool holdsPolygons() const override { return content_->polygons; }
    std::vector<double> areas() const override;
    void forEachRing(const std::string& crs,
                     const std::function<void(std::span<const Point> ring)>& visit) const override;

  private:
    std::string path_;
    ContentPtr content_;
    ISpatialReferenceFactory& systems_;
};

}  // namespace velmora::test
