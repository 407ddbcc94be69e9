// SPDX-License-Identifier: MIT
#include "crop/kc_table.h"

#include "gis/connection_text.h"
#include "gis/errors.h"
#include "gis/month_names.h"
#include "gis/text.h"

namespace velmora {

namespace {

constexpr const char* kWorkTable = "NewKc";
constexpr double kDefaultCoefficient = 0.75;

}  // namespace

std::string kcFieldName(int month) { return "Kc_" + GetMonthName(month); }

bool isKcField(const std::string& field) { return sameIgnoringCase(field.substr(0, 3), "Kc_"); }

std::string coefficientFault(const ITable& table, int month) {
    const std::string field = kcFieldName(month);
    if (table.fieldIndex(field) < 0) return "the field is missing";
    try {
        for (std::size_t r = 0; r < table.recordCount(); ++r) {
            const FieldValue value = table.value(r, field);
            const auto* text = std::get_if<std::string>(&value);
            if (!text || text->empty()) continue;
            return "holds the text \"" + *text +
                   "\", but it should be a number: make the field a numeric one";
        }
    } catch (const PlatformError& e) {
        return e.what();
    }
    return {};
}

void createKcTable(IPlatform& platform, const std::string& folder, const std::string& name) {
    const std::string path = joinedPath(folder, "TEMP.MDB");
    const std::string source =
        "Provider = Microsoft.Jet.OLEDB.4.0;Data Source=" + connectionValue(path);
    platform.files().deleteFile(path);
    platform.connections().createDatabase(source);
    try {
        const auto connection = platform.connections().open(source);
        std::vector<ColumnDefinition> columns = {{"CropType", FieldType::text, kCropTypeWidth}};
        for (int month = 1; month <= 12; ++month) {
            columns.push_back({kcFieldName(month), FieldType::number, 0});
        }
        connection->createTable(kWorkTable, columns);
        connection->execute("SELECT * INTO " +
                            bracketedName("DBASE 5.0;DATABASE=" + connectionValue(folder)) + "." +
                            bracketedName(name) + " FROM " + kWorkTable);
    } catch (...) {
        platform.files().deleteFile(path);
        throw;
    }
    platform.files().deleteFile(path);
}

void copyKcTable(IFileSystem& files, const std::string& from, const std::string& to) {
    const std::string old = withoutDbf(from);
    const std::string made = withoutDbf(to);
    if (old == made) return;
    if (files.fileExists(made + ".shp")) {
        throw PlatformError("The table " + to + " belongs to a shapefile: choose another name",
                            {.file = to});
    }
    const auto existing = [&](const char* lower, const char* upper) {
        if (files.fileExists(old + lower)) return old + lower;
        return files.fileExists(old + upper) ? old + upper : std::string();
    };
    const std::string table = existing(".dbf", ".DBF");
    if (table.empty()) throw PlatformError("The table " + from + " is gone", {.file = from});
    const std::string encoding = existing(".cpg", ".CPG");
    files.copyFile(table, made + ".dbf");
    if (encoding.empty()) {
        files.deleteFile(made + ".cpg");
    } else {
        files.copyFile(encoding, made + ".cpg");
    }
}

std::string withoutDbf(const std::string& path) { return withoutEnding(path, ".dbf"); }

std::string kcQuery(const std::string& path) {
    return "SELECT * FROM " + bracketedName(withoutDbf(path));
}

void addDefaultCrop(IRecordset& records, const std::string& cropType) {
    const int fields = records.fieldCount();
    records.addNew();
    records.setValue(records.fieldName(0), cropType);
    for (int month = 1; month <= 12; ++month) {
        const bool winter = month <= 2 || month >= 11;
        records.setValue(fields == 13 ? records.fieldName(month) : kcFieldName(month),
                         winter ? 0.0 : kDefaultCoefficient);
    }
    records.update();
}

}  // namespace velmora
