// SPDX-License-Identifier: MIT
#pragma once

#include <ogrsf_frmts.h>

#include <functional>
#include <string>

namespace velmora::platform {

// Hands the polygons of a shapefile over one after the other, by record (deleted ones do not count)
// and in the coordinate system `crs` (WKT; "" or an unknown own system: as stored). Features
// without a shape are passed over. Throws PlatformError when the file cannot be read, is damaged or
// holds other shapes, or a shape has no image in `crs`.
void forEachPolygon(const std::string& path, const std::string& crs,
                    const std::function<void(std::size_t record, OGRGeometryUniquePtr)>& visit);

}  // namespace velmora::platform
