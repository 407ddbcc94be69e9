// SPDX-License-Identifier: MIT
#include "hosts/results/diagnostics_report.h"

#include <fmt/format.h>

#include <nlohmann/json.hpp>

#include "gis/errors.h"
#include "gis/numbers.h"
#include "gis/text.h"
#include "hosts/results/semivariogram_picture.h"
#include "modelling/products.h"

namespace velmora {

namespace {

using Json = nlohmann::ordered_json;

std::string methodOf(const SurfaceDiagnostics& s) { return s.kriged ? "kriging" : "IDW"; }

std::string excludedText(const SurfaceDiagnostics& s) {
    std::string text;
    for (const ExcludedStation& station : s.excluded) {
        if (!text.empty()) text += "; ";
        text += station.station + " " + station.reason;
    }
    return text;
}

// The figures of a surface by name, in the order of the columns; null for what it does not have.
Json figures(const SurfaceDiagnostics& s) {
    const auto number = [](const auto& value) { return value ? Json(*value) : Json(); };
    const LeftOutStation* worst = s.worst();
    Json row = {{"surface", s.surface},          {"field", s.field},
                {"method", methodOf(s)},         {"valid", s.validStations},
                {"excluded", s.excluded.size()}, {"zeros", s.zeroStations}};
    row["a"] = s.trend ? Json(s.trend->a) : Json();
    row["b"] = s.trend ? Json(s.trend->b) : Json();
    row["n"] = s.trend ? Json(s.validStations) : Json();
    row["r_squared"] = number(s.rSquared);
    row["nugget"] = s.semivariogram ? Json(s.semivariogram->model.nugget) : Json();
    row["partial_sill"] = s.semivariogram ? Json(s.semivariogram->model.partialSill) : Json();
    row["range_m"] = s.semivariogram ? Json(s.semivariogram->model.range) : Json();
    row["equal_to_range_m"] = s.semivariogram ? number(s.semivariogram->longestEqualRange) : Json();
    row["weighted_error"] = s.semivariogram ? Json(s.semivariogram->weightedError) : Json();
    row["bias"] = number(s.bias());
    row["rmse"] = number(s.rmse());
    row["worst_station"] = worst ? Json(worst->station) : Json();
    row["worst_error"] = worst ? Json(worst->error()) : Json();
    row["excluded_stations"] = excludedText(s);
    return row;
}

std::string csvCell(const Json& value) {
    if (value.is_null()) return {};
    if (value.is_number_float()) return numberText(value.get<double>());
    if (value.is_number()) return value.dump();
    std::string quoted = "\"";
    for (const char c : value.get<std::string>()) quoted += c == '"' ? "\"\"" : std::string(1, c);
    return quoted + "\"";
}

std::string tableCell(const Json& value) {
    return value.is_null() ? "-" : fmt::format("{:.4g}", value.get<double>());
}

// Temperatures are in the unit of the weather table, precipitation is in inches.
std::string unitOf(const SurfaceDiagnostics& s) {
    if (productOf(s.surface) != &productMadeBy("ppt")) return "degrees";
    return s.trend ? "inches" : "ratio";
}

}  // namespace

std::string DiagnosticsReport::table() const {
    std::string text = fmt::format(
        "\n{:<9}{:<9}{:>6}{:>5}{:>11}{:>12}{:>10}{:>11}{:>11}{:>10}{:>11}{:>11}{:>10}  {}\n",
        "surface", "method", "valid", "out", "a", "b", "r2", "nugget", "part.sill", "range km",
        "wtd.error", "bias", "RMSE", "worst station");
    for (const SurfaceDiagnostics& s : surfaces_) {
        const Json f = figures(s);
        const Json range = s.semivariogram ? Json(s.semivariogram->model.range / 1000) : Json();
        text += fmt::format(
            "{:<9}{:<9}{:>6}{:>5}{:>11}{:>12}{:>10}{:>11}{:>11}{:>10}{:>11}{:>11}{:>10}  {}\n",
            s.surface, methodOf(s), s.validStations, s.excluded.size(), tableCell(f["a"]),
            tableCell(f["b"]), tableCell(f["r_squared"]), tableCell(f["nugget"]),
            tableCell(f["partial_sill"]), tableCell(range), tableCell(f["weighted_error"]),
            tableCell(f["bias"]), tableCell(f["rmse"]),
            s.worst() ? fmt::format("{} ({:+.3g})", s.worst()->station, s.worst()->error()) : "-");
    }
    text +=
        "a, b, r2: regression on elevation (metres); nugget, partial sill, range, weighted error: "
        "spherical semivariogram model of what it leaves;\nbias, RMSE, worst station: errors of "
        "the "
        "whole prediction at each station when it is left out, in the weather table's unit\n";
    for (const SurfaceDiagnostics& s : surfaces_) {
        if (s.zeroStations > 0) {
            text +=
                fmt::format("{}: of the errors {} are of stations that hold 0 and take no part\n",
                            s.surface, s.zeroStations);
        }
        if (!s.semivariogram || !s.semivariogram->longestEqualRange) continue;
        text += fmt::format(
            "{}: the range is not identified, {:.4g} to {:.4g} km fit equally; the shortest is "
            "taken\n",
            s.surface, s.semivariogram->model.range / 1000,
            *s.semivariogram->longestEqualRange / 1000);
    }
    for (const auto& [station, surfaces] : exclusions()) {
        text += fmt::format("{}; left out of {}\n", station, joinedNames(surfaces));
    }
    return text;
}

// Each excluded station with its reason and the surfaces that it is left out of.
std::map<std::string, std::vector<std::string>> DiagnosticsReport::exclusions() const {
    std::map<std::string, std::vector<std::string>> surfaces;
    for (const SurfaceDiagnostics& s : surfaces_) {
        for (const ExcludedStation& station : s.excluded) {
            surfaces[station.station + " " + station.reason].push_back(s.surface);
        }
    }
    return surfaces;
}

std::string DiagnosticsReport::json() const {
    auto list = Json::array();
    for (const SurfaceDiagnostics& s : surfaces_) {
        Json entry = figures(s);
        entry["excluded_stations"] = Json::array();
        for (const ExcludedStation& station : s.excluded) {
            entry["excluded_stations"].push_back(
                {{"station", station.station}, {"reason", station.reason}});
        }
        entry["leave_one_out"] = Json::array();
        for (const LeftOutStation& station : s.leaveOneOut) {
            entry["leave_one_out"].push_back({{"station", station.station},
                                              {"observed", station.observed},
                                              {"predicted", station.predicted}});
        }
        list.push_back(entry);
    }
    return list.dump(2);
}

std::string DiagnosticsReport::csv() const {
    std::string text;
    for (const SurfaceDiagnostics& s : surfaces_) {
        const Json row = figures(s);
        std::vector<std::string> names;
        std::vector<std::string> cells;
        for (const auto& [name, value] : row.items()) {
            names.push_back(name);
            cells.push_back(csvCell(value));
        }
        const auto line = [](const std::vector<std::string>& parts) {
            return fmt::format("{}\n", fmt::join(parts, ","));
        };
        if (text.empty()) text = line(names);
        text += line(cells);
    }
    return text;
}

std::vector<std::string> DiagnosticsReport::write(IFileSystem& files, const std::string& folder,
                                                  const std::string& name) const {
    std::vector<std::string> paths = {joinedPath(folder, name + ".csv")};
    files.storeFile(paths.front(), csv());
    for (const SurfaceDiagnostics& s : surfaces_) {
        if (!s.semivariogram) continue;
        paths.push_back(joinedPath(folder, s.surface + "_semivariogram.png"));
        drawSemivariogramPicture(
            files, *s.semivariogram,
            s.surface + ": semivariogram" + (s.kriged ? "" : " (not used: the surface is IDW)"),
            unitOf(s), paths.back());
    }
    return paths;
}

}  // namespace velmora
