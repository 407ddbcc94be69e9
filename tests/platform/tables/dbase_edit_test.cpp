// SPDX-License-Identifier: MIT
#include "platform/tables/dbase_edit.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "gis/errors.h"
#include "platform/platform.h"
#include "tests/support/temp_folder.h"

namespace velmora::platform {
namespace {

struct DbaseEditing : testing::Test {
    test::TempFolder folder;
    Platform platform;

    DbaseEditing() {
        platform.features().createFeatureClass(
            folder.file("s.shp"), false, "",
            {{"staname", FieldType::text, 12, 0}, {"ELEVATION", FieldType::number, 8, 1}},
            {{{{1, 2}}, {std::string("Se\u00F1or"), 12.5}},
             {{{3, 4}}, {std::string("b"), FieldValue()}},
             {{{5, 6}}, {std::string("c"), 7.0}}});
    }
    std::shared_ptr<IFeatureClass> layer() {
        return platform.features().openFeatureClass(folder.file("s.shp"));
    }
    std::string dbf() const { return test::contentOf(folder.file("s.dbf")); }
    double number(std::size_t record, const std::string& field) {
        return std::get<double>(layer()->value(record, field));
    }
};

TEST_F(DbaseEditing, AddsAFieldAndKeepsAllElse) {
    const std::string before = dbf();
    test::write(folder.file("s.cpg"), "ISO-8859-1");
    const auto session = platform.features().edit(layer());
    session->addNumericField("TempTTT");
    session->setValue(0, "TempTTT", -1.0 / 3);
    session->setValue(2, "TempTTT", 12345.678);
    session->save();
    EXPECT_EQ(number(0, "TempTTT"), -1.0 / 3);  // full precision
    EXPECT_TRUE(isNull(layer()->value(1, "TempTTT")));
    EXPECT_EQ(number(2, "TempTTT"), 12345.678);
    EXPECT_EQ(number(0, "ELEVATION"), 12.5);
    EXPECT_TRUE(isNull(layer()->value(1, "ELEVATION")));
    EXPECT_EQ(test::contentOf(folder.file("s.cpg")), "ISO-8859-1");
    // The old records stand in the new ones byte for byte.
    const std::string after = dbf();
    const std::size_t oldLength = 1 + 12 + 8;
    for (std::size_t r = 0; r < 3; ++r) {
        EXPECT_EQ(after.substr(32 + 3 * 32 + 1 + r * (oldLength + 24), oldLength),
                  before.substr(32 + 2 * 32 + 1 + r * oldLength, oldLength));
    }
    EXPECT_EQ(after[29], before[29]);  // the language mark
}

TEST_F(DbaseEditing, AnExistingFieldIsOverwrittenInPlace) {
    for (int i = 0; i < 2; ++i) {
        const auto session = platform.features().edit(layer());
        session->addNumericField("temptTT");
        session->setValue(1, "TempTTT", 1.5 + i);
        session->save();
    }
    EXPECT_EQ(layer()->fields().size(), 3U);
    EXPECT_EQ(number(1, "TempTTT"), 2.5);
}

TEST_F(DbaseEditing, DeletedRecordsAndOddBytesStay) {
    std::string bytes = dbf();
    const std::size_t second = 32 + 2 * 32 + 1 + 21;
    bytes[second] = '*';         // deleted
    bytes[second + 1] = '\x81';  // no character of its code page
    test::write(folder.file("s.dbf"), bytes);
    EXPECT_EQ(layer()->recordCount(), 2U);
    const auto session = platform.features().edit(layer());
    session->addNumericField("X");
    session->setValue(1, "X", 8.5);  // the second that is left is the third in the file
    session->save();
    const std::string after = dbf();
    EXPECT_EQ(after.substr(32 + 3 * 32 + 1 + 45, 2), std::string("*\x81"));
    EXPECT_EQ(std::get<std::string>(layer()->value(1, "staname")), "c");
    EXPECT_EQ(number(1, "X"), 8.5);
    EXPECT_TRUE(isNull(layer()->value(0, "X")));
}

TEST_F(DbaseEditing, WhatCannotBeStoredChangesNothing) {
    const std::string before = dbf();
    const auto tooLong = platform.features().edit(layer());
    tooLong->setValue(1, "ELEVATION", 1e12);
    EXPECT_THAT([&] { tooLong->save(); },
                testing::ThrowsMessage<PlatformError>(testing::AllOf(
                    testing::HasSubstr("record 2"), testing::HasSubstr("ELEVATION"))));
    const auto unknown = platform.features().edit(layer());
    unknown->setValue(0, "NONE", 1.0);
    EXPECT_THROW(unknown->save(), PlatformError);
    const auto text = platform.features().edit(layer());
    text->setValue(0, "ELEVATION", std::string("high"));
    EXPECT_THROW(text->save(), PlatformError);
    EXPECT_THROW(platform.features().edit(layer())->setValue(3, "ELEVATION", 1.0), PlatformError);
    EXPECT_THROW(platform.features().edit(layer())->addNumericField("TooLongAName"), PlatformError);
    EXPECT_EQ(dbf(), before);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()),
                            std::filesystem::directory_iterator()),
              3);
}

