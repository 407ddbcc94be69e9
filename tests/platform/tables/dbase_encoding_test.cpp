// SPDX-License-Identifier: MIT
#include "platform/tables/dbase_encoding.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <functional>

#include "gis/errors.h"
#include "platform/platform.h"
#include "platform/tables/dbase_edit.h"
#include "platform/tables/dbase_verify.h"
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

// Looks at the table whenever a file has taken a name or lost it.
class WatchedEdit : public DbaseEdit {
  public:
    WatchedEdit(std::shared_ptr<ITable> table, std::function<void()> look)
        : DbaseEdit(std::move(table)), look_(std::move(look)) {}

  protected:
    void namesChanged() override { look_(); }

  private:
    std::function<void()> look_;
};

struct DbaseEncodingMoments : DbaseEncoding {
    int moments = 0;
    using Texts = std::vector<std::string>;

    // The table of "Écija" and "Mais" in another encoding, which the mark or a ".cpg" tells.
    void makeIn(const std::string& encoding, int mark, const std::string& note) {
        make({"Écija", "Mais"});
        std::string bytes = test::contentOf(path);
        bytes[29] = static_cast<char>(mark);
        for (const char* text : {"Größe", "Écija", "é"}) {
            std::string old = encodedIn("ISO-8859-1", text);
            for (std::size_t at = 0; (at = bytes.find(old, at)) != std::string::npos; ++at) {
                bytes.replace(at, old.size(), encodedIn(encoding, text));
            }
        }
        test::write(path, bytes);
        if (!note.empty()) test::write(folder.file(note), encoding);
        ASSERT_EQ(texts(), (Texts{"Écija", "Mais"}));
    }
    // A reader at each moment, as after a kill there, sees the texts before or after the edit.
    void appendWatched(const std::string& text) {
        WatchedEdit edit(platform.features().openTable(path), [&] {
            ++moments;
            const Texts before = {"Écija", "Mais"};
            const Texts after = {"Écija", "Mais", text};
            EXPECT_THAT(texts(), testing::AnyOf(before, after)) << "moment " << moments;
            const auto table = platform.features().openTable(path);
            EXPECT_EQ(keyText(table->value(0, "T")), "é") << "moment " << moments;
        });
        edit.appendRecord({{"Größe", text}});
        edit.save();
        EXPECT_EQ(texts().back(), text);
        EXPECT_EQ(test::contentOf(folder.file("t.cpg")), "UTF-8");
        EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 2);
    }
};

TEST_F(DbaseEncodingMoments, TheMarkTellsTheOldEncoding) {
    makeIn("ISO-8859-1", 87, "");
    appendWatched("Łódź");
    EXPECT_EQ(moments, 2);
}

TEST_F(DbaseEncodingMoments, TheMarkTakesOverFromTheNote) {
    makeIn("CP850", 87, "t.cpg");
    appendWatched("Łódź");
    EXPECT_EQ(moments, 4);
}

TEST_F(DbaseEncodingMoments, ANoteInCapitalsGoes) {
    makeIn("windows-1252", 0, "t.CPG");
    appendWatched("Łódź");
    EXPECT_FALSE(std::filesystem::exists(folder.file("t.CPG")));
}

TEST_F(DbaseEncodingMoments, AnEncodingWithoutAMarkIsRefused) {
    makeIn("ISO-8859-15", 87, "t.cpg");
    const std::string before = test::contentOf(path);
    EXPECT_THAT([&] { appendWatched("Łódź"); }, ThrowsMessage<PlatformError>(testing::AllOf(
                                                    HasSubstr(path), HasSubstr("ISO-8859-15"))));
    EXPECT_EQ(moments, 0);
    EXPECT_EQ(test::contentOf(path), before);
    EXPECT_EQ(test::contentOf(folder.file("t.cpg")), "ISO-8859-15");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 2);
}

TEST_F(DbaseEncodingMoments, AnEditThatFailsLeavesTheEncoding) {
    makeIn("CP850", 87, "t.cpg");
    const std::string before = test::contentOf(path);
    EXPECT_THROW(appendWatched("ŁŁŁŁŁŁŁŁŁŁŁŁŁŁŁ"), PlatformError);
    EXPECT_EQ(moments, 0);
    EXPECT_EQ(test::contentOf(path), before);
    EXPECT_EQ(test::contentOf(folder.file("t.cpg")), "CP850");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 2);
}

