// SPDX-License-Identifier: MIT
#include "tests/support/polygon_rings.h"

#include <cmath>

namespace velmora::test {

bool ringContains(std::span<const Point> ring, Point p) {
    bool inside = false;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const Point a = ring[i];
        const Point b = ring[(i + 1) % ring.size()];
        if ((a.y > p.y) == (b.y > p.y)) continue;
        if (p.x < a.x + (p.y - a.y) * (b.x - a.x) / (b.y - a.y)) inside = !inside;
    }
    return inside;
}

double ringArea(std::span<const Point> ring) {
    double twice = 0;
    for (std::size_t i = 0; i < ring.size(); ++i) {
        const Point a = ring[i];
        const Point b = ring[(i + 1) % ring.size()];
        twice += a.x * b.y - b.x * a.y;
    }
    return std::fabs(twice) / 2;
}

int ringAt(const std::vector<std::vector<Point>>& rings, Point p) {
    int found = -1;
    for (std::size_t i = 0; i < rings.size(); ++i) {
        if (ringContains(rings[i], p)) found = static_cast<int>(i);
    }
    return found;
}

}  // namespace velmora::test
