// SPDX-License-Identifier: MIT
// An account as attributes of its zones and as tables, for a geographic database.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

#include "gis/memory_table.h"
#include "hosts/results/account/account_annex.h"
#include "hosts/results/account/account_table.h"

namespace velmora {

struct AccountLayer {
    // A record per zone: the sums of the period, then volumes of each month, "crop_et_acft_jul".
    MemoryTable zones;
    std::vector<std::size_t> zoneOfPolygon;  // by record of the zone shapefile
    MemoryTable rows;                        // by zone, crop, month and kind of land
    MemoryTable residuals;                   // what is left over of each identity
    MemoryTable notes;  // what the account is of, what its columns mean, and its notes
};

// Throws PlatformError when the zones cannot be read.
AccountLayer accountLayer(IPlatform& platform, const Account& account, const AccountUnits& units,
                          const AccountAnnex& annex);

}  // namespace velmora
