// SPDX-License-Identifier: MIT
// Genuine Access files, as a plain writer of their format makes them.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <random>

#include "gis/errors.h"
#include "gis/files.h"
#include "platform/files/posix_file.h"
#include "platform/platform.h"
#include "tests/support/jet_writer.h"
#include "tests/support/temp_folder.h"

namespace velmora::platform {
namespace {

using test::JetType;
using testing::ElementsAre;
using testing::HasSubstr;

struct AccessFile : testing::Test {
    test::TempFolder folder;
    Platform platform;
    std::string path = folder.file("IrDB.mdb");
    std::string text = "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" + path;

    static std::string sample() {
        std::vector<std::vector<FieldValue>> many;
        for (int i = 0; i < 300; ++i) {
            many.push_back({"Zone number " + std::to_string(i), i / 7.0});
        }
        return test::jetDatabase(
            {{"IRMDDef",
              {{"IRMD", JetType::text, 20}, {"IRMDEF", JetType::real}, {"Used", JetType::yesNo}},
              {{std::string("SPR"), 0.1, 1.0}, {std::string("DRIP"), {}, {}}}},
             {"All kinds",
              {{"Count", JetType::longInteger},
               {"Single", JetType::single},
               {"When", JetType::date},
               {"Empty", JetType::text}},
              {{-3.0, 0.25, 38929.75, {}}, {{}, {}, -1.5, {}}}},
             {"Long", {{"ZONEUNIT"}, {"Share", JetType::real}}, many}});
    }
    std::string importing(const std::string& bytes) {
        writeWholeFile(path, bytes);
        try {
            platform.connections().open(text);
            return {};
        } catch (const PlatformError& e) {
            return e.what();
        }
    }
    std::vector<std::string> files() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(folder.path())) {
            names.push_back(entry.path().filename().string());
        }
        return names;
    }
};

TEST_F(AccessFile, EveryTableComesWithItsRowsAndTypes) {
    ASSERT_EQ(importing(sample()), "");
    const auto database = platform.connections().open(text);
    EXPECT_THAT(database->tableNames(), ElementsAre("IRMDDef", "All kinds", "Long"));
    const auto methods = database->open("SELECT * FROM IRMDDef");
    EXPECT_EQ(std::get<std::string>(methods->value("IRMD")), "SPR");
    EXPECT_EQ(std::get<double>(methods->value("IRMDEF")), 0.1);
    EXPECT_EQ(std::get<double>(methods->value("Used")), 1);
    methods->moveNext();
    EXPECT_TRUE(isNull(methods->value("IRMDEF")));
    EXPECT_EQ(std::get<double>(methods->value("Used")), 0);
    const auto kinds = database->open("SELECT * FROM [All kinds]");
    EXPECT_EQ(std::get<double>(kinds->value("Count")), -3);
    EXPECT_EQ(std::get<double>(kinds->value("Single")), 0.25);
    EXPECT_EQ(std::get<std::string>(kinds->value("When")), "2006-07-31 18:00:00");
    EXPECT_TRUE(isNull(kinds->value("Empty")));
    kinds->moveNext();
    EXPECT_EQ(std::get<std::string>(kinds->value("When")), "1899-12-29 12:00:00");
    EXPECT_TRUE(isNull(kinds->value("Count")));
    const auto row = database->open("SELECT * FROM Long WHERE [zoneunit] = 'ZONE NUMBER 299'");
    EXPECT_EQ(std::get<double>(row->value("Share")), 299 / 7.0);
    const auto count = database->open("SELECT count(*) AS n FROM Long");
    EXPECT_EQ(std::get<double>(count->value("n")), 300);
    const auto types =
        database->open("SELECT group_concat(type) AS t FROM pragma_table_info('IRMDDef')");
    EXPECT_EQ(std::get<std::string>(types->value("t")), "VARCHAR(20),DOUBLE,INTEGER");
}

TEST_F(AccessFile, WorkGoesToTheCopyAndTheFileStays) {
    const std::string bytes = sample();
    ASSERT_EQ(importing(bytes), "");
    EXPECT_TRUE(std::filesystem::exists(path + ".sqlite"));
    platform.connections().open(text)->execute("DELETE FROM Long");
    const auto count = platform.connections().open(text)->open("SELECT count(*) AS n FROM Long");
    EXPECT_EQ(std::get<double>(count->value("n")), 0);  // not imported again
    EXPECT_EQ(readWholeFile(path, 1 << 20), bytes);
    EXPECT_THAT(files(), testing::UnorderedElementsAre("IrDB.mdb", "IrDB.mdb.sqlite"));
}

TEST_F(AccessFile, ACopyOfAnotherStateIsTold) {
    using std::chrono::hours;
    IConnectionFactory& connections = platform.connections();
    const std::string bytes = sample();
    writeWholeFile(path, bytes);
    EXPECT_EQ(connections.staleCopy(path), "");  // no copy yet
    EXPECT_TRUE(connections.needsCopy(path));
    ASSERT_EQ(importing(bytes), "");
    connections.open(text)->execute("DELETE FROM Long");
    EXPECT_EQ(connections.staleCopy(path), "");
    // Another time alone, as after copying both, means nothing.
    const auto time = std::filesystem::last_write_time(path);
    std::filesystem::last_write_time(path, time + hours(1));
    EXPECT_EQ(connections.staleCopy(path), "");
    // One other byte does, whichever file is newer.
    std::string changed = bytes;
    changed.back() ^= 1;
    writeWholeFile(path, changed);
    std::filesystem::last_write_time(path, time - hours(1));
    EXPECT_THAT(connections.staleCopy(path),
                testing::AllOf(HasSubstr(path + " has changed since its copy " + path + ".sqlite"),
                               HasSubstr("delete or rename the copy")));
    writeWholeFile(path, bytes + "x");
    EXPECT_NE(connections.staleCopy(path), "");
    EXPECT_EQ(connections.staleCopy(path + ".sqlite"), "");  // no Access file
    EXPECT_FALSE(connections.needsCopy(path));
    EXPECT_FALSE(connections.needsCopy(path + ".sqlite"));
    EXPECT_FALSE(connections.needsCopy(folder.file("none.mdb")));
    EXPECT_EQ(connections.staleCopy(folder.file("none.mdb")), "");
    // The record is no table of the user.
    EXPECT_THAT(connections.open(text)->tableNames(), ElementsAre("IRMDDef", "All kinds", "Long"));
}

