// SPDX-License-Identifier: MIT
// A database of any content answers what the efficiency dialog and its map ask of it, or is
// refused.
#include <filesystem>

#include "gis/text.h"
#include "irrigation/irrigation_database.h"
#include "platform/platform.h"
#include "tests/fuzz/harness.h"

using namespace velmora;
using fuzz::tried;

namespace {

void readAll(IRecordset& rows) {
    for (; !rows.eof(); rows.moveNext()) {
        for (int i = 0; i < rows.fieldCount(); ++i) {
            const std::string field = rows.fieldName(i);
            tried([&] { rows.value(field); });
        }
    }
}

void useZone(IrrigationDatabase& database, const std::string& zone) {
    tried([&] { database.ensureMethods(zone); });
    tried([&] { database.ensureCrops(zone, {"Corn", "O'Dell hay"}, 0.9); });
    tried([&] { database.addDefaultShares(zone, DefaultShares::ofZone); });
    tried([&] { database.addDefaultShares(zone, DefaultShares::ofZoneAndCrop); });
    tried([&] { database.estimateEfficiencies(zone, [] {}); });
    tried([&] { readAll(*database.query(IrrigationDatabase::methodsOf(zone))); });
    tried([&] { readAll(*database.query(IrrigationDatabase::efficienciesOf(zone))); });
    tried([&] {
        readAll(*database.query("Select * from IREF WHERE [ZONEUNIT] =" + quotedText(zone) +
                                " AND [CropType]=" + quotedText("Corn")));
    });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const fuzz::MemoryFolder& folder = fuzz::memoryFolder();
    static platform::Platform platform;
    for (const char* beside : {"f.mdb-journal", "f.mdb-wal", "f.mdb-shm"}) {
        std::filesystem::remove(folder.file(beside));
    }
    const std::string path = folder.write("f.mdb", fuzz::text(data, size));
    tried([&] {
        IrrigationDatabase database(platform, path);
        for (const char* table : {"IRMDDef", "IRMD", "IR_Dis_1", "IR_Dis_2", "IR_Sources"}) {
            tried([&] { readAll(*database.query(std::string("SELECT * FROM ") + table)); });
        }
        tried([&] {
            if (!database.hasEfficiencyTable()) database.createEfficiencyTable();
        });
        for (const char* zone : {"Z1", "O'Dell"}) useZone(database, zone);
        tried([&] {
            database.dropEfficiencyTable();
            fuzz::require(!database.hasEfficiencyTable());
        });
    });
    return 0;
}
