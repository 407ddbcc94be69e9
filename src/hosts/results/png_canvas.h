// SPDX-License-Identifier: MIT
// A white sheet to draw on, written as a PNG.
#pragma once

#include <cairo.h>

#include <memory>
#include <string>

#include "gis/files.h"

namespace velmora {

struct SurfaceCloser {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
struct ContextCloser {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};
using ImageSurface = std::unique_ptr<cairo_surface_t, SurfaceCloser>;

// The image as the bytes of a PNG. Throws PlatformError.
std::string pngBytes(const ImageSurface& image);

enum class Align { left, centre, right };

class PngCanvas {
  public:
    PngCanvas(int width, int height);  // pixels
    cairo_t* context() { return context_.get(); }
    // Dark grey words whose baseline is at y; x is their left end, middle or right end.
    void text(const std::string& words, double x, double y, double size, bool bold = false,
              Align align = Align::left);
    // Stores the sheet whole or not at all. Throws PlatformError.
    void write(IFileSystem& files, const std::string& file);

  private:
    ImageSurface surface_;
    std::unique_ptr<cairo_t, ContextCloser> context_;
};

}  // namespace velmora
