// SPDX-License-Identifier: MIT
#include "platform/tables/dbase_records.h"

#include <gtest/gtest.h>
#include <ogrsf_frmts.h>

#include "platform/files/gdal_library.h"
#include "platform/tables/record_values.h"
#include "tests/support/temp_folder.h"

namespace velmora::platform {
namespace {

struct Column {
    char type;
    int width;
    int decimals;
    FieldType kind;
    std::vector<std::string> texts;  // of the records, filled up with blanks
};

std::string littleEndianBytes(std::size_t value, int bytes) {
    std::string text;
    for (int i = 0; i < bytes; ++i, value >>= 8U) text += static_cast<char>(value);
    return text;
}

// A dBASE file byte by byte, whose second record is deleted.
std::string dbase(const std::vector<Column>& columns, const std::string& mark = {}) {
    const std::size_t records = columns.front().texts.size();
    std::size_t length = 1;
    std::string fields;
    for (const Column& column : columns) {
        std::string descriptor = "F" + std::to_string(fields.size() / 32);
        descriptor.resize(11, '\0');
        descriptor += std::string(1, column.type) + std::string(4, '\0') +
                      static_cast<char>(column.width) + static_cast<char>(column.decimals);
        descriptor.resize(32, '\0');
        fields += descriptor;
        length += static_cast<std::size_t>(column.width);
    }
    std::string bytes = std::string("\x03\x5f\x07\x1a") + littleEndianBytes(records, 4) +
                        littleEndianBytes(fields.size() + 33, 2) + littleEndianBytes(length, 2);
    bytes.resize(29, '\0');
    bytes += mark.empty() ? std::string(1, '\0') : mark;
    bytes.resize(32, '\0');
    bytes += fields + '\r';
    for (std::size_t r = 0; r < records; ++r) {
        bytes += r == 1 ? '*' : ' ';
        for (const Column& column : columns) {
            std::string text = column.texts[r];
            text.resize(static_cast<std::size_t>(column.width), ' ');
            bytes += text;
        }
    }
    return bytes + '\x1a';
}

FieldValue asGdalReads(const OGRFeature& feature, int field, FieldType kind) {
    if (!feature.IsFieldSetAndNotNull(field)) return {};
    if (kind == FieldType::text) return std::string(feature.GetFieldAsString(field));
    return feature.GetFieldAsDouble(field);
}

struct DbaseRecordsTest : testing::Test {
    test::TempFolder folder;
    std::string path = folder.file("t.dbf");