TEST_F(DbaseEditing, NamesInCapitalsServeToo) {
    for (const std::string part : {"shp", "shx", "dbf"}) {
        std::string capitals = part;
        for (char& c : capitals) c = static_cast<char>(c - 'a' + 'A');
        std::filesystem::rename(folder.file("s." + part), folder.file("S." + capitals));
    }
    const auto open = [&] { return platform.features().openFeatureClass(folder.file("S.SHP")); };
    const auto session = platform.features().edit(open());
    session->addNumericField("X");
    session->setValue(0, "X", 4.5);
    session->save();
    EXPECT_EQ(std::get<double>(open()->value(0, "X")), 4.5);
    const auto records = platform.connections()
                             .open("Provider=MSDASQL.1;Data Source=dBASE Files")
                             ->open("SELECT * FROM " + folder.file("S"));
    EXPECT_EQ(records->fieldCount(), 3);
}

TEST_F(DbaseEditing, ADamagedTableIsRefused) {
    const auto session = platform.features().edit(layer());
    session->addNumericField("X");
    for (const std::size_t size : {0U, 20U, 60U, 100U}) {
        test::write(folder.file("s.dbf"), dbf().substr(0, size));
        EXPECT_THROW(session->save(), PlatformError) << size;
    }
}

// An edit that stores other bytes than it should.
class DamagingEdit : public DbaseEdit {
  public:
    using DbaseEdit::DbaseEdit;
    std::function<void(std::string&)> damage;

  protected:
    void write(const std::string& unfinished, const std::string& bytes) override {
        std::string damaged = bytes;
        damage(damaged);
        DbaseEdit::write(unfinished, damaged);
    }
};

