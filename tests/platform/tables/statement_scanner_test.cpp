// SPDX-License-Identifier: MIT
#include "platform/tables/statement_scanner.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "gis/errors.h"
#include "platform/tables/dbase_query.h"

namespace velmora::platform {
namespace {

TEST(StatementScanner, TakesAStatementApart) {
    const std::string statement =
        R"(SELECT Größe, [a ]] b],"q""x" FROM t WHERE x>=-1.5e-3 AND y='O''Brien')";
    std::vector<std::string> values;
    std::vector<TokenKind> kinds;
    for (const Token& token : tokensOf(statement)) {
        values.push_back(token.value);
        kinds.push_back(token.kind);
    }
    using enum TokenKind;
    EXPECT_THAT(values, testing::ElementsAre("SELECT", "Größe", ",", "a ] b", ",", "q\"x", "FROM",
                                             "t", "WHERE", "x", ">", "=", "-", "1.5e-3", "AND", "y",
                                             "=", "O'Brien"));
    EXPECT_THAT(kinds,
                testing::ElementsAre(word, word, symbol, name, symbol, name, word, word, word, word,
                                     symbol, symbol, symbol, number, word, word, symbol, text));
    const auto tokens = tokensOf(statement);
    EXPECT_EQ(statement.substr(tokens[3].begin, tokens[3].end - tokens[3].begin), "[a ]] b]");
    EXPECT_TRUE(tokens[0].isWord("select"));
    EXPECT_FALSE(tokens[3].isWord("a ] b"));
}

TEST(StatementScanner, NumbersEndWhereTheyEnd) {
    std::vector<std::string> values;
    for (const Token& token : tokensOf("12.5.3 1e 2e+ .5 . 3e+4")) values.push_back(token.value);
    EXPECT_THAT(values,
                testing::ElementsAre("12.5", ".3", "1", "e", "2", "e", "+", ".5", ".", "3e+4"));
}

TEST(StatementScanner, RefusesWhatIsNotClosed) {
    for (const char* statement : {"a 'b", "a \"b", "a [b", "a [b]]", "'a''", "'"}) {
        EXPECT_THROW(tokensOf(statement), PlatformError) << statement;
    }
    EXPECT_TRUE(tokensOf("").empty());
    EXPECT_TRUE(tokensOf(" \t\n").empty());
}

TEST(StatementScanner, LongTextsAreScannedInOnePass) {
    const std::string text(5'000'000, '\'');
    EXPECT_EQ(tokensOf(text).size(), 1U);
    EXPECT_EQ(tokensOf(std::string(300'000, '(')).size(), 300'000U);
    EXPECT_THROW(tokensOf("[" + std::string(5'000'000, 'x')), PlatformError);
    EXPECT_LT(shownStatement(std::string(100'000, 'x')).size(), 300U);
    EXPECT_EQ(shownStatement(std::string(199, 'x') + "ÿÿ"), std::string(199, 'x') + " ...");
}

TEST(DbaseQuery, NamesTheTableAndTheFields) {
    const std::vector<Field> fields = {{"Größe", FieldType::text, 10, 0},
                                       {"AND", FieldType::text, 10, 0},
                                       {"crop type", FieldType::text, 10, 0},
                                       {"rowid", FieldType::number, 10, 0}};
    const auto over = [&](const std::string& text) {
        return DbaseQuery(text).overRecords(fields, "t.dbf");
    };
    EXPECT_EQ(over("SELECT *  FROM a from b/x y"), "SELECT rowid, * FROM records");
    EXPECT_EQ(DbaseQuery("SELECT *  FROM a from b/x y ").table(), "a from b/x y");
    EXPECT_EQ(DbaseQuery("select * from [a ]] where [b]").table(), "a ] where [b");
    EXPECT_EQ(over("SELECT DISTINCT Größe  FROM x"), "SELECT DISTINCT \"field 0\" FROM records");
    EXPECT_EQ(over("SELECT DISTINCT Crop type FROM x"), "SELECT DISTINCT \"field 2\" FROM records");
    EXPECT_EQ(over("SELECT rowid, [crop type] FROM x WHERE AND='WHERE and' and Größe = 'x'"),
              "SELECT \"field 3\", \"field 2\" FROM records WHERE \"field 1\"='WHERE and' and "
              "\"field 0\" = 'x'");
    EXPECT_EQ(over("SELECT count(*) AS [crop type] FROM x"),
              "SELECT count(*) AS \"field 2\" FROM records");
    for (const char* text :
         {"SELECT DISTINCT Gr FROM x", "SELECT Groesse FROM x", "SELECT * FROM x WHERE Gr='a'",
          "SELECT * FROM x WHERE \"Gr\"='a'", "SELECT * FROM x WHERE Größe=Barley"}) {
        EXPECT_THAT([&] { over(text); },
                    testing::ThrowsMessage<PlatformError>(testing::HasSubstr("has no field")))
            << text;
    }
    for (const char* text :
         {"", "SELECT", "DELETE FROM x", "SELECT FROM x", "SELECT * FROM", "SELECT * FROM [x] y",
          "SELECT * FROM [x", "SELECT * FROM [x] WHERE", "SELECT 'a FROM x"}) {
        EXPECT_THROW(over(text), PlatformError) << text;
    }
}

}  // namespace
}  // namespace velmora::platform
