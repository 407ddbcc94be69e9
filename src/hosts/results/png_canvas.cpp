// SPDX-License-Identifier: MIT
#include "hosts/results/png_canvas.h"

#include "gis/errors.h"

namespace velmora {

namespace {

cairo_status_t append(void* bytes, const unsigned char* data, unsigned length) {
    static_cast<std::string*>(bytes)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

}  // namespace

std::string pngBytes(const ImageSurface& image) {
    std::string bytes;
    const cairo_status_t status = cairo_surface_write_to_png_stream(image.get(), append, &bytes);
    if (status != CAIRO_STATUS_SUCCESS) {
        throw PlatformError(std::string("Cannot make a picture: ") +
                            cairo_status_to_string(status));
    }
    return bytes;
}

PngCanvas::PngCanvas(int width, int height)
    : surface_(cairo_image_surface_create(CAIRO_FORMAT_RGB24, width, height)),
      context_(cairo_create(surface_.get())) {
    cairo_set_source_rgb(context_.get(), 1, 1, 1);
    cairo_paint(context_.get());
}

void PngCanvas::text(const std::string& words, double x, double y, double size, bool bold,
                     Align align) {
    cairo_t* c = context_.get();
    cairo_select_font_face(c, "DejaVu Sans", CAIRO_FONT_SLANT_NORMAL,
                           bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_font_size(c, size);
    cairo_set_source_rgb(c, 0.13, 0.13, 0.13);
    if (align != Align::left) {
        cairo_text_extents_t extents;
        cairo_text_extents(c, words.c_str(), &extents);
        x -= align == Align::right ? extents.x_advance : extents.x_advance / 2;
    }
    cairo_move_to(c, x, y);
    cairo_show_text(c, words.c_str());
    cairo_new_path(c);
}

void PngCanvas::write(IFileSystem& files, const std::string& file) {
    files.storeFile(file, pngBytes(surface_));
}

}  // namespace velmora
