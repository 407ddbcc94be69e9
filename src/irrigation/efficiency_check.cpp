// SPDX-License-Identifier: MIT
#include "irrigation/efficiency_check.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <optional>
#include <set>
#include <utility>

#include "gis/numbers.h"
#include "gis/text.h"
#include "irrigation/zone_filling.h"

namespace velmora {

namespace {

constexpr std::size_t kRowsTold = 3;
constexpr double kShareTolerance = 0.005;  // of the whole
constexpr double kRounding = 1e-9;

std::optional<double> numberIn(const IRecordset& row, const std::string& field) {
    const FieldValue value = row.value(field);
    const auto* number = std::get_if<double>(&value);
    return number ? std::optional(*number) : std::nullopt;
}

std::string shortText(double value) { return numberText(std::round(value * 1e4) / 1e4); }

// Kinds of doubts in the order in which they first came up, each with its rows.
class Doubts {
  public:
    void add(const std::string& kind, const std::string& row) {
        auto found = std::ranges::find(kinds_, kind, &Kind::first);
        if (found == kinds_.end()) found = kinds_.insert(kinds_.end(), {kind, {}});
        found->second.push_back(row);
    }

    std::vector<std::string> texts() const {
        std::vector<std::string> texts;
        for (const auto& [kind, rows] : kinds_) {
            std::string text = kind + ": ";
            for (std::size_t i = 0; i < std::min(rows.size(), kRowsTold); ++i) {
                text += (i == 0 ? "" : "; ") + rows[i];
            }
            if (rows.size() > kRowsTold) {
                text += "; and " + std::to_string(rows.size() - kRowsTold) + " more";
            }
            texts.push_back(text);
        }
        return texts;
    }

  private:
    using Kind = std::pair<std::string, std::vector<std::string>>;
    std::vector<Kind> kinds_;
};

// What a zone's shares add to: 100 where its methods have efficiencies in percent, else 1.
double wholeOf(const IrrigationDatabase& database, const std::string& zone) {
    const auto methods = database.query(IrrigationDatabase::methodsOf(zone));
    for (; !methods->eof(); methods->moveNext()) {
        if (numberIn(*methods, "IRMDEF").value_or(0) > 1) return 100;
    }
    return 1;
}

void doubtFractions(const IRecordset& row, const std::string& name, Doubts& doubts) {
    for (const char* field : {"FAEF", "CVEF", "IREF"}) {
        const auto value = numberIn(row, field);
        if (value && (*value <= 0 || *value > 1 + kRounding)) {
            doubts.add(std::string(field) + " is no fraction above 0 and up to 1",
                       name + " (" + shortText(*value) + ")");
        }
    }
}

void doubtShares(const IRecordset& row, const std::string& name, double shares, double whole,
                 Doubts& doubts) {
    const auto efficiency = numberIn(row, "IREF");
    if (shares == 0 && efficiency && *efficiency != 0) {
        doubts.add(
            "Shares are all 0, so that the efficiency of earlier ones stays (velmora eff set "
            "--not-irrigated takes it away)",
            name + " (" + shortText(*efficiency) + ")");
    } else if (shares != 0 && std::fabs(shares - whole) > kShareTolerance * whole) {
        const bool percent = whole == 1 && shares > 1.5;
        doubts.add("Shares do not add to " + shortText(whole) +
                       (percent ? " (percent? the methods' efficiencies are fractions)" : ""),
                   name + " (" + shortText(shares) + ")");
    }
}

}  // namespace

std::vector<std::string> efficiencyDoubts(const IrrigationDatabase& database,
                                          const std::vector<std::string>& zones) {
    Doubts doubts;
    std::map<std::string, double> wholes;
    std::set<std::pair<std::string, std::string>> seen;
    const auto rows = database.query("Select * from IREF");
    const std::vector<std::string> methods = methodColumns(*rows);
    for (; !rows->eof(); rows->moveNext()) {
        const std::string zone = keyText(rows->value("ZoneUnit"));
        const auto isNamed = [&](const std::string& z) { return sameIgnoringCase(z, zone); };
        if (!zones.empty() && std::ranges::none_of(zones, isNamed)) continue;
        const std::string crop = keyText(rows->value("CropType"));
        const std::string name = "zone \"" + zone + "\", crop \"" + crop + "\"";
        if (!seen.emplace(zone, crop).second) {
            doubts.add("Rows that stand twice, of which the first counts", name);
            continue;
        }
        const auto [whole, isNew] = wholes.try_emplace(zone, 1);
        if (isNew) whole->second = wholeOf(database, zone);
        doubtShares(*rows, name, sumOfShares(*rows, methods), whole->second, doubts);
        if (!isDeclaredNotIrrigated(*rows, methods)) doubtFractions(*rows, name, doubts);
    }
    return doubts.texts();
}

}  // namespace velmora
