// SPDX-License-Identifier: MIT
#include "hosts/results/cell_image.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "gis/errors.h"

namespace velmora {

namespace {

constexpr std::uint32_t kEmpty = 0xE6E6E6U;

std::uint32_t pixelOf(const Rgb& color) {
    return static_cast<std::uint32_t>(color.red) << 16U |
           static_cast<std::uint32_t>(color.green) << 8U | static_cast<std::uint32_t>(color.blue);
}

}  // namespace

CellColors colorsOf(const ColorScale& scale) {
    return [scale](float value) {
        const double spread = scale.maximum - scale.minimum;
        const double share = spread > 0 ? (value - scale.minimum) / spread : 0.5;
        const auto last = static_cast<double>(scale.colors.size() - 1);
        return scale.colors[static_cast<std::size_t>(std::clamp(share, 0.0, 1.0) * last)];
    };
}

ImageSurface cellImage(const IRaster& raster, const CellColors& colors, int width, int height) {
    const GridGeometry& g = raster.geometry();
    ImageSurface image(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height));
    cairo_surface_flush(image.get());
    unsigned char* data = cairo_image_surface_get_data(image.get());
    const int stride = cairo_image_surface_get_stride(image.get());
    std::vector<float> row(static_cast<std::size_t>(g.columns));
    int readRow = -1;
    for (int y = 0; y < height; ++y) {
        const int gridRow = std::min(g.rows - 1, static_cast<int>((y + 0.5) * g.rows / height));
        if (gridRow != readRow) raster.read({0, gridRow, g.columns, 1}, row);
        readRow = gridRow;
        auto* pixels = reinterpret_cast<std::uint32_t*>(
            data + static_cast<std::ptrdiff_t>(y) * static_cast<std::ptrdiff_t>(stride));
        for (int x = 0; x < width; ++x) {
            const int column =
                std::min(g.columns - 1, static_cast<int>((x + 0.5) * g.columns / width));
            const float value = row[static_cast<std::size_t>(column)];
            pixels[x] = value == kNoData ? kEmpty : pixelOf(colors(value));
        }
    }
    cairo_surface_mark_dirty(image.get());
    return image;
}

}  // namespace velmora
