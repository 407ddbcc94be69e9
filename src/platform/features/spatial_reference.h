// SPDX-License-Identifier: MIT
// Coordinate systems through GDAL's OSR and PROJ.
#pragma once

#include <ogr_spatialref.h>

#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <utility>
#include <vector>

#include "gis/projection.h"

namespace velmora::platform {

// Whether two WKT texts mean the same coordinate system. Answers are remembered.
bool sameCoordinateSystem(const std::string& a, const std::string& b);

// WKT in the form that ESRI programs write, and the WKT that such a text means. Remembered as well.
std::string esriWkt(const std::string& crs);
std::string wktFromEsri(const std::string& text);

// Does what looks up coordinate systems. Throws PlatformError when their database could not be read
// meanwhile, which GDAL takes for a system that is not known, or for none.
void lookUp(const std::function<void()>& call);

// The WKT of a system, "" for none, and that of a layer or a raster dataset.
std::string wktOf(const OGRSpatialReference* system);
template <class Dataset>
std::string systemOf(Dataset& dataset) {
    std::string wkt;
    lookUp([&] { wkt = wktOf(dataset.GetSpatialRef()); });
    return wkt;
}

// The system of a WKT text with x before y. Throws PlatformError when the text is none.
OGRSpatialReference spatialReference(const std::string& crs);

class SpatialReferenceFactory : public ISpatialReferenceFactory {
  public:
    std::string createGeographic(int code) override;
    std::string createProjected(int code) override;
    bool isGeographic(const std::string& crs) override;
    double metresPerUnit(const std::string& crs) override;
    std::string name(const std::string& crs) override;
    std::vector<Point> project(const std::vector<Point>& points, const std::string& from,
                               const std::string& to) override;

  private:
    // Transformations are not to be used by two threads at once.
    std::mutex mutex_;
    std::map<std::pair<std::string, std::string>, std::unique_ptr<OGRCoordinateTransformation>>
        transformations_;
};

}  // namespace velmora::platform
