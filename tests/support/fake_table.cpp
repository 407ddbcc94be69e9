// SPDX-License-Identifier: MIT
#include "tests/support/fake_table.h"

#include <algorithm>

#include "gis/errors.h"
#include "gis/text.h"
#include "tests/support/polygon_rings.h"

namespace velmora::test {

FieldValue valueOf(const TableContent& content, const std::string& path, std::size_t record,
                   const std::string& field) {
    const auto found = std::ranges::find_if(
        content.fields, [&](const Field& f) { return sameIgnoringCase(f.name, field); });
    if (found == content.fields.end()) {
        throw PlatformError(path + " has no field \"" + field + "\"");
    }
    const auto column = static_cast<std::size_t>(found - content.fields.begin());
    const auto& values = content.records.at(record);
    return column < values.size() ? values[column] : FieldValue();
}

std::string FakeTable::name() const { return baseName(path_); }

std::string FakeFeatureClass::name() const { return baseName(path_); }

Envelope FakeFeatureClass::extent() const {
    std::vector<Point> all;
    for (const auto& ring : content_->rings) all.insert(all.end(), ring.begin(), ring.end());
    if (all.empty()) return {};
    Envelope e{all[0].x, all[0].y, all[0].x, all[0].y};
    for (const Point& p : all) {
        e = {std::min(e.xMin, p.x), std::min(e.yMin, p.y), std::max(e.xMax, p.x),
             std::max(e.yMax, p.y)};
    }
    return e;
}

std::vector<Point> FakeFeatureClass::points(const std::string& crs) const {
    if (content_->polygons) throw PlatformError(path_ + " holds no points");
    std::vector<Point> all;
    for (const auto& ring : content_->rings) all.push_back(ring.front());
    return systems_.project(all, content_->crs, crs);
}

std::vector<double> FakeFeatureClass::areas() const {
    if (!content_->polygons) throw PlatformError(path_ + " holds no polygons");
    std::vector<double> all;
    for (const auto& ring : content_->rings) all.push_back(ringArea(ring));
    return all;
}

void FakeFeatureClass::forEachRing(
    const std::string& crs, const std::function<void(std::span<const Point> ring)>& visit) const {
    if (!content_->polygons) throw PlatformError(path_ + " holds no polygons");
    for (const auto& ring : content_->rings) visit(systems_.project(ring, content_->crs, crs));
}

}  // namespace velmora::test
