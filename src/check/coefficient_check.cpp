// SPDX-License-Identifier: MIT
#include "check/coefficient_check.h"

#include <algorithm>
#include <array>
#include <map>
#include <set>
#include <string_view>

#include "check/acres.h"
#include "crop/crop_field.h"
#include "crop/kc_table.h"
#include "gis/errors.h"
#include "gis/numbers.h"
#include "gis/text.h"
#include "irrigation/land_names.h"
#include "settings/modelling_extent.h"
#include "settings/run_choices.h"

namespace velmora {

namespace {

// Monthly coefficients of FAO-56 reach 1.2 over grass, 1.3 or so in dry and windy places; over
// alfalfa a full cover transpires about as much as the reference.
constexpr double kHighestLikely = 1.4;
constexpr double kHighestOverAlfalfa = 1.1;
constexpr double kFullCoverOverGrass = 1.03;
constexpr std::size_t kTellingCrops = 2;

// Crops that at full cover use clearly more water than grass.
constexpr std::array<std::string_view, 13> kTallCrops = {
    "barley",  "beet",     "beets",      "corn",       "cotton",    "maize", "oats",
    "sorghum", "soybeans", "sugarbeets", "sunflowers", "sunflower", "wheat"};

bool isTallCrop(const std::string& crop) {
    return std::ranges::any_of(
        kTallCrops, [&](std::string_view word) { return hasWord(crop, std::string(word)); });
}

class CoefficientCheck {
  public:
    CoefficientCheck(const ITable& table, const RunSettings& settings)
        : table_(table), settings_(settings) {}

    std::vector<Finding> run() {
        for (const int month : settings_.months()) {
            const std::string fault = coefficientFault(table_, month);
            if (fault.empty()) {
                months_.push_back(month);
            } else {
                add(Severity::error, kcFieldName(month), {}, fault);
            }
        }
        if (table_.fields().empty()) return findings_;
        for (std::size_t r = 0; r < table_.recordCount(); ++r) checkCrop(r);
        checkBasis();
        return findings_;
    }

  private:
    void add(Severity severity, const std::string& field, const std::string& crop,
             const std::string& text) {
        findings_.push_back({severity, table_.path(), field, crop, text});
    }

    void checkCrop(std::size_t record) {
        const std::string& key = table_.fields().front().name;
        const std::string crop = keyText(table_.value(record, key));
        if (crop.empty()) return;
        if (!seen_.insert(crop).second) {
            add(Severity::warning, key, crop, "stands more than once: the first record counts");
            return;
        }
        double highest = 0;
        for (const int month : months_) {
            const FieldValue value = table_.value(record, kcFieldName(month));
            const auto* number = std::get_if<double>(&value);
            if (!number) continue;
            highest = std::max(highest, *number);
            if (*number >= 0 && *number <= kHighestLikely) continue;
            add(Severity::warning, kcFieldName(month), crop,
                numberText(*number) + " is not likely for a crop coefficient");
        }
        highest_[crop] = highest;
    }

    void checkBasis() {
        const RefEtMethod method = refEtMethod(settings_);
        if (method == RefEtMethod::none || highest_.empty()) return;
        if (method == RefEtMethod::blaneyCriddle) {
            add(Severity::note, {}, {},
                "method 5 is no reference ET of a crop surface: its coefficients are those of "
                "TR-21, neither those for grass nor those for alfalfa");
        } else if (method == RefEtMethod::asceTall) {
            checkOverAlfalfa();
        } else {
            checkOverGrass();
        }
    }

    void checkOverAlfalfa() {
        const auto top =
            std::ranges::max_element(highest_, {}, [](const auto& crop) { return crop.second; });
        if (top->second <= kHighestOverAlfalfa) return;
        add(Severity::warning, {}, {},
            numberText(top->second) + " (" + top->first +
                ") is high for coefficients over alfalfa, the reference of method 1: are they made "
                "for grass (FAO-56)? Then use method 2, or divide them by 1.2 or so");
    }

    void checkOverGrass() {
        std::size_t telling = 0;
        double highest = 0;
        for (const auto& [crop, most] : highest_) {
            if (!isTallCrop(crop) || most < kFullCoverOverGrass / 2) continue;
            ++telling;
            highest = std::max(highest, most);
        }
        if (telling < kTellingCrops || highest > kFullCoverOverGrass) return;
        add(Severity::warning, {}, {},
            numberText(highest) +
                " is the highest coefficient of grain, corn, beets and the like, which is low over "
                "grass, the reference of method " +
                settings_.RefETMethod +
                ": are they made for alfalfa? Then use method 1, or multiply them by 1.2 or so");
    }

    const ITable& table_;
    const RunSettings& settings_;
    std::vector<int> months_;  // whose field can be taken
    std::set<std::string> seen_;
    std::map<std::string, double> highest_;  // of each crop
    std::vector<Finding> findings_;
};

}  // namespace

std::vector<Finding> checkCoefficients(const ITable& table, const RunSettings& settings) {
    return CoefficientCheck(table, settings).run();
}

std::vector<Finding> checkTypesWithoutRow(IPlatform& platform, const RunSettings& settings,
                                          const ITable& table, bool quick) {
    if (settings.LandCover.empty() || table.fields().empty()) return {};
    std::set<std::string> crops;
    for (std::size_t r = 0; r < table.recordCount(); ++r) {
        crops.insert(keyText(table.value(r, table.fields().front().name)));
    }
    const auto landCover =
        platform.features().openFeatureClass(settings.LandCover, domainCrs(platform, settings));
    const std::string field = fieldOfCrops(*landCover, crops);
    if (field.empty() || !landCover->holdsPolygons()) return {};
    const std::vector<double> areas =
        quick ? std::vector<double>(landCover->recordCount()) : landCover->areas();
    std::map<std::string, double> without;
    for (std::size_t r = 0; r < landCover->recordCount(); ++r) {
        const std::string type = keyText(landCover->value(r, field));
        if (!crops.contains(type)) without[type] += areas.at(r);
    }
    std::vector<Finding> findings;
    for (const auto& [type, area] : without) {
        const bool irrigated = landKindOf(type) != LandKind::notIrrigated && !type.empty();
        findings.push_back({irrigated ? Severity::warning : Severity::note, landCover->path(),
                            field, type.empty() ? "no type" : type,
                            acresText(area) +
                                " have no row in the crop coefficient table, and so no crop "
                                "ET"});
    }
    return findings;
}

}  // namespace velmora