TEST_F(AccessFile, ACopyWithoutARecordIsJudgedByTimes) {
    ASSERT_EQ(importing(sample()), "");
    platform.connections().open(text)->execute("DROP TABLE velmora_access_file");
    const auto made = std::filesystem::last_write_time(path + ".sqlite");
    std::filesystem::last_write_time(path, made - std::chrono::hours(1));
    EXPECT_EQ(platform.connections().staleCopy(path), "");
    std::filesystem::last_write_time(path, made + std::chrono::hours(1));
    EXPECT_NE(platform.connections().staleCopy(path), "");
}

TEST_F(AccessFile, LeftoversOfKilledImportsGo) {
    const std::string beside = folder.file(std::string(kUnfinishedPrefix));
    const std::string dead = "999999999";  // above any process number
    const std::string alive = std::to_string(::getppid());
    for (const std::string& process : {dead, alive}) {
        writeWholeFile(beside + process + "-IrDB.mdb.sqlite", "x");
        writeWholeFile(beside + process + "-IrDB.mdb.sqlite-journal", "x");
    }
    ASSERT_EQ(importing(sample()), "");
    EXPECT_THAT(files(),
                testing::UnorderedElementsAre(
                    "IrDB.mdb", "IrDB.mdb.sqlite", kUnfinishedPrefix + alive + "-IrDB.mdb.sqlite",
                    kUnfinishedPrefix + alive + "-IrDB.mdb.sqlite-journal"));
}

TEST_F(AccessFile, TwoImportsAtOnceBothWork) {
    for (int round = 0; round < 10; ++round) {
        removeTree(path + ".sqlite");
        writeWholeFile(path, sample());
        const pid_t child = ::fork();
        if (child == 0) {
            try {
                Platform own;
                own.connections().open(text)->execute("INSERT INTO Long VALUES('x', 1.0)");
                ::_exit(0);
            } catch (const std::exception&) {
                ::_exit(1);
            }
        }
        platform.connections().open(text)->execute("INSERT INTO Long VALUES('y', 1.0)");
        int status = 0;
        ::waitpid(child, &status, 0);
        EXPECT_EQ(status, 0);
        const auto count =
            platform.connections().open(text)->open("SELECT count(*) AS n FROM Long");
        EXPECT_EQ(std::get<double>(count->value("n")), 302);  // neither is lost
    }
}

TEST_F(AccessFile, ACutFileIsAnErrorWhereverItIsCut) {
    const std::string bytes = sample();
    for (std::size_t length = 500; length < bytes.size(); length += 1024 + 512) {
        const std::string error = importing(bytes.substr(0, length));
        EXPECT_THAT(error, HasSubstr("IrDB.mdb")) << length;
        EXPECT_THAT(error, HasSubstr("damaged")) << length;
        ASSERT_THAT(files(), ElementsAre("IrDB.mdb")) << length;
    }
    EXPECT_THAT(importing(bytes.substr(0, bytes.size() - 4096)),
                HasSubstr("it ends before the rows of table Long"));
    EXPECT_THAT(importing(""), HasSubstr("is an empty file"));
}

TEST_F(AccessFile, DamageInsideIsToldByItsKind) {
    const auto damaged = [&](std::size_t at, char byte) {
        std::string bytes = sample();
        bytes[at] = byte;
        return importing(bytes);
    };
    const std::size_t firstTable = 4 * std::size_t{4096};
    EXPECT_THAT(damaged(firstTable, 5), HasSubstr("no definition of table IRMDDef"));
    EXPECT_THAT(damaged(firstTable + 16, 9), HasSubstr("rows of table IRMDDef are missing"));
    EXPECT_THAT(damaged(firstTable + 16, 1), HasSubstr("counts 1 rows, of which 2 can be read"));
    EXPECT_THAT(damaged(firstTable + 4096, 4),
                HasSubstr("page 5 does not hold rows of table IRMDDef"));
    EXPECT_THAT(damaged(firstTable + 4096 + 4, 77), HasSubstr("page 5 does not hold rows"));
    EXPECT_THAT(damaged(std::size_t{2} * 4096, 1), HasSubstr("damaged"));
    EXPECT_THAT(files(), ElementsAre("IrDB.mdb"));
}

// A flipped bit gives an error or a whole import; it never ends the program or leaves half a copy.
TEST_F(AccessFile, FlippedBitsDoNoHarm) {
    const std::string bytes = sample();
    std::mt19937 random(7);
    for (int i = 0; i < 150; ++i) {
        std::string changed = bytes;
        const std::size_t at = random() % changed.size();
        changed[at] = static_cast<char>(changed[at] ^ (1 << random() % 8));
        const std::string error = importing(changed);
        EXPECT_EQ(error.empty(), std::filesystem::exists(path + ".sqlite")) << at;
        std::filesystem::remove(path + ".sqlite");
        ASSERT_THAT(files(), ElementsAre("IrDB.mdb")) << at << ' ' << error;
    }
}

}  // namespace
}  // namespace velmora::platform
