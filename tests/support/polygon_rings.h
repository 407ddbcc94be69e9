// SPDX-License-Identifier: MIT
#pragma once

#include <span>
#include <vector>

#include "gis/envelope.h"

namespace velmora::test {

// Whether a ring, closed or not, contains the point: by the number of its edges to the right of it.
bool ringContains(std::span<const Point> ring, Point p);
double ringArea(std::span<const Point> ring);  // square units
// The last ring that contains the point, -1 for none.
int ringAt(const std::vector<std::vector<Point>>& rings, Point p);

}  // namespace velmora::test
