// SPDX-License-Identifier: MIT
#include "hosts/results/semivariogram_picture.h"

#include <fmt/core.h>

#include <algorithm>
#include <cmath>
#include <numbers>

#include "hosts/results/png_canvas.h"

namespace velmora {

namespace {

constexpr int kWidth = 760;
constexpr int kHeight = 500;
constexpr double kLeft = 92;
constexpr double kRight = 24;
constexpr double kTop = 92;
constexpr double kBottom = 64;

// A round step that divides the axis into four to nine parts.
double tickStep(double longest) {
    const double magnitude = std::pow(10.0, std::floor(std::log10(longest / 4)));
    double step = magnitude;
    for (const double factor : {2.0, 5.0}) {
        if (longest / (factor * magnitude) >= 4) step = factor * magnitude;
    }
    return step;
}

class Chart {
  public:
    explicit Chart(const Semivariogram& semivariogram)
        : semivariogram_(semivariogram), canvas_(kWidth, kHeight) {
        for (const SemivariogramLag& lag : semivariogram.lags) {
            longest_ = std::max(longest_, lag.distance * 1.06);
            highest_ = std::max(highest_, lag.semivariance * 1.12);
        }
        highest_ = std::max(highest_, semivariogram.model.semivariance(longest_) * 1.12);
    }

    void draw(const std::string& title, const std::string& unit) {
        const SphericalModel& model = semivariogram_.model;
        canvas_.text(title, kLeft, 30, 19, true);
        canvas_.text(
            fmt::format("spherical model: nugget {:.4g}, partial sill {:.4g}, range {:.4g} km",
                        model.nugget, model.partialSill, model.range / 1000),
            kLeft, 54, 13);
        canvas_.text("dots: distance classes, with their number of pairs of stations", kLeft, 74,
                     13);
        drawAxes(unit);
        drawModel();
        drawLags();
    }

    void write(IFileSystem& files, const std::string& file) { canvas_.write(files, file); }

  private:
    double x(double distance) const {
        return kLeft + distance / longest_ * (kWidth - kLeft - kRight);
    }
    double y(double semivariance) const {
        return kHeight - kBottom - semivariance / highest_ * (kHeight - kTop - kBottom);
    }

    void line(double x0, double y0, double x1, double y1, double grey) {
        cairo_t* c = canvas_.context();
        cairo_set_source_rgb(c, grey, grey, grey);
        cairo_set_line_width(c, 1);
        cairo_move_to(c, x0, y0);
        cairo_line_to(c, x1, y1);
        cairo_stroke(c);
    }

    void drawAxes(const std::string& unit) {
        const double step = tickStep(longest_);
        for (double d = 0; d <= longest_; d += step) {
            line(x(d), y(0), x(d), y(highest_), d == 0 ? 0.3 : 0.9);
            canvas_.text(fmt::format("{:g}", d / 1000), x(d), y(0) + 18, 12, false, Align::centre);
        }
        const double rise = tickStep(highest_);
        for (double g = 0; g <= highest_; g += rise) {
            line(x(0), y(g), x(longest_), y(g), g == 0 ? 0.3 : 0.9);
            canvas_.text(fmt::format("{:.4g}", g), kLeft - 8, y(g) + 4, 12, false, Align::right);
        }
        canvas_.text("distance between stations, km", (kLeft + kWidth - kRight) / 2, kHeight - 18,
                     13, false, Align::centre);
        cairo_t* c = canvas_.context();
        cairo_save(c);
        cairo_translate(c, 20, (kTop + kHeight - kBottom) / 2);
        cairo_rotate(c, -std::numbers::pi / 2);
        canvas_.text("semivariance, (" + unit + ")\u00b2", 0, 0, 13, false, Align::centre);
        cairo_restore(c);
    }

    void drawModel() {
        cairo_t* c = canvas_.context();
        cairo_set_source_rgb(c, 0.16, 0.42, 0.62);
        cairo_set_line_width(c, 2.5);
        cairo_new_path(c);
        constexpr int kPoints = 300;
        for (int i = 0; i <= kPoints; ++i) {
            const double d = longest_ * std::max(i, 1) / kPoints * (i == 0 ? 1e-6 : 1);
            cairo_line_to(c, x(d), y(semivariogram_.model.semivariance(d)));
        }
        cairo_stroke(c);
    }

    void drawLags() {
        cairo_t* c = canvas_.context();
        for (const SemivariogramLag& lag : semivariogram_.lags) {
            cairo_set_source_rgb(c, 0.85, 0.37, 0.1);
            cairo_arc(c, x(lag.distance), y(lag.semivariance), 4.5, 0, 2 * std::numbers::pi);
            cairo_fill(c);
            canvas_.text(std::to_string(lag.pairs), x(lag.distance), y(lag.semivariance) - 9, 11,
                         false, Align::centre);
        }
    }

    const Semivariogram& semivariogram_;
    PngCanvas canvas_;
    double longest_ = 0;  // metres along the axis
    double highest_ = 0;
};

}  // namespace

void drawSemivariogramPicture(IFileSystem& files, const Semivariogram& semivariogram,
                              const std::string& title, const std::string& unit,
                              const std::string& file) {
    Chart chart(semivariogram);
    chart.draw(title, unit);
    chart.write(files, file);
}

}  // namespace velmora
