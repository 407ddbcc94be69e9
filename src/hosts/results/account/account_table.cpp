// SPDX-License-Identifier: MIT
#include "hosts/results/account/account_table.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>

#include "gis/month_names.h"

namespace velmora {

namespace {

using Kind = AccountColumnKind;
using Figure = std::optional<double>;

FieldValue valueOf(const Figure& figure) { return figure ? FieldValue(*figure) : FieldValue(); }

// Whether all months of a group have a grid.
bool complete(const Account& account, const AccountGroup& group, bool AccountMonth::*grid) {
    return group.month ? account.months[*group.month].*grid
                       : std::ranges::all_of(account.months, grid);
}

struct Figures {
    Figure cropEt, precipitation, effective, surplus, net, bareNet, water, efficiency;

    Figures(const Account& account, const AccountGroup& group) {
        const Amounts sum = group.sum();
        const auto has = [&](bool AccountMonth::*grid) { return complete(account, group, grid); };
        const auto of = [&](Land land) { return group.amounts[static_cast<std::size_t>(land)]; };
        cropEt = sum.cropEt;
        if (has(&AccountMonth::precipitation)) {
            precipitation = sum.precipitation;
            effective = sum.effective;
            surplus = sum.surplus;
        }
        if (has(&AccountMonth::net)) net = sum.net;
        if (!has(&AccountMonth::efficiency)) return;
        if (net) bareNet = of(Land::withoutEfficiency).net;
        if (!has(&AccountMonth::water) || !group.knowsWater()) return;
        water = sum.water;
        if (net && *water > 0) efficiency = of(Land::withEfficiency).net / *water;
    }
};

// Places the figures of a group under columns, which it makes with the first.
class RowMaker {
  public:
    RowMaker(const Account& account, const AccountKeys& keys, const AccountUnits& units,
             bool isTotal = false)
        : account_(account), keys_(keys), units_(units), isTotal_(isTotal) {}

    std::vector<FieldValue> row(const AccountGroup& group) {
        columns_.clear();
        row_.clear();
        addKeys(group);
        addAreas(group);
        addFigures(group);
        return row_;
    }
    const std::vector<AccountColumn>& columns() const { return columns_; }

  private:
    void add(const std::string& name, const std::string& heading, Kind kind, FieldValue value) {
        std::string_view tag;
        if (kind == Kind::area) tag = units_.areaTag;
        if (kind == Kind::volume) tag = units_.volumeTag;
        if (kind == Kind::depth) tag = units_.depthTag;
        columns_.push_back({tag.empty() ? name : fmt::format("{}_{}", name, tag), heading, kind});
        row_.push_back(std::move(value));
    }

    void addKeys(const AccountGroup& group) {
        const auto text = [&](const std::string& name, bool isKey, const std::string& value) {
            if (isKey) add(name, name, Kind::text, value);
        };
        text("zone", keys_.zone,
             group.zone ? account_.zones[*group.zone].key : "(outside all zones)");
        const auto crop = [&]() -> std::string {
            if (!group.crop) return "(no land cover)";
            return account_.crops[*group.crop].empty() ? "(no crop type)"
                                                       : account_.crops[*group.crop];
        };
        text("crop", keys_.crop, crop());
        text("month", keys_.month,
             group.month ? GetMonthName(account_.months[*group.month].month) : std::string());
        text("land", keys_.land, group.land ? std::string(landText(*group.land)) : std::string());
    }

    void addArea(const std::string& name, const std::string& heading, double cells) {
        add(name, heading, Kind::area, units_.areaOf(cells, account_.cells));
    }

    // Of the zone's own polygons, or of all zones'.
    FieldValue polygonArea(const AccountGroup& group) const {
        double squareMetres = 0;
        for (std::size_t z = 0; z < account_.zones.size(); ++z) {
            if (isTotal_ || group.zone == z) squareMetres += account_.zones[z].squareMetres;
        }
        if (!isTotal_ && !group.zone) return {};
        return squareMetres / units_.squareMetresPerArea;
    }

    void addAreas(const AccountGroup& group) {
        if (keys_.zone && !keys_.crop && !keys_.month && !keys_.land) {
            add("polygon", "polygon", Kind::area, polygonArea(group));
        }
        addArea("land", "all land", group.allCells());
        addArea("land_with_crop_et", "with crop ET", group.cellsWithCropEt());
        if (keys_.land) return;
        for (std::size_t l = 1; l < kLands; ++l) {
            std::string name(landText(static_cast<Land>(l)));
            const std::string heading = name;
            std::ranges::replace(name, ' ', '_');
            std::ranges::transform(name, name.begin(), [](unsigned char c) {
                return static_cast<char>(std::tolower(c));
            });
            addArea("land_" + name, heading, group.cells[l]);
        }
    }