TEST_F(DbaseEncodingMoments, ANoteThatCannotBeMadeLeavesTheTextsReadable) {
    makeIn("ISO-8859-1", 87, "");
    WatchedEdit edit(platform.features().openTable(path),
                     [&] { std::filesystem::create_directories(folder.file("t.cpg/in the way")); });
    edit.appendRecord({{"Größe", "Łódź"}});
    EXPECT_THAT([&] { edit.save(); }, ThrowsMessage<PlatformError>(testing::AllOf(
                                          HasSubstr("are stored in " + path), HasSubstr(".cpg"))));
    std::filesystem::remove_all(folder.file("t.cpg"));
    EXPECT_EQ(texts(), (Texts{"Écija", "Mais", "Łódź"}));
}

// Writes another number while it rewrites the texts.
class DamagedEdit : public DbaseEdit {
  public:
    using DbaseEdit::DbaseEdit;

  protected:
    std::string inUtf8(const std::string& before, const std::string& encoding) const override {
        std::string bytes = DbaseEdit::inUtf8(before, encoding);
        bytes.replace(bytes.find("0.125"), 5, "0.126");
        return bytes;
    }
};

TEST_F(DbaseEncodingMoments, ARewritingThatChangesAValueIsRefused) {
    makeIn("CP850", 87, "t.cpg");
    const std::string before = test::contentOf(path);
    DamagedEdit edit(platform.features().openTable(path));
    edit.appendRecord({{"Größe", "Łódź"}});
    EXPECT_THAT([&] { edit.save(); },
                ThrowsMessage<PlatformError>(
                    testing::AllOf(HasSubstr(path), HasSubstr("record 1 has another value in N"))));
    EXPECT_EQ(test::contentOf(path), before);
    EXPECT_EQ(test::contentOf(folder.file("t.cpg")), "CP850");
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.path()), {}), 2);
}

// What the rewriting must not change, one damage each, seen by the comparison alone.
TEST_F(DbaseEncodingMoments, OnlyTheTextsMayChange) {
    makeIn("ISO-8859-1", 87, "");
    const std::string before = test::contentOf(path);
    append("Łódź");
    std::string after = test::contentOf(path);
    const std::size_t header = 32 * 4 + 1;
    const std::size_t record = 1 + 12 + 12 + 5;
    after.erase(header + 2 * record, record);  // what was added
    after[4] = 2;
    EXPECT_NO_THROW(requireSameTexts(before, after, "ISO-8859-1"));
    const auto damaged = [&](std::size_t at, char to) {
        std::string bytes = after;
        EXPECT_NE(bytes.at(at), to);
        bytes.at(at) = to;
        return bytes;
    };
    const std::size_t first = header + 1;  // behind the deletion mark
    for (const auto& damage : std::vector<std::pair<std::size_t, std::string>>{
             {0, "header"},
             {29, "header"},
             {33, "field 1"},
             {32 + 11, "field 1"},
             {32 + 32 + 17, "field 2"},
             {header - 1, "header"},
             {header, "record 1"},
             {first, "record 1 has another value in Gr"},
             {first + 3, "record 1 has another value in Gr"},
             {first + 12 + 11, "record 1 has another value in N"},
             {first + 24, "record 1 has another value in T"},
             {first + record, "record 2 has another value in Gr"},
             {after.size() - 1, "follows"}}) {
        const std::string bytes = damaged(damage.first, '7');
        EXPECT_THAT([&] { requireSameTexts(before, bytes, "ISO-8859-1"); },
                    ThrowsMessage<PlatformError>(HasSubstr(damage.second)))
            << damage.first;
    }
    EXPECT_THROW(requireSameTexts(before, after + " ", "ISO-8859-1"), PlatformError);
    EXPECT_THROW(requireSameTexts(before, after.substr(0, after.size() - 3), "ISO-8859-1"),
                 PlatformError);
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

TEST_F(DbaseEncoding, ANewTableComesBeforeItsNote) {
    make({"Écija"});
    std::filesystem::create_directories(folder.file("t.cpg/in the way"));
    EXPECT_THROW(make({"Łódź"}), PlatformError);
    std::filesystem::remove_all(folder.file("t.cpg"));
    EXPECT_THAT(texts(), testing::ElementsAre("Łódź"));
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
