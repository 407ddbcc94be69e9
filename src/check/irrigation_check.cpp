// SPDX-License-Identifier: MIT
#include "check/irrigation_check.h"

#include <set>

#include "check/efficiency_rows_check.h"
#include "check/type_check.h"
#include "gis/errors.h"
#include "irrigation/efficiency_layers.h"
#include "irrigation/irrigation_rules.h"

namespace velmora {

namespace {

std::vector<std::string> textsOf(const ITable& table, const std::string& field) {
    std::set<std::string> texts;
    for (std::size_t r = 0; r < table.recordCount(); ++r) {
        texts.insert(keyText(table.value(r, field)));
    }
    return {texts.begin(), texts.end()};
}

class IrrigationCheck {
  public:
    IrrigationCheck(IPlatform& platform, const RunSettings& settings, bool quick)
        : platform_(platform), settings_(settings), quick_(quick) {}

    std::vector<Finding> run() {
        try {
            if (settings_.LandCover.empty()) return findings_;
            const auto landCover = platform_.features().openFeatureClass(settings_.LandCover);
            if (!quick_) findings_ = checkTypes(*landCover, kCropField);
            if (settings_.Zones.empty()) return findings_;
            layers_ = openEfficiencyLayers(platform_, settings_);
        } catch (const PlatformError& e) {
            findings_.push_back({Severity::error, settings_.LandCover, {}, {}, e.what(), true});
            return findings_;
        }
        const bool haveFields = layers_.landCover->fieldIndex(kCropField) >= 0 &&
                                layers_.zones->fieldIndex(settings_.ZoneField) >= 0;
        if (haveFields && !quick_) checkOverlay();
        checkDatabase(irrigationDatabasePath(settings_), haveFields);
        return findings_;
    }

  private:
    void add(Severity severity, const std::string& file, const std::string& text,
             const std::string& field = {}, const std::string& name = {}) {
        findings_.push_back({severity, file, field, name, text});
    }

    void checkOverlay() {
        try {
            if (!layers_.landCover->holdsPolygons() || !layers_.zones->holdsPolygons()) return;
            requireOverlay(platform_, settings_, layers_);
            if (areApart(layers_)) throw noCommonLand(settings_);
        } catch (const PlatformError& e) {
            add(Severity::error, settings_.LandCover, e.what());
        }
    }

    void checkDatabase(const std::string& path, bool haveFields) {
        if (!platform_.files().fileExists(path)) {
            add(Severity::note, path,
                "there is no irrigation database yet: velmora irdb create makes one");
            return;
        }
        try {
            if (platform_.connections().needsCopy(path)) {
                add(Severity::note, path,
                    "is an Access file: what it holds is looked at when the irrigation efficiency "
                    "has made its copy");
                return;
            }
            const std::string stale = platform_.connections().staleCopy(path);
            if (!stale.empty()) add(Severity::warning, path, stale);
            const IrrigationDatabase database(platform_, path);
            requireTables(database);
            if (haveFields) checkShares(path, database);
            if (haveFields && layers_.landCover->holdsPolygons() &&
                layers_.zones->holdsPolygons()) {
                const auto more =
                    checkEfficiencyRows(database, path, layers_, settings_.ZoneField, quick_);
                findings_.insert(findings_.end(), more.begin(), more.end());
            }
        } catch (const PlatformError& e) {
            add(Severity::error, path, e.what());
        }
    }

    void checkShares(const std::string& path, const IrrigationDatabase& database) {
        for (const DefaultShares source : {DefaultShares::ofZone, DefaultShares::ofZoneAndCrop}) {
            const std::string fault = defaultSharesFault(database, source);
            if (fault.empty()) continue;
            add(Severity::warning, path,
                std::string("default shares of ") +
                    (source == DefaultShares::ofZone ? "zones" : "zones and crops") +
                    " cannot be taken: " + fault);
        }
        const std::vector<std::string> zones = textsOf(*layers_.zones, settings_.ZoneField);
        checkMethods(path, database, zones);
        if (quick_) return;
        for (const std::string& crop :
             cropsWithoutShares(database, zones, textsOf(*layers_.landCover, kCropField))) {
            add(Severity::warning, path,
                "is a crop type of the land cover for which no zone has shares of irrigation "
                "methods: its land gets no efficiency",
                "CropType", crop);
        }
    }

    void checkMethods(const std::string& path, const IrrigationDatabase& database,
                      const std::vector<std::string>& zones) {
        for (const std::string& zone : zones) {
            for (const std::string& code : methodsWithoutEfficiency(database, zone)) {
                add(Severity::error, path,
                    "the efficiency of a method is no number: velmora eff zone needs one for each",
                    "IRMDEF", code + " of " + zone);
            }
        }
    }

    IPlatform& platform_;
    const RunSettings& settings_;
    const bool quick_;
    EfficiencyLayers layers_;
    std::vector<Finding> findings_;
};

}  // namespace

std::vector<Finding> checkIrrigation(IPlatform& platform, const RunSettings& settings, bool quick) {
    return IrrigationCheck(platform, settings, quick).run();
}

}  // namespace velmora
