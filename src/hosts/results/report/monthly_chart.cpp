// SPDX-License-Identifier: MIT
#include "hosts/results/report/monthly_chart.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

#include "gis/month_names.h"
#include "hosts/results/report/html.h"

namespace velmora {

namespace {

constexpr double kWidth = 430;
constexpr double kHeight = 230;
constexpr double kLeft = 44;
constexpr double kRight = 10;
constexpr double kTop = 30;
constexpr double kBottom = 26;

// A round step that divides the axis into three to six parts.
double axisStep(double largest) {
    const double rough = largest > 0 ? largest / 5 : 0.2;
    const double magnitude = std::pow(10.0, std::floor(std::log10(rough)));
    for (const double factor : {1.0, 2.0, 5.0}) {
        if (rough <= factor * magnitude) return factor * magnitude;
    }
    return 10 * magnitude;
}

double xOf(std::size_t month) {
    return kLeft + (kWidth - kLeft - kRight) * (static_cast<double>(month) + 0.5) / 12;
}

std::string lineOf(const MonthlySeries& series, double top) {
    const auto y = [&](double value) {
        return kHeight - kBottom - (kHeight - kTop - kBottom) * value / top;
    };
    std::string path;
    std::string points;
    bool drawing = false;
    for (std::size_t m = 0; m < 12; ++m) {
        const auto& value = series.values[m];
        if (value) {
            path += fmt::format("{}{:.1f},{:.1f} ", drawing ? "L" : "M", xOf(m), y(*value));
            points += fmt::format(
                "<circle cx=\"{:.1f}\" cy=\"{:.1f}\" r=\"2.6\"><title>{} {}: {:.2f}</title>"
                "</circle>",
                xOf(m), y(*value), escaped(series.name), GetMonthName(static_cast<int>(m) + 1),
                *value);
        }
        drawing = value.has_value();
    }
    return fmt::format(
        "<path d=\"{}\" fill=\"none\" stroke=\"{}\" stroke-width=\"1.8\"/>"
        "<g fill=\"{}\">{}</g>\n",
        path, series.color, series.color, points);
}

}  // namespace

std::string monthlyChart(const std::string& title, const std::string& unit,
                         const std::vector<MonthlySeries>& series) {
    double largest = 0;
    for (const MonthlySeries& s : series) {
        for (const auto& value : s.values) largest = std::max(largest, value.value_or(0));
    }
    const double step = axisStep(largest);
    const double top = step * std::max(1.0, std::ceil(largest / step));
    std::string svg = fmt::format(
        "<svg class=\"chart\" viewBox=\"0 0 {:.0f} {:.0f}\" role=\"img\" aria-label=\"{}\">\n"
        "<text x=\"{:.0f}\" y=\"16\" class=\"title\">{}</text>\n",
        kWidth, kHeight, escaped(title), kLeft, escaped(title));
    svg += fmt::format("<text x=\"{:.0f}\" y=\"16\" class=\"axis\" text-anchor=\"end\">{}</text>\n",
                       kWidth - kRight, escaped(unit));
    for (int i = 0; i * step <= top * (1 + 1e-9); ++i) {
        const double y = kHeight - kBottom - (kHeight - kTop - kBottom) * i * step / top;
        svg += fmt::format(
            "<line x1=\"{:.0f}\" x2=\"{:.0f}\" y1=\"{:.1f}\" y2=\"{:.1f}\" "
            "class=\"grid\"/><text x=\"{:.0f}\" y=\"{:.1f}\" class=\"axis\" "
            "text-anchor=\"end\">{:.4g}</text>\n",
            kLeft, kWidth - kRight, y, y, kLeft - 5, y + 4, i * step);
    }
    for (std::size_t m = 0; m < 12; ++m) {
        svg += fmt::format(
            "<text x=\"{:.1f}\" y=\"{:.0f}\" class=\"axis\" text-anchor=\"middle\">{}</text>\n",
            xOf(m), kHeight - 8, GetMonthName(static_cast<int>(m) + 1));
    }
    for (const MonthlySeries& s : series) svg += lineOf(s, top);
    return svg + "</svg>\n";
}

std::string chartLegend(const std::vector<MonthlySeries>& series) {
    std::string html = "<p class=\"legend\">";
    for (const MonthlySeries& s : series) {
        html +=
            fmt::format("<span><i style=\"background:{}\"></i>{}</span>", s.color, escaped(s.name));
    }
    return html + "</p>\n";
}

}  // namespace velmora