TEST_F(DbaseEditing, AnEditThatWouldChangeMoreIsRefused) {
    test::write(folder.file("s.dbf"), dbf() + "behind");
    const std::string before = dbf();
    const std::size_t header = 32 + 3 * 32 + 1;
    const std::size_t length = 1 + 12 + 8 + 24;
    const auto refused = [&](const std::function<void(std::string&)>& damage) -> std::string {
        DamagingEdit edit(layer());
        edit.damage = damage;
        edit.addNumericField("TempTTT");
        edit.setValue(1, "TempTTT", 1.5);
        edit.setValue(1, "staname", std::string("B"));
        try {
            edit.save();
        } catch (const PlatformError& e) {
            EXPECT_EQ(dbf(), before);
            for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
                EXPECT_NE(entry.path().filename().string()[0], '.') << entry.path();
            }
            return e.what();
        }
        ADD_FAILURE() << "stored";
        test::write(folder.file("s.dbf"), before);
        return {};
    };
    const auto flipped = [&](std::size_t at) {
        return refused([at](std::string& bytes) { bytes.at(at) ^= 1; });
    };
    using testing::HasSubstr;
    EXPECT_THAT(flipped(header + 2 * length),
                testing::AllOf(HasSubstr("Cannot store changes in " + folder.file("s.dbf")),
                               HasSubstr("record 3 has changed"), HasSubstr("stays as it was")));
    EXPECT_THAT(flipped(header + 3), HasSubstr("record 1 has changed"));  // a letter of a name
    EXPECT_THAT(flipped(header + length - 1), HasSubstr("record 1 has changed"));  // a blank
    EXPECT_THAT(flipped(header + 2 * length - 1), HasSubstr("another value in TempTTT"));
    EXPECT_THAT(flipped(header + length + 1), HasSubstr("another value in staname"));
    EXPECT_THAT(flipped(0), HasSubstr("header"));
    EXPECT_THAT(flipped(29), HasSubstr("header"));        // the language mark
    EXPECT_THAT(flipped(32 + 16), HasSubstr("damaged"));  // a width
    EXPECT_THAT(flipped(32 + 32 + 17), HasSubstr("the old fields"));
    EXPECT_THAT(flipped(32 + 64), HasSubstr("the field TempTTT is missing"));
    EXPECT_THAT(flipped(4), HasSubstr("records"));
    EXPECT_THAT(flipped(header + 3 * length + 2), HasSubstr("what follows the records"));
    EXPECT_THAT(refused([](std::string& bytes) { bytes.pop_back(); }),
                HasSubstr("what follows the records"));
    EXPECT_THAT(refused([](std::string& bytes) { bytes.resize(bytes.size() - 20); }),
                HasSubstr("what follows the records"));
    EXPECT_THAT(refused([](std::string& bytes) { bytes.clear(); }), HasSubstr("damaged"));
    EXPECT_EQ(refused([&](std::string& bytes) { bytes = before; }).find("stored"),
              std::string::npos);
}

TEST_F(DbaseEditing, RecordsLongerThanTheirFieldsGetNoField) {
    std::string bytes = dbf();
    bytes[10] = static_cast<char>(bytes[10] + 3);  // the record length
    bytes.append(9, ' ');
    test::write(folder.file("s.dbf"), bytes);
    const auto session = platform.features().edit(platform.features().openTable(folder.file("s")));
    session->addNumericField("X");
    EXPECT_THAT([&] { session->save(); },
                testing::ThrowsMessage<PlatformError>(testing::HasSubstr("longer than")));
    EXPECT_EQ(dbf(), bytes);
}

TEST_F(DbaseEditing, AppendedRecordsAreComparedToo) {
    const std::string path = folder.file("t.dbf");
    platform.features().createTable(
        path, {{"name", FieldType::text, 13, 0}, {"Kc", FieldType::number, 13, 11}},
        {{std::string("a"), 0.5}});
    const std::string before = test::contentOf(path);
    const auto append = [&](const std::function<void(std::string&)>& damage) {
        DamagingEdit edit(platform.features().openTable(path));
        edit.damage = damage;
        edit.appendRecord({{"name", std::string("b")}, {"Kc", 0.25}});
        edit.save();
    };
    const std::size_t second = 32 + 2 * 32 + 1 + 27;
    for (const std::size_t at : {second, second + 1, second + 26, second - 1}) {
        EXPECT_THROW(append([at](std::string& bytes) { bytes.at(at) ^= 1; }), PlatformError);
        EXPECT_EQ(test::contentOf(path), before);
    }
    append([](std::string&) {});
    const auto table = platform.features().openTable(path);
    EXPECT_EQ(std::get<double>(table->value(1, "Kc")), 0.25);
    EXPECT_EQ(test::contentOf(path).substr(32 + 2 * 32 + 1, 27),
              before.substr(32 + 2 * 32 + 1, 27));
}

// Tables whose field descriptors hold the byte that ends their list: widths, decimals and, where a
// program writes them down, places in the record.
struct ThirteensTest : testing::TestWithParam<std::vector<Field>> {};