    // Compares what is read plainly with GDAL; gives for each column whether it is.
    std::vector<bool> compared(const std::vector<Column>& columns) {
        test::write(path, dbase(columns));
        initialiseGdal();
        const DatasetPtr dataset(GDALDataset::Open(path.c_str(), GDAL_OF_VECTOR));
        OGRLayer* layer = dataset->GetLayer(0);
        DbaseRecords table(path);
        const auto places = presentRecords(table);
        std::vector<std::size_t> shown;
        for (const auto& feature : *layer) {
            shown.push_back(static_cast<std::size_t>(feature->GetFID()));
        }
        EXPECT_EQ(places, shown);
        std::vector<bool> plain;
        for (std::size_t c = 0; c < columns.size(); ++c) {
            const auto values = plainColumn(table, c, columns[c].kind, places);
            EXPECT_EQ(isPlain(table, c, columns[c].kind, places), values.has_value());
            plain.push_back(values.has_value());
            for (std::size_t i = 0; values && i < places.size(); ++i) {
                const OGRFeatureUniquePtr feature(
                    layer->GetFeature(static_cast<GIntBig>(places[i])));
                EXPECT_EQ((*values)[i], asGdalReads(*feature, static_cast<int>(c), columns[c].kind))
                    << c << ": \"" << columns[c].texts[places[i]] << '"';
            }
        }
        return plain;
    }
};

TEST_F(DbaseRecordsTest, PlainValuesAreThoseThatGdalReads) {
    const std::vector<Column> columns = {
        {'C',
         12,
         0,
         FieldType::text,
         {"Alfalfa", "gone", "  Grass / Turf", "   ", "a  b", "\"x\"", "*"}},
        {'N',
         12,
         3,
         FieldType::number,
         {"1.250", "9", "       -3.5", "", "************", "1e-3", "007.10"}},
        {'F',
         19,
         11,
         FieldType::number,
         {"0.1", "0.2", "123456789.12345678901", "-0", "+4", ".5", "6."}},
        {'N', 9, 0, FieldType::integer, {"12", "1", "       -7", "", "*********", "0", "000012"}}};
    EXPECT_EQ(compared(columns), std::vector<bool>(4, true));
}

TEST_F(DbaseRecordsTest, WhatIsNotPlainIsLeftToGdal) {
    const auto isPlain = [&](const Column& column) -> bool { return compared({column}).front(); };
    EXPECT_TRUE(isPlain({'C', 8, 0, FieldType::text, {"a", "b\xe9", "c"}}));  // that one is deleted
    EXPECT_FALSE(isPlain({'C', 8, 0, FieldType::text, {"a", "b", "c\xe9"}}));
    EXPECT_FALSE(isPlain({'C', 8, 0, FieldType::text, {"a", "b", std::string("c\0d", 3)}}));
    EXPECT_FALSE(isPlain({'C', 8, 0, FieldType::text, {"a", "b", "c\td"}}));
    EXPECT_FALSE(isPlain({'D', 8, 0, FieldType::other, {"20060102", "20060102", "20060102"}}));
    for (const char* text : {"12,5", "x", "1 2", "  **", "1e300", "nan"}) {
        EXPECT_FALSE(isPlain({'N', 8, 2, FieldType::number, {"1", "2", text}})) << text;
    }
    EXPECT_FALSE(isPlain({'N', 9, 0, FieldType::integer, {"1", "2", "12.5"}}));
    EXPECT_FALSE(isPlain({'N', 18, 0, FieldType::integer, {"1", "2", "1234567890123456"}}));
}

TEST_F(DbaseRecordsTest, RecordsAreReadInAnyOrderAndNotBeyondTheEnd) {
    std::vector<std::string> texts;
    for (int i = 0; i < 30000; ++i) texts.push_back("r" + std::to_string(i));
    test::write(path, dbase({{'C', 100, 0, FieldType::text, texts}}));  // many blocks
    DbaseRecords records(path);
    for (const std::size_t r : {0U, 29999U, 2U, 15000U, 1U, 14999U}) {
        EXPECT_TRUE(records.record(r).substr(1).starts_with(texts[r] + " ")) << r;
    }
    EXPECT_EQ(records.record(1).front(), '*');
    EXPECT_TRUE(records.record(30000).empty());
    EXPECT_EQ(presentRecords(records).size(), 29999U);
}

TEST(RecordValues, HoldTheLastValueOfEachRecord) {
    RecordValues values;
    values.set(5, 1.5);
    values.set(9, std::string("text"));
    values.set(2, FieldValue());  // before those that are there
    values.set(5, 2.5);
    values.set(9, 3.0);
    values.set(12, std::string("last"));
    ASSERT_EQ(values.size(), 4U);
    const std::vector<std::pair<std::size_t, FieldValue>> expected = {
        {2, FieldValue()}, {5, 2.5}, {9, 3.0}, {12, std::string("last")}};
    for (std::size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(values.record(i), expected[i].first);
        EXPECT_EQ(values.value(i), expected[i].second);
        EXPECT_EQ(values.of(expected[i].first), expected[i].second);
    }
    values.set(5, std::string("again"));
    EXPECT_EQ(values.of(5), FieldValue(std::string("again")));
    EXPECT_EQ(values.of(6), std::nullopt);
    EXPECT_EQ(values.of(13), std::nullopt);
}

}  // namespace
}  // namespace velmora::platform
