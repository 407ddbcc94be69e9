// SPDX-License-Identifier: MIT
// Writes the first inputs of every corpus into a folder: fuzz_seeds FOLDER. Small whole files of
// each format, and some that are cut or twisted at a place that matters.
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <filesystem>
#include <nlohmann/json.hpp>

#include "gis/errors.h"
#include "gis/grid_tiles.h"
#include "gis/memory_raster.h"
#include "platform/grid/esri_grid.h"
#include "platform/platform.h"
#include "settings/recorded_settings.h"
#include "settings/settings_file.h"
#include "tests/support/jet_writer.h"
#include "tests/support/temp_folder.h"

namespace velmora {
namespace {

namespace fs = std::filesystem;
using test::JetType;

std::string corpora;  // the folder that the seeds go to

void seed(const std::string& corpus, const std::string& name, const std::string& bytes) {
    fs::create_directories(corpora + "/" + corpus);
    test::write(corpora + "/" + corpus + "/" + name, bytes);
}

// A part of an input, after its length in two bytes.
std::string part(const std::string& bytes) {
    return {static_cast<char>(bytes.size() & 0xFFU) +
            std::string(1, static_cast<char>(bytes.size() >> 8U)) + bytes};
}

struct Seeds : testing::Test {
    test::TempFolder folder;
    platform::Platform platform;
    std::string content(const std::string& name) { return test::contentOf(folder.file(name)); }
};

TEST_F(Seeds, Settings) {
    RunSettings settings;
    settings.DEM = "/basin/dem.tif";
    settings.OutputWorkspace =
        "/basin/Gr\xC3\xB6\xC3\x9F"
        "e";
    settings.CellSize = 500;
    settings.BeginMonth = "Apr";
    const std::string record = settingsRecord(settings);
    seed("settings_file", "empty", {});
    seed("settings_file", "default", settingsRecord({}));
    seed("settings_file", "basin", record);
    seed("settings_file", "longer", record + record);
    seed("settings_file", "cut", record.substr(0, record.size() / 2));
    seed("settings_file", "long_text", std::string("\xFF\xFF") + std::string(300, 'x'));
}

TEST_F(Seeds, Expressions) {
    const char* texts[] = {"[TmpRS]",
                           " ( [TmpRS] + 1.00 ) / 100.00",
                           "5.0 / 9.0 * ( 12.5 + -0.0065 * [DEM] + [T] - 32.0)",
                           "0.35 / 18.0 * ( [TNMax] + [TNMin] - [TPMax] - [TPMin] ) ",
                           "[ET] - 0.8 * [PPT]",
                           "Con ( [a] >= 0 , [a] , 0 )",
                           "setnull([a] == 0 & [b] <> 1e39, [a])",
                           "((((((((((((1))))))))))))",
                           "- - -[a b]",
                           "1e999 / 0",
                           "[",
                           "1.2.3 abc",
                           ""};
    int number = 0;
    for (const char* text : texts) seed("expression", "e" + std::to_string(number++), text);
    seed("expression", "deep", std::string(5000, '(') + "1" + std::string(5000, ')'));
    seed("expression", "minuses", std::string(5000, '-') + "1");
}

TEST_F(Seeds, Grids) {
    int number = 0;
    for (const auto& [columns, rows] : {std::pair{3, 2}, {257, 1}}) {
        const GridGeometry geometry{columns, rows, 400000, 4500000, 500, ""};
        const std::string path = folder.file("g" + std::to_string(number));
        platform::EsriGridWriter writer(path, geometry);
        const GridTiles tiles(geometry);
        for (std::size_t t = 0; t < tiles.count(); ++t) {
            const CellBlock block = tiles.block(t, geometry);
            std::vector<float> values(block.cells(), 1.5F);
            values.back() = kNoData;
            writer.writeTile(t, values);
        }
        writer.finish();
        const auto read = [&](const char* name) { return test::contentOf(path + "/" + name); };
        const std::string header = read("hdr.adf") + read("dblbnd.adf");
        const std::string index = read("w001001x.adf");
        const std::string data = read("w001001.adf");
        const std::string name = "grid" + std::to_string(number++);
        seed("esri_grid", name, header + part(index) + data);
        if (number > 1) continue;
        seed("esri_grid", name + "_cut", header + part(index) + data.substr(0, data.size() / 2));
        seed("esri_grid", name + "_no_index", header + part({}) + data);
    }
    seed("esri_grid", "empty", {});
}

TEST_F(Seeds, Shapefiles) {
    auto& features = platform.features();
    const std::string crs = platform.spatialReferences().createProjected(26911);
    const std::vector<Field> fields = {{"NAME", FieldType::text, 10, 0},
                                       {"ELEVATION", FieldType::number, 13, 11},
                                       {"COUNT", FieldType::integer, 5, 0}};
    const std::vector<FieldValue> values = {std::string("O'Dell"), 8.5, 3.0};
    const std::vector<FieldValue> none = {{}, {}, {}};
    features.createFeatureClass(
        folder.file("polygons.shp"), true, crs, fields,
        {rectangle({400000, 4500000, 414800, 4508400}, values),
         {{{400000, 4500000}, {401000, 4509000}, {402000, 4500000}}, none}});
    features.createFeatureClass(folder.file("points.shp"), false, crs, fields,
                                {{{{400000, 4500000}}, values}, {{{400010, 4500100}}, none}});
    features.createFeatureClass(folder.file("bare.shp"), false, "", fields, {});
    for (const std::string name : {"polygons", "points", "bare"}) {
        const std::string shp = content(name + ".shp");
        const std::string shx = content(name + ".shx");
        const std::string dbf = content(name + ".dbf");
        const bool system = fs::exists(folder.file(name + ".prj"));
        const std::string prj = system ? content(name + ".prj") : "";
        seed("shapefile", name, part(shp) + part(shx) + part(dbf) + prj);
        seed("shapefile", name + "_cut_shp",
             part(shp.substr(0, shp.size() - 40)) + part(shx) + part(dbf) + prj);
        seed("shapefile", name + "_no_dbf", part(shp) + part(shx) + part({}) + prj);
        seed("shapefile", name + "_cut_dbf",
             part(shp) + part(shx) + part(dbf.substr(0, dbf.size() - 30)) + "PROJCS[");
        seed("dbase_edit", name, dbf);
        seed("dbase_edit", name + "_cut", dbf.substr(0, dbf.size() - 30));
    }
    seed("dbase_edit", "empty", {});
    features.createTable(folder.file("thirteen.dbf"),
                         {{"A", FieldType::number, 13, 13 - 2},
                          {"STN", FieldType::text, 13, 0},
                          {"TempTTT", FieldType::number, 19, 11}},
                         {{0.5, std::string("S1"), 1.0}, {{}, std::string("S2"), {}}});
    seed("dbase_edit", "thirteen", content("thirteen.dbf"));
}

TEST_F(Seeds, AccessFiles) {
    const std::string whole = test::jetDatabase(
        {{"IRMDDef",
          {{"IRMD", JetType::text, 20}, {"IRMDEF", JetType::real}, {"Used", JetType::yesNo}},
          {{std::string("SPR"), 0.75, 1.0}, {std::string("DRIP"), {}, {}}}},
         {"Kinds",
          {{"Count", JetType::longInteger}, {"Single", JetType::single}, {"When", JetType::date}},
          {{-3.0, 0.25, 38929.75}, {{}, {}, -1.5}}}});
    seed("access", "kinds", whole);
    seed("access", "cut_page", whole.substr(0, whole.size() - 4096));
    seed("access", "cut", whole.substr(0, 5000));
    seed("access", "empty", {});
}

// A database with pages of 512 bytes: seven tables are a few kilobytes.
std::string database(const std::string& path, const std::string& statements) {
    fs::remove(path);
    sqlite3* opened = nullptr;
    sqlite3_open(path.c_str(), &opened);
    const std::string all = "PRAGMA page_size=512; PRAGMA journal_mode=DELETE;" + statements;
    if (sqlite3_exec(opened, all.c_str(), nullptr, nullptr, nullptr) != SQLITE_OK) {
        ADD_FAILURE() << sqlite3_errmsg(opened);
    }
    sqlite3_close(opened);
    return test::contentOf(path);
}

TEST_F(Seeds, IrrigationDatabases) {
    const std::string path = folder.file("IrDB.mdb");
    const std::string tables =
        "CREATE TABLE IRMDDef(IRMD TEXT, IRMDEF DOUBLE, IRMDDES TEXT);"
        "CREATE TABLE IRMD(ZONEUNIT TEXT, IRMD TEXT, IRMDEF DOUBLE, IRMDDES TEXT);"
        "CREATE TABLE IR_Dis_1(ZONEUNIT TEXT, SUR DOUBLE, DRIP DOUBLE);"
        "CREATE TABLE IR_Dis_2(ZONEUNIT TEXT, CropType TEXT, SUR DOUBLE, DRIP DOUBLE);"
        "INSERT INTO IRMDDef VALUES('SUR', 0.6, 'surface'), ('DRIP', 0.9, 'drip');"
        "INSERT INTO IR_Dis_1 VALUES('Z1', 0.4, 0.6);"
        "INSERT INTO IR_Dis_2 VALUES('Z1', 'Corn', 1, 0), ('O''Dell', 'Corn', 0.5, 0.5);";
    const std::string efficiencies =
        "CREATE TABLE IREF(ZoneUnit TEXT, CropType TEXT, SUR DOUBLE, DRIP DOUBLE, FAEF DOUBLE,"
        " CVEF DOUBLE, IREF DOUBLE);"
        "INSERT INTO IREF VALUES('Z1', 'Corn', 0.3, 'x', NULL, 1, NULL);";
    const std::string whole = database(path, tables);
    seed("irrigation_database", "starter", whole);
    seed("irrigation_database", "efficiencies", database(path, tables + efficiencies));
    seed("irrigation_database", "trigger",
         database(path, tables + efficiencies +
                            "CREATE TRIGGER a AFTER UPDATE ON IREF BEGIN DELETE FROM IRMD; END;"));
    seed("irrigation_database", "view",
         database(path,
                  "CREATE TABLE t(IRMD, IRMDEF, IRMDDES); INSERT INTO t VALUES(1, 2, 3);"
                  "CREATE VIEW IRMDDef AS SELECT * FROM t;"
                  "CREATE TABLE IREF(rowid TEXT, CropType BLOB, FAEF TEXT);"
                  "INSERT INTO IREF VALUES('Z1', x'00FF', 'one');"));
    seed("irrigation_database", "cut", whole.substr(0, whole.size() / 2));
    seed("irrigation_database", "empty", {});
}

TEST_F(Seeds, RunNotes) {
    const std::string run =
        R"({"step":"irr","done":true,"seconds":1.5,"ended":"2031-01-02 03:04:05","messages":["a"]})";
    seed("run_notes", "empty", {});
    seed("run_notes", "one", "[" + run + "]");
    seed("run_notes", "mixed",
         "[" + run + R"(, 1, null, {"step": 2}, {"step":"nir","done":"no"}, )" + run + "]");
    seed("run_notes", "object", run);
    seed("run_notes", "cut", "[" + run);
    seed("run_notes", "deep", std::string(5000, '[') + std::string(5000, ']'));
    std::string objects = "[";
    for (int i = 0; i < 3000; ++i) objects += "{\"a\":";
    seed("run_notes", "deep_objects", objects + "1" + std::string(3000, '}') + "]");
    seed("run_notes", "no_utf8", "[{\"step\":\"\xFF\xFE\",\"messages\":[\"\\u0000\\ud800\"]}]");
}

TEST_F(Seeds, Records) {
    nlohmann::ordered_json record = nlohmann::ordered_json::parse(R"({
        "format":"velmora run record","version":1,"step":"kc","run":"1795359800327374067",
        "state":"complete","began":"2031-01-02T03:04:05.6+00:00","ended":"2031-01-02T03:04:06+00:00",
        "program":{"version":"0.1.0","build":"b","host":"h","libraries":{"GDAL":"3.6.2"}},
        "started_by":{"user":"u","machine":"m"},"settings":{},"sources":{"refet":"17"},
        "inputs":[{"path":"/basin/dem","crs":{"name":"n","datum":"d"},"files":[{"path":"/basin/dem/hdr.adf",
            "bytes":308,"modified":"2031-01-02T03:04:05.6+00:00","sha256":"00"}]},
            {"path":"/basin/none","error":"e"}],
        "statements":[{"text":"[a] * 2","times":3}],
        "surfaces":[{"surface":"TM_Jan","field":"w.TM_Jan","estimator":"kriging","stations":9,
            "left_out":[{"station":"A","reason":"r"}],"line":{"a":1,"b_per_metre":-0.01,
            "slope_probability":0.2,"lowest_station":1,"highest_station":2}}],
        "quality":[{"grid":"RefET_Jan_2","month":"Jan","cells":9,"flags":[{"flag":"f","bit":1,"cells":2,
            "share":0.2,"worst":{"value":1,"unit":"u","column":1,"row":2},"surfaces":[]}]}],
        "outputs":[{"path":"Kc_Jan_2","files":[{"path":"Kc_Jan_2/w001001.adf","bytes":16486,
            "modified":"2031-01-02T03:04:05.6+00:00","xxh3_pieces":"00"},
            {"path":"velmora_record_kc.json","bytes":1,"modified":"m","xxh3":"00"}]}],
        "warnings":["w"]})");
    for (const auto& [field, value] : settingsTexts(RunSettings()))
        record["settings"][field] = value;
    const std::string whole = record.dump();
    seed("records", "whole", whole);
    seed("records", "cut", whole.substr(0, whole.size() / 2));
    for (const char* member : {"settings", "inputs", "outputs", "sources", "surfaces", "quality"}) {
        auto other = record;
        other[member] = nullptr;
        seed("records", std::string("null_") + member, other.dump());
        other[member] = {{{"path", 1}}, "text"};
        seed("records", std::string("other_") + member, other.dump());
    }
    record["outputs"][0]["files"][0]["path"] = "../../../../dev/zero";
    seed("records", "elsewhere", record.dump());
    seed("records", "empty", {});
}

TEST_F(Seeds, CommandLines) {
    const char* lines[] = {"",
                           "--help",
                           "--version",
                           "settings\napply\nCellSize=500\nBeginMonth=Apr",
                           "run\nall\n--default-shares\ncrop\n--cvef\n0.9\n--quiet",
                           "run\nrefet\n--diagnose\n--threads\n-1",
                           "run\nall\n--from\nppt\n--only\nirr",
                           "eff\nset\nO'Dell Creek\nCorn\nFurrow=0.4\nPivot=0.6",
                           "table\nStatIRR\n--columns\nZoneUnit,Month\n--csv\n--json",
                           "kc\nset\nSpring Grain\nMay=0.6\n--new\n--yes\n--no",
                           "grid\nstats\nRefET_Jun_2\nRefET_Jul_2\n--settings-folder=/x",
                           "kc\nmaps\n--cell-size\nx\n--\n-1",
                           "report\n\xFF\x1B[2J\nmore",
                           "--threads\n99999999999999999999",
                           "demo"};
    int number = 0;
    for (const char* line : lines) seed("command_line", "c" + std::to_string(number++), line);
}

}  // namespace
}  // namespace velmora

int main(int argc, char** argv) {
    testing::InitGoogleTest(&argc, argv);
    if (argc != 2) return 2;
    velmora::corpora = argv[1];
    return RUN_ALL_TESTS();
}
