// SPDX-License-Identifier: MIT
#include "platform/tables/dbase_encoding.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "gis/errors.h"
#include "platform/platform.h"
#include "tests/support/temp_folder.h"

namespace velmora::platform {
namespace {

using testing::HasSubstr;
using testing::ThrowsMessage;

struct DbaseEncoding : testing::Test {
    test::TempFolder folder;
    Platform platform;
    std::string path = folder.file("t.dbf");

    void make(const std::vector<std::string>& texts, int width = 12) {
        std::vector<std::vector<FieldValue>> records;
        for (const std::string& text : texts) records.push_back({text, 0.125, std::string("é")});
        platform.features().createTable(path,
                                        {{"Größe", FieldType::text, width, 0},
                                         {"N", FieldType::number, 12, 3},
                                         {"T", FieldType::text, 5, 0}},
                                        records);
    }
    void append(const std::string& text) {
        const auto session = platform.features().edit(platform.features().openTable(path));
        session->appendRecord({{"Größe", text}, {"N", 0.5}});
        session->save();
    }
    std::vector<std::string> texts() {
        const auto table = platform.features().openTable(path);
        std::vector<std::string> all;
        for (std::size_t r = 0; r < table->recordCount(); ++r) {
            all.push_back(keyText(table->value(r, "Größe")));
        }
        return all;
    }
    bool hasMark() const { return std::filesystem::exists(folder.file("t.cpg")); }
};

TEST_F(DbaseEncoding, OtherCharactersBringUtf8) {
    make({"Écija", "Mais"});
    EXPECT_FALSE(hasMark());
    append("Núñez");
    EXPECT_FALSE(hasMark());
    EXPECT_THAT(test::contentOf(path), HasSubstr("N\xFA\xF1"
                                                 "ez"));
    append("Люцерн");
    EXPECT_EQ(test::contentOf(folder.file("t.cpg")), "UTF-8");
    append("Łódź");
    EXPECT_THAT(texts(), testing::ElementsAre("Écija", "Mais", "Núñez", "Люцерн", "Łódź"));
    const auto table = platform.features().openTable(path);
    EXPECT_EQ(std::get<double>(table->value(0, "N")), 0.125);
    EXPECT_EQ(keyText(table->value(1, "T")), "é");
    EXPECT_EQ(table->fields()[0].width, 12);
    EXPECT_THAT(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 2);
}

TEST_F(DbaseEncoding, WhatDoesNotFitLeavesTheTable) {
    make({"ÉÉÉÉÉ"}, 5);
    const std::string before = test::contentOf(path);
    EXPECT_THAT([&] { append("Ł"); },
                ThrowsMessage<PlatformError>(testing::AllOf(HasSubstr(path), HasSubstr("ÉÉÉÉÉ"))));
    EXPECT_EQ(test::contentOf(path), before);
    EXPECT_FALSE(hasMark());
}

TEST_F(DbaseEncoding, NewTablesAreInUtf8WhenTheyMust) {
    make({"Łódź", "Écija", "Ελιές και αμπέλια"});
    EXPECT_TRUE(hasMark());
    EXPECT_THAT(texts(), testing::ElementsAre("Łódź", "Écija", "Ελιές και αμπέλια"));
    test::write(folder.file("t.CPG"), "UTF-8");
    make({"Écija"});
    EXPECT_FALSE(hasMark());
    EXPECT_FALSE(std::filesystem::exists(folder.file("t.CPG")));
    EXPECT_THAT(texts(), testing::ElementsAre("Écija"));
}

TEST_F(DbaseEncoding, EncodingsKnowTheirCharacters) {
    EXPECT_TRUE(encodes("ISO-8859-1", "Écija"));
    for (int i = 0; i < 3; ++i) EXPECT_FALSE(encodes("ISO-8859-1", "Łódź"));
    EXPECT_TRUE(encodes("CP1250", "Łódź"));
    EXPECT_FALSE(encodes("CP1250", "Αθήνα"));
    EXPECT_TRUE(encodes("UTF-8", "Αθήνα"));
    EXPECT_TRUE(encodes("", "Αθήνα"));
    EXPECT_EQ(encodedIn("CP1250", "Ł"), "\xA3");
    EXPECT_THROW(encodedIn("CP1250", "α"), PlatformError);
}

}  // namespace
}  // namespace velmora::platform
