// SPDX-License-Identifier: MIT
#include "hosts/results/grid_picture.h"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <memory>

#include "gis/errors.h"
#include "hosts/results/cell_image.h"
#include "hosts/results/grid_statistics.h"
#include "hosts/results/png_canvas.h"
#include "modelling/products.h"

namespace velmora {

namespace {

constexpr int kLongestSide = 900;  // pixels of the map's longer side
constexpr int kMargin = 24;
constexpr int kLegendWidth = 190;
constexpr int kTitleHeight = 44;
constexpr int kScaleHeight = 56;

class Picture {
  public:
    Picture(const IRaster& raster, const GridStatistics& statistics,
            const AlgorithmicColorRamp& ramp)
        : raster_(raster), statistics_(statistics), colors_(ramp.colors()) {
        const auto& g = raster.geometry();
        scale_ = static_cast<double>(kLongestSide) / std::max(g.columns, g.rows);
        mapWidth_ = std::max(240, static_cast<int>(std::lround(g.columns * scale_)));
        mapHeight_ = std::max(240, static_cast<int>(std::lround(g.rows * scale_)));
        scale_ = std::min(mapWidth_ / static_cast<double>(g.columns),
                          mapHeight_ / static_cast<double>(g.rows));
        canvas_ = std::make_unique<PngCanvas>(mapWidth_ + kLegendWidth + 2 * kMargin,
                                              mapHeight_ + kTitleHeight + kScaleHeight);
    }

    void draw(const std::string& title) {
        text(title, kMargin, 30, 19, true);
        drawCells();
        drawLegend();
        drawScaleBar();
    }

    void write(IFileSystem& files, const std::string& file) { canvas_->write(files, file); }

  private:
    void text(const std::string& words, double x, double y, double size, bool bold = false) {
        canvas_->text(words, x, y, size, bold);
    }

    void drawCells() {
        const auto& g = raster_.geometry();
        const int width = static_cast<int>(std::lround(g.columns * scale_));
        const int height = static_cast<int>(std::lround(g.rows * scale_));
        const ImageSurface map = cellImage(
            raster_, colorsOf({colors_, statistics_.minimum, statistics_.maximum}), width, height);
        cairo_t* c = canvas_->context();
        cairo_set_source_surface(c, map.get(), kMargin, kTitleHeight);
        cairo_paint(c);
        cairo_set_source_rgb(c, 0.4, 0.4, 0.4);
        cairo_set_line_width(c, 1);
        cairo_rectangle(c, kMargin - 0.5, kTitleHeight - 0.5, width + 1, height + 1);
        cairo_stroke(c);
    }

    void drawLegend() {
        cairo_t* c = canvas_->context();
        const double x = kMargin + mapWidth_ + 22;
        const double top = kTitleHeight + 26;
        const double height = std::min(260, mapHeight_ - 120);
        for (int i = 0; i < 256; ++i) {  // the largest value on top
            const Rgb& color = colors_[static_cast<std::size_t>(255 - i)];
            cairo_set_source_rgb(c, color.red / 255.0, color.green / 255.0, color.blue / 255.0);
            cairo_rectangle(c, x, top + height * i / 256, 24, height / 256 + 1);
            cairo_fill(c);
        }
        const double middle = (statistics_.minimum + statistics_.maximum) / 2;
        text(fmt::format("{:.4g}", statistics_.maximum), x + 32, top + 6, 13);
        text(fmt::format("{:.4g}", middle), x + 32, top + height / 2 + 5, 13);
        text(fmt::format("{:.4g}", statistics_.minimum), x + 32, top + height + 4, 13);
        text(fmt::format("mean {:.4g}", statistics_.mean), x, top + height + 34, 13);
        cairo_set_source_rgb(c, 0.9, 0.9, 0.9);
        cairo_rectangle(c, x, top + height + 48, 24, 14);
        cairo_fill(c);
        text("no data", x + 32, top + height + 60, 13);
    }

    // A round length of about a quarter of the map.
    void drawScaleBar() {
        const auto& g = raster_.geometry();
        const double quarter = g.columns * g.cellSize / 4;
        const double magnitude = std::pow(10.0, std::floor(std::log10(quarter)));
        double length = magnitude;
        for (const double step : {2.0, 5.0}) {
            if (step * magnitude <= quarter) length = step * magnitude;
        }
        const double pixels = length / g.cellSize * scale_;
        const double y = kTitleHeight + mapHeight_ + 22;
        cairo_t* c = canvas_->context();
        cairo_set_source_rgb(c, 0.13, 0.13, 0.13);
        cairo_set_line_width(c, 2);
        cairo_move_to(c, kMargin, y - 6);
        cairo_line_to(c, kMargin, y);
        cairo_line_to(c, kMargin + pixels, y);
        cairo_line_to(c, kMargin + pixels, y - 6);
        cairo_stroke(c);
        text(length >= 1000 ? fmt::format("{:g} km", length / 1000) : fmt::format("{:g} m", length),
             kMargin + pixels + 10, y, 13);
    }

    const IRaster& raster_;
    GridStatistics statistics_;
    std::vector<Rgb> colors_;
    double scale_ = 1;
    int mapWidth_ = 0;
    int mapHeight_ = 0;
    std::unique_ptr<PngCanvas> canvas_;
};

}  // namespace

AlgorithmicColorRamp rampOf(const std::string& name) {
    const Product* product = productOf(name);
    return product ? product->ramp : productMadeBy("refet").ramp;
}

void drawGridPicture(IFileSystem& files, const IRaster& raster, const AlgorithmicColorRamp& ramp,
                     const std::string& title, const std::string& file) {
    const GridStatistics statistics = statisticsOf(raster);
    if (statistics.cells == 0) throw PlatformError("No cell has data, so there is nothing to draw");
    Picture picture(raster, statistics, ramp);
    picture.draw(title);
    picture.write(files, file);
}

}  // namespace velmora
