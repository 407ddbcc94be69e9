// SPDX-License-Identifier: MIT
#include "modelling/quality_text.h"

#include <cmath>

#include "gis/numbers.h"
#include "gis/text.h"
#include "modelling/quality.h"

namespace velmora {

namespace {

// Three digits are enough to tell how bad it is.
std::string shortText(double value) {
    if (value == 0) return "0";
    const double size = std::floor(std::log10(std::fabs(value)));
    const double scale = std::pow(10.0, std::max(0.0, 2 - size));
    return numberText(std::round(value * scale) / scale);
}

}  // namespace

std::string worstText(const QualityNote::Flag& flag) {
    if (!flag.worst) return {};
    const bool lowest =
        flag.bit == bitOf(QualityFlag::negativeEt) || flag.bit == bitOf(QualityFlag::radiationLow);
    const bool up = flag.bit == bitOf(QualityFlag::farFromStations);
    return std::string(lowest ? "lowest "
                       : up   ? "up to "
                              : "by up to ") +
           shortText(flag.worst->value) + " " + flag.unit;
}

std::string shareText(std::size_t cells, double share) {
    if (share < 0.001) return counted(cells, "cell");
    const double percent = 100 * share;
    const double shown = percent < 9.95 ? std::round(percent * 10) / 10 : std::round(percent);
    return numberText(shown) + " %";
}

std::string flagText(const QualityNote::Flag& flag) {
    std::string text = shareText(flag.cells, flag.share) + ": " + flag.flag;
    if (!flag.surfaces.empty()) text += " in " + joinedNames(flag.surfaces);
    if (!flag.worst) return text;
    return text + " (" + worstText(flag) + " at column " + std::to_string(flag.worst->column) +
           ", row " + std::to_string(flag.worst->row) + ")";
}

std::string qualityLine(const QualityNote& note, const std::vector<std::string>& parts) {
    std::string line;
    for (const std::string& part : parts) {
        const auto percent = line.empty() ? part.find(" %: ") : std::string::npos;
        line += line.empty() ? "" : "; ";
        line += percent == std::string::npos
                    ? part
                    : part.substr(0, percent) + " % of the cells: " + part.substr(percent + 4);
    }
    return note.grid + ": " + line;
}

}  // namespace velmora
