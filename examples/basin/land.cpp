// SPDX-License-Identifier: MIT
#include "examples/basin/land.h"

#include <cmath>
#include <numbers>

namespace velmora::examples {

namespace {

constexpr double kFieldSpacing = 900;   // m between the centres of neighbouring fields
constexpr double kFieldHalfSide = 395;  // a quarter section, roads aside
constexpr double kHighestField = 1480;  // m
constexpr int kPivotCorners = 36;

std::vector<Point> square(Point centre, double half) {
    return {{centre.x - half, centre.y - half},
            {centre.x - half, centre.y + half},
            {centre.x + half, centre.y + half},
            {centre.x + half, centre.y - half},
            {centre.x - half, centre.y - half}};
}

std::vector<Point> circle(Point centre, double radius) {
    std::vector<Point> ring;
    for (int i = 0; i <= kPivotCorners; ++i) {
        const double angle = -2 * std::numbers::pi * (i % kPivotCorners) / kPivotCorners;
        ring.push_back({std::round((centre.x + radius * std::cos(angle)) * 100) / 100,
                        std::round((centre.y + radius * std::sin(angle)) * 100) / 100});
    }
    return ring;
}

double area(const std::vector<Point>& ring) {
    double twice = 0;
    for (std::size_t i = 0; i + 1 < ring.size(); ++i) {
        twice += ring[i].x * ring[i + 1].y - ring[i + 1].x * ring[i].y;
    }
    return std::fabs(twice) / 2;
}

}  // namespace

std::vector<std::string> basinZoneNames() {
    return {"Upper West Canal", "Upper East Canal", "O'Dell Creek",
            "Middle Bench",     "Lower West Canal", "Lower East Canal"};
}

std::vector<NewFeature> basinZones(const GridGeometry& geometry) {
    const Envelope e = geometry.extent();
    const double middle = e.xMin + 0.46 * e.width();
    std::vector<NewFeature> zones;
    const auto names = basinZoneNames();
    for (int i = 0; i < 6; ++i) {
        const int tier = i / 2;  // from the north
        const double top = e.yMax - e.height() / 3 * tier;
        const double bottom = e.yMax - e.height() / 3 * (tier + 1);
        const double left = i % 2 == 0 ? e.xMin + 4000 : middle;
        const double right = i % 2 == 0 ? middle : e.xMax - 4000;
        zones.push_back(
            rectangle({left, bottom, right, top}, {names[static_cast<std::size_t>(i)]}));
    }
    return zones;
}

std::vector<NewFeature> basinFields(const Grid& terrain, const std::vector<std::string>& crops) {
    const GridGeometry& g = terrain.geometry;
    const Envelope e = g.extent();
    std::vector<NewFeature> fields;
    unsigned int number = 7;
    for (double y = e.yMax - kFieldSpacing; y > e.yMin + kFieldSpacing; y -= kFieldSpacing) {
        for (double x = e.xMin + kFieldSpacing; x < e.xMax - kFieldSpacing; x += kFieldSpacing) {
            if (terrain.at(g.columnAt(x), g.rowAt(y)) > kHighestField) continue;
            number = number * 1103515245U + 12345U;
            const unsigned int choice = number >> 16U & 0x7FFFU;
            if (choice % 11 == 0) continue;  // farmsteads, roads, range
            const auto ring =
                choice % 3 == 0 ? circle({x, y}, kFieldHalfSide) : square({x, y}, kFieldHalfSide);
            fields.push_back({ring, {crops[choice % crops.size()], area(ring)}});
        }
    }
    return fields;
}

}  // namespace velmora::examples
