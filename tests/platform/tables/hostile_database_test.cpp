// SPDX-License-Identifier: MIT
// Databases and tables whose texts, schemas and names were made to do harm.
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include "gis/errors.h"
#include "platform/platform.h"
#include "tests/support/temp_folder.h"

namespace velmora::platform {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::ThrowsMessage;

struct HostileDatabase : testing::Test {
    test::TempFolder folder;
    Platform platform;
    std::string path = folder.file("a.mdb");

    // A database that another program has made.
    std::unique_ptr<IConnection> foreign(const std::string& statements) {
        sqlite3* database = nullptr;
        sqlite3_open(path.c_str(), &database);
        char* message = nullptr;
        const int status = sqlite3_exec(database, statements.c_str(), nullptr, nullptr, &message);
        EXPECT_EQ(status, SQLITE_OK) << message;
        sqlite3_free(message);
        sqlite3_close(database);
        return platform.connections().open("Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + path);
    }
};

TEST_F(HostileDatabase, LongNamesAndManyOfThemAreNoTrouble) {
    const auto connection = foreign("CREATE TABLE T(a)");
    const std::string name(30'000, 'x');
    connection->execute("CREATE TABLE U(z Char(50),[" + name + "] Double)");
    const auto rows = connection->open("Select * from U");
    EXPECT_EQ(rows->fieldName(1), name);
    rows->addNew();
    rows->setValue(name, 1.0);
    rows->update();
    std::string many = "CREATE TABLE V(z Char(50)";
    for (int i = 0; i < 5000; ++i) many += ",[method " + std::to_string(i) + "] Double";
    EXPECT_THAT(
        [&] { connection->execute(many + ")"); },
        ThrowsMessage<PlatformError>(AllOf(HasSubstr(path), HasSubstr("too many columns"))));
    EXPECT_THAT([&] { connection->open("Select * from U WHERE [z] = '" + name); },
                ThrowsMessage<PlatformError>(HasSubstr("a.mdb")));
    EXPECT_THAT([&] { connection->execute("CREATE TABLE W([a Char(50))"); },
                ThrowsMessage<PlatformError>(HasSubstr("not closed")));
    EXPECT_THROW(rows->value(name + "y"), PlatformError);
}

TEST_F(HostileDatabase, AViewWithoutEndIsEnded) {
    const auto connection = foreign(
        "CREATE VIEW V AS WITH RECURSIVE c(n) AS (SELECT 1 UNION ALL SELECT n+1 FROM c) "
        "SELECT n FROM c;"
        "CREATE VIEW W AS SELECT count(*) AS n FROM V;"
        "CREATE TABLE T(a); CREATE TRIGGER t AFTER INSERT ON T BEGIN "
        "INSERT INTO T SELECT n FROM W; END;");
    EXPECT_THAT([&] { connection->open("Select * from V"); },
                ThrowsMessage<PlatformError>(AllOf(
                    HasSubstr(path),
                    testing::AnyOf(HasSubstr("more rows than fit"), HasSubstr("too much work")))));
    const auto rows = connection->open("Select * from T");
    rows->addNew();
    rows->setValue("a", 1.0);
    EXPECT_THAT([&] { rows->update(); },
                ThrowsMessage<PlatformError>(AllOf(HasSubstr(path), HasSubstr("too much work"))));
}

TEST_F(HostileDatabase, SchemasAreNotTrusted) {
    const auto connection = foreign("CREATE TABLE T(a); INSERT INTO T VALUES('x');");
    // A name that the table lacks is an error, no text.
    EXPECT_THROW(connection->open("SELECT \"Gr\" FROM T"), PlatformError);
    EXPECT_THROW(connection->execute("ATTACH '" + folder.file("b") + "' AS b"), PlatformError);
    EXPECT_THROW(connection->execute("UPDATE sqlite_master SET sql='x'"), PlatformError);
    EXPECT_FALSE(platform.files().fileExists(folder.file("b")));
    EXPECT_THROW(connection->open("SELECT zeroblob(200000000) AS z"), PlatformError);
}

TEST_F(HostileDatabase, ColumnsCalledLikeRowNumbersAreColumns) {
    const auto connection = foreign(
        "CREATE TABLE T(rowid TEXT, a); INSERT INTO T VALUES('x',1),('y',2);"
        "CREATE TABLE A(rowid, oid, _rowid_); INSERT INTO A VALUES('p','q','r');"
        "CREATE TABLE K(a PRIMARY KEY) WITHOUT ROWID; INSERT INTO K VALUES(1);");
    const auto rows = connection->open("Select * from T WHERE a=2");
    EXPECT_EQ(std::get<std::string>(rows->value("rowid")), "y");
    rows->setValue("rowid", std::string("z"));
    rows->update();
    EXPECT_EQ(std::get<std::string>(connection->open("Select * from T")->value("rowid")), "x");
    EXPECT_EQ(std::get<std::string>(connection->open("Select * from T WHERE a=2")->value("rowid")),
              "z");
    for (const char* table : {"A", "K"}) {
        const auto others = connection->open(std::string("Select * from ") + table);
        EXPECT_FALSE(others->eof());
        EXPECT_THROW(others->addNew(), PlatformError);
    }
}

TEST_F(HostileDatabase, AViewIsReadAndNotChanged) {
    const auto connection = foreign(
        "CREATE TABLE M(IRMD TEXT); INSERT INTO M VALUES('Drip'); "
        "CREATE VIEW IRMDDef AS SELECT IRMD FROM M;");
    const auto rows = connection->open("Select * from IRMDDef");
    EXPECT_EQ(std::get<std::string>(rows->value("IRMD")), "Drip");
    EXPECT_THAT([&] { rows->addNew(); },
                ThrowsMessage<PlatformError>(HasSubstr("cannot be changed")));
}

}  // namespace
}  // namespace velmora::platform
