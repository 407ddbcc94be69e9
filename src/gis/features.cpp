// SPDX-License-Identifier: MIT
#include "gis/features.h"

#include "gis/text.h"

namespace velmora {

int ITable::fieldIndex(const std::string& field) const {
    const auto& all = fields();
    for (std::size_t i = 0; i < all.size(); ++i) {
        if (sameIgnoringCase(all[i].name, field)) return static_cast<int>(i);
    }
    return -1;
}

}  // namespace velmora
