// SPDX-License-Identifier: MIT
// The zone tables beside an account: their reading of the grids as millimetres a day, and whether
// they speak of the same grids.
#pragma once

#include <map>
#include <optional>
#include <string>
#include <vector>

#include "hosts/results/account/account.h"

namespace velmora {

// Volumes of the account's months, acre-feet.
struct TableReading {
    std::optional<double> table;   // as the zone table has them
    std::optional<double> inches;  // the same rows by the grids' own unit
    std::optional<double> account;
};

struct AccountAnnex {
    struct Zone {
        std::string key;  // as the tables hold it
        std::map<std::string, TableReading> tables;
    };
    struct Factor {
        int month = 0;
        int days = 0;
        double factor = 0;  // a table's figure over that of the grids' unit
    };
    struct Agreement {
        std::string table;
        double difference = 0;  // the largest of a zone and month, of the account's figure
        std::string where;
    };
    std::vector<Zone> zones;  // zones whose keys look alike in the tables are one
    std::vector<Factor> factors;
    std::vector<Agreement> agreements;  // of the tables that are there
};

// Throws PlatformError when a table cannot be read.
AccountAnnex annexOf(IPlatform& platform, const Account& account);

// How a table's figures come about, for whoever reads them.
std::string tableReadingNote();
// "StatNIR agrees with the account to 2e-13" or where it does not.
std::string agreementText(const AccountAnnex::Agreement& agreement);

}  // namespace velmora
