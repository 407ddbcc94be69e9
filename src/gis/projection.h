// SPDX-License-Identifier: MIT
#pragma once

#include <string>
#include <vector>

#include "gis/envelope.h"

namespace velmora {

// Coordinate systems, told apart by their WKT.
class ISpatialReferenceFactory {
  public:
    virtual ~ISpatialReferenceFactory() = default;
    // WKT of a geographic coordinate system by its EPSG code (4269: NAD 1983).
    virtual std::string createGeographic(int code) = 0;
    virtual std::string createProjected(int code) = 0;
    virtual bool isGeographic(const std::string& crs) = 0;  // coordinates in degrees
    // Metres in one map unit of a projected system (1 for metres, 0.3048006 for US survey feet).
    virtual double metresPerUnit(const std::string& crs) = 0;
    virtual std::string name(const std::string& crs) = 0;
    // The points in another coordinate system, x before y (longitude before latitude). Throws
    // PlatformError when a point has no image there.
    virtual std::vector<Point> project(const std::vector<Point>& points, const std::string& from,
                                       const std::string& to) = 0;
};

// What the coordinates of a system are in, for a message ("degrees", "units of 0.3048 m"); "" for
// metres.
std::string unitOtherThanMetres(ISpatialReferenceFactory& systems, const std::string& crs);

}  // namespace velmora
