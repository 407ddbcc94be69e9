// SPDX-License-Identifier: MIT
#include "crop/crop_field.h"

namespace velmora {

std::string fieldOfCrops(const ITable& landCover, const std::set<std::string>& crops) {
    std::string best;
    std::size_t most = 0;
    for (const Field& field : landCover.fields()) {
        if (field.type != FieldType::text) continue;
        std::size_t found = 0;
        for (std::size_t r = 0; r < landCover.recordCount(); ++r) {
            found += crops.contains(keyText(landCover.value(r, field.name))) ? 1 : 0;
        }
        if (best.empty() || found > most) {
            best = field.name;
            most = found;
        }
    }
    return best;
}

}  // namespace velmora
