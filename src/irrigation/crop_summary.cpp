// SPDX-License-Identifier: MIT
#include "irrigation/crop_summary.h"

#include <algorithm>
#include <map>

namespace velmora {

void summarizeCrops(IPlatform& platform, const IFeatureClass& landCover, const std::string& path) {
    struct Sums {
        double polygons = 0;
        double area = 0;
    };
    std::map<std::string, Sums> crops;
    const bool hasArea = landCover.fieldIndex("AREA") >= 0;
    const std::vector<double> areas = hasArea ? std::vector<double>() : landCover.areas();
    for (std::size_t r = 0; r < landCover.recordCount(); ++r) {
        const std::string crop = keyText(landCover.value(r, kCropField));
        if (crop.empty()) continue;
        Sums& sums = crops[crop];
        ++sums.polygons;
        if (!hasArea) {
            sums.area += areas[r];
        } else if (const FieldValue area = landCover.value(r, "AREA");
                   const auto* number = std::get_if<double>(&area)) {
            sums.area += *number;
        }
    }
    std::size_t width = 50;
    std::vector<std::vector<FieldValue>> records;
    for (const auto& [crop, sums] : crops) {
        width = std::clamp(crop.size(), width, std::size_t{254});
        records.push_back({crop, sums.polygons, sums.area});
    }
    platform.features().createTable(path,
                                    {{"DESCRIPTIO", FieldType::text, static_cast<int>(width), 0},
                                     {"COUNT", FieldType::integer, 10, 0},
                                     {"SUM_AREA", FieldType::number, 24, 3}},
                                    records);
}

std::vector<std::string> summarizedCrops(IPlatform& platform, const std::string& path) {
    const auto table = platform.features().openTable(path);
    std::vector<std::string> crops;
    for (std::size_t r = 0; r < table->recordCount(); ++r) {
        crops.push_back(keyText(table->value(r, "DESCRIPTIO")));
    }
    return crops;
}

}  // namespace velmora
