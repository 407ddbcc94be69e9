// SPDX-License-Identifier: MIT
#include "hosts/results/report/charts_section.h"

#include "hosts/results/report/html.h"
#include "hosts/results/report/monthly_chart.h"

namespace velmora {

namespace {

std::vector<const Product*> linesOf(bool basin) {
    std::vector<const Product*> lines;
    for (const Product& product : products()) {
        const bool shown = product.charted == Charted::basinAndZones ||
                           (basin && product.charted == Charted::basin);
        if (shown) lines.push_back(&product);
    }
    return lines;
}

std::vector<MonthlySeries> seriesOf(const MonthlyMeans& means,
                                    const std::vector<const Product*>& lines) {
    std::vector<MonthlySeries> series;
    for (const Product* product : lines) {
        MonthlySeries& line = series.emplace_back(
            MonthlySeries{std::string(product->title), std::string(product->lineColor), {}});
        const auto found = means.find(product);
        if (found != means.end()) line.values = found->second;
    }
    return series;
}

}  // namespace

std::string chartsSection(const RunResults& results) {
    std::string html = "<h2 id=\"charts\">Months</h2>\n";
    if (!results.account) {
        return html + "<p>No lines: the water account, of whose cells they are, is not made.</p>\n";
    }
    html +=
        "<p class=\"note\">All lines of a chart are means over the same cells: those that have "
        "crop ET, and precipitation where there is any. Land without an efficiency counts with "
        "no irrigation water requirement. Times its acres a mean is the account's volume.</p>\n";
    const std::vector<MonthlySeries> basin = seriesOf(results.basinMeans, linesOf(true));
    html += "<h3>The whole basin</h3>\n" + chartLegend(basin) + "<div class=\"charts\">" +
            monthlyChart("Basin", "inches per month", basin) + "</div>\n";
    html +=
        "<h3>Zones</h3>\n" + chartLegend(seriesOf({}, linesOf(false))) + "<div class=\"charts\">\n";
    for (const ZoneMeans& zone : results.zoneMeans) {
        html +=
            monthlyChart(zone.zone, "inches per month", seriesOf(zone.byProduct, linesOf(false)));
    }
    return html + "</div>\n";
}

}  // namespace velmora
