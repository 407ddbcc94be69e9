// SPDX-License-Identifier: MIT
#pragma once

namespace velmora {

// A point in map units of some coordinate system (metres), or longitude and latitude in degrees.
struct Point {
    double x = 0;
    double y = 0;
    bool operator==(const Point&) const = default;
};

// A rectangle in map units; xMin <= xMax and yMin <= yMax.
struct Envelope {
    double xMin = 0;
    double yMin = 0;
    double xMax = 0;
    double yMax = 0;
    double width() const { return xMax - xMin; }
    double height() const { return yMax - yMin; }
    bool contains(Point p) const {
        return p.x >= xMin && p.x <= xMax && p.y >= yMin && p.y <= yMax;
    }
    bool operator==(const Envelope&) const = default;
};

}  // namespace velmora