    void addFigures(const AccountGroup& group) {
        const Figures f(account_, group);
        const std::vector<std::tuple<std::string, std::string, Figure>> figures = {
            {"crop_et", "crop ET", f.cropEt},
            {"precipitation", "precip.", f.precipitation},
            {"effective_precipitation", "effective", f.effective},
            {"surplus", "surplus", f.surplus},
            {"net_requirement", "net req.", f.net},
            {"net_requirement_without_efficiency", "without eff.", f.bareNet},
            {"water_requirement", "water req.", f.water}};
        for (const auto& [name, heading, figure] : figures) {
            add(name, heading, Kind::volume,
                valueOf(figure ? Figure(units_.volumeOf(*figure, account_.cells)) : figure));
        }
        add("efficiency", "efficiency", Kind::ratio, valueOf(f.efficiency));
        const double cells = group.cellsWithCropEt();
        for (const auto& [name, heading, figure] : figures) {
            if (name == "net_requirement_without_efficiency") continue;
            add(name, heading, Kind::depth,
                valueOf(figure && cells > 0 ? Figure(*figure / cells * units_.depthPerInch)
                                            : std::nullopt));
        }
    }

    const Account& account_;
    AccountKeys keys_;
    const AccountUnits& units_;
    bool isTotal_;
    std::vector<AccountColumn> columns_;
    std::vector<FieldValue> row_;
};

}  // namespace

AccountTable accountTable(const Account& account, const AccountKeys& keys,
                          const AccountUnits& units) {
    AccountTable table;
    RowMaker maker(account, keys, units);
    for (const AccountGroup& group : groupsOf(account, keys)) {
        table.rows.push_back(maker.row(group));
    }
    table.columns = maker.columns();
    return table;
}

std::vector<FieldValue> totalRow(const Account& account, const AccountKeys& keys,
                                 const AccountUnits& units) {
    RowMaker maker(account, keys, units, true);
    std::vector<FieldValue> row = maker.row(totalOf(account));
    for (std::size_t c = 0; c < row.size(); ++c) {
        if (maker.columns()[c].kind == Kind::text) row[c] = std::string(c == 0 ? "all land" : "");
    }
    return row;
}

AccountTable chosenColumns(const AccountTable& table, const std::vector<std::string>& wanted,
                           const AccountUnits& units) {
    AccountTable chosen;
    std::vector<std::size_t> places;
    for (const std::string& name : wanted) {
        for (std::size_t c = 0; c < table.columns.size(); ++c) {
            const std::string& found = table.columns[c].name;
            if (found != name && found != fmt::format("{}_{}", name, units.areaTag) &&
                found != fmt::format("{}_{}", name, units.volumeTag)) {
                continue;
            }
            chosen.columns.push_back(table.columns[c]);
            places.push_back(c);
        }
    }
    for (const auto& row : table.rows) {
        chosen.rows.emplace_back();
        for (const std::size_t place : places) chosen.rows.back().push_back(row[place]);
    }
    return chosen;
}

std::vector<std::string> pageColumns(const AccountKeys& keys) {
    std::vector<std::string> names;
    if (keys.zone) names.emplace_back("zone");
    if (keys.crop) names.emplace_back("crop");
    if (keys.month) names.emplace_back("month");
    names.emplace_back("polygon");  // of zones alone
    names.emplace_back(keys.land ? "land" : "land_with_crop_et");
    if (keys.month && !keys.land) names.emplace_back("land_without_kc");
    for (const char* name :
         {"crop_et", "precipitation", "effective_precipitation", "surplus", "net_requirement",
          "net_requirement_without_efficiency", "water_requirement", "efficiency"}) {
        names.emplace_back(name);
    }
    return names;
}

std::string figureText(const AccountColumn& column, const FieldValue& value) {
    if (const auto* text = std::get_if<std::string>(&value)) return *text;
    const auto* number = std::get_if<double>(&value);
    if (!number) return "-";
    return fmt::format("{:.{}f}", *number, column.kind == Kind::ratio ? 4 : 1);
}

}  // namespace velmora