TEST_P(ThirteensTest, AnEditKeepsEveryOtherField) {
    const test::TempFolder folder;
    Platform platform;
    const std::string path = folder.file("t.dbf");
    const std::vector<Field>& fields = GetParam();
    std::vector<std::vector<FieldValue>> records;
    for (int r = 0; r < 500; ++r) {
        records.emplace_back();
        for (const Field& field : fields) {
            records.back().push_back(field.type == FieldType::text
                                         ? FieldValue("n" + std::to_string(r))
                                         : FieldValue(r + 0.125));
        }
    }
    platform.features().createTable(path, fields, records);
    std::string bytes = test::contentOf(path);
    for (std::size_t f = 0, offset = 1; f < fields.size(); ++f) {  // as some programs do
        bytes[32 + 32 * f + 12] = static_cast<char>(offset);
        offset += static_cast<std::size_t>(fields[f].width);
    }
    test::write(path, bytes);
    const auto session = platform.features().edit(platform.features().openTable(path));
    session->addNumericField("TempTTT");
    session->setValue(499, "TempTTT", -2.5);
    session->setValue(3, fields[1].name, 7.0);
    session->save();
    const auto table = platform.features().openTable(path);
    ASSERT_EQ(table->fields().size(), fields.size() + 1);
    ASSERT_EQ(table->recordCount(), 500U);
    for (std::size_t f = 0; f < fields.size(); ++f) {
        EXPECT_EQ(table->fields()[f].name, fields[f].name);
        EXPECT_EQ(table->fields()[f].width, fields[f].width);
        EXPECT_EQ(table->fields()[f].decimals, fields[f].decimals);
    }
    for (std::size_t r = 0; r < records.size(); ++r) {
        for (std::size_t f = 0; f < fields.size(); ++f) {
            const FieldValue expected = r == 3 && f == 1 ? FieldValue(7.0) : records[r][f];
            ASSERT_EQ(table->value(r, fields[f].name), expected) << r << fields[f].name;
        }
    }
    EXPECT_EQ(std::get<double>(table->value(499, "TempTTT")), -2.5);
    EXPECT_TRUE(isNull(table->value(498, "TempTTT")));
}

INSTANTIATE_TEST_SUITE_P(
    DbaseEditing, ThirteensTest,
    testing::Values(std::vector<Field>{{"staname", FieldType::text, 20, 0},
                                       {"ELEVATION", FieldType::number, 13, 3}},
                    std::vector<Field>{{"staname", FieldType::text, 20, 0},
                                       {"ELEVATION", FieldType::number, 13, 11}},
                    std::vector<Field>{{"staname", FieldType::text, 12, 0},
                                       {"ELEVATION", FieldType::number, 16, 13},
                                       {"last", FieldType::text, 13, 0}},
                    std::vector<Field>{{"CropType", FieldType::text, 13, 0},
                                       {"Kc_Jan", FieldType::number, 13, 11},
                                       {"Kc_Feb", FieldType::number, 13, 11}}));

TEST_F(DbaseEditing, OnlyAShapefilesOwnTableIsEdited) {
    std::filesystem::copy_file(folder.file("s.dbf"), folder.file("s.DBF"));
    for (const std::string other : {"s", "s.gpkg", "s.shx", "s.dbf.gpkg"}) {
        EXPECT_EQ(attributeTable(folder.file(other)), "") << other;
    }
    EXPECT_EQ(attributeTable(folder.file("s.SHP")), folder.file("s.dbf"));
    EXPECT_EQ(attributeTable(folder.file("other.dbf")), folder.file("other.dbf"));
    std::filesystem::remove(folder.file("s.dbf"));
    EXPECT_EQ(attributeTable(folder.file("s.shp")), folder.file("s.DBF"));
    std::filesystem::remove(folder.file("s.DBF"));
    EXPECT_EQ(attributeTable(folder.file("s.shp")), "");
}

TEST(DbaseNumber, KeepsAsManyDecimalsAsFit) {
    EXPECT_EQ(dbaseNumber(0.5, 6), "   0.5");
    EXPECT_EQ(dbaseNumber(1.0 / 3, 8), "0.333333");
    EXPECT_EQ(dbaseNumber(-1e-7, 12), "  -0.0000001");
    EXPECT_EQ(dbaseNumber(123456, 6), "123456");
    EXPECT_EQ(dbaseNumber(123456.7, 6), "123457");
    EXPECT_THROW(dbaseNumber(1234567, 6), PlatformError);
    EXPECT_THROW(dbaseNumber(std::nan(""), 6), PlatformError);
}

}  // namespace
}  // namespace velmora::platform
