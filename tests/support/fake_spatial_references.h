// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "gis/projection.h"

namespace velmora::test {

// Coordinate systems by name: "degrees CODE", and on a plane where a degree is 100 km each way
// "metres CODE" for the codes of UTM (26901 to 26923), "feet CODE" (of the survey) for others.
// Systems of a kind are one; nothing is transformed into feet.
class FakeSpatialReferences : public ISpatialReferenceFactory {
  public:
    std::string createGeographic(int code) override { return "degrees " + std::to_string(code); }
    std::string createProjected(int code) override {
        const bool utm = code >= 26901 && code <= 26923;
        return (utm ? "metres " : "feet ") + std::to_string(code);
    }
    bool isGeographic(const std::string& crs) override { return crs.starts_with("degrees"); }
    double metresPerUnit(const std::string& crs) override {
        return crs.starts_with("feet") ? 1200.0 / 3937 : 1;
    }
    std::string name(const std::string& crs) override { return crs; }
    std::vector<Point> project(const std::vector<Point>& points, const std::string& from,
                               const std::string& to) override {
        if (from.empty() || to.empty() || isGeographic(from) == isGeographic(to)) return points;
        const double factor = isGeographic(to) ? 1 / kMetresPerDegree : kMetresPerDegree;
        std::vector<Point> projected;
        for (const Point& p : points) projected.push_back({p.x * factor, p.y * factor});
        return projected;
    }

  private:
    static constexpr double kMetresPerDegree = 100000;
};

}  // namespace velmora::test
