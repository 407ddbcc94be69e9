// SPDX-License-Identifier: MIT
// A run with land cover, zones and a crop coefficient table, and what a plain calculation makes of
// them.
#pragma once

#include <string>
#include <vector>

#include "tests/support/run_domain.h"

namespace velmora::test {

struct Shape {
    std::string key;
    std::vector<Point> ring;  // not closed
};

struct Crop {
    std::string type;
    std::vector<double> monthly;
};

class CropDomain : public RunDomain {
  public:
    CropDomain(IPlatform& platform, const Folder& where);
    void makeLandCover(const std::vector<Shape>& shapes);
    void makeZones(const std::vector<Shape>& shapes);
    void makeKcTable(const std::vector<Crop>& crops);

    static std::vector<Shape> fields();
    static std::vector<Shape> zones();
    static std::vector<Crop> crops();

    bool runCropEt();
    // Copies "Kc_" + month + "_" + method to the name that crop ET reads.
    void copyKcMaps(const std::vector<std::string>& months);
    std::vector<std::vector<FieldValue>> tableRows(const std::string& name);
};

bool contains(const Shape& shape, Point p);
double areaOf(const Shape& shape);  // square metres
// The last shape that contains the point, -1 for none.
int shapeAt(const std::vector<Shape>& shapes, Point p);

}  // namespace velmora::test
