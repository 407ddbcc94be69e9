// SPDX-License-Identifier: MIT
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <malloc.h>

#include <limits>

#include "gis/errors.h"
#include "gis/text.h"
#include "platform/platform.h"
#include "tests/support/temp_folder.h"

namespace velmora::platform {
namespace {

struct Database : testing::Test {
    test::TempFolder folder;
    Platform platform;
    std::string text = "Provider = Microsoft.Jet.OLEDB.4.0;Data Source=" + folder.file("a.mdb");

    std::unique_ptr<IConnection> made() {
        platform.connections().createDatabase(text);
        auto connection = platform.connections().open(text);
        connection->createTable("T",
                                {{"Zone", FieldType::text, 50}, {"Share", FieldType::number, 0}});
        return connection;
    }
};

// Two rows at a time.
class TwoColumns : public IRowSource {
  public:
    std::size_t rowCount() const override { return values.size(); }
    int columnCount() const override { return 2; }
    std::size_t next(std::size_t first) override {
        if (first >= fails) throw PlatformError("row " + std::to_string(first) + " fails");
        first_ = first;
        return std::min<std::size_t>(2, values.size() - first);
    }
    std::span<const double> column(int position) const override {
        return position == 0 ? std::span<const double>(values).subspan(first_)
                             : std::span<const double>();
    }
    std::vector<double> values = {1.5, std::nan(""), -3};
    std::size_t fails = std::numeric_limits<std::size_t>::max();

  private:
    std::size_t first_ = 0;
};

TEST_F(Database, RecordsAreAddedChangedAndRead) {
    const auto connection = made();
    const auto records = connection->open("Select * from [T]");
    EXPECT_TRUE(records->eof());
    records->addNew();
    records->setValue("Zone", std::string("O'Brien"));
    records->setValue("Share", 0.25);
    records->update();
    records->moveFirst();
    EXPECT_EQ(std::get<std::string>(records->value("ZONE")), "O'Brien");
    records->setValue("Share", 0.5);
    records->update();
    const auto again = connection->open("SELECT Share FROM T WHERE [Zone] = 'o''brien'");
    EXPECT_EQ(std::get<double>(again->value("Share")), 0.5);
    EXPECT_EQ(again->fieldCount(), 1);
    EXPECT_EQ(again->fieldName(0), "Share");
    again->moveNext();
    EXPECT_TRUE(again->eof());
    EXPECT_THROW(again->value("Share"), PlatformError);
    EXPECT_THROW(again->addNew(), PlatformError);
    EXPECT_THROW(records->value("None"), PlatformError);
}

TEST_F(Database, RowsGoInSomeAtATime) {
    platform.connections().createDatabase(text);
    const auto connection = platform.connections().open(text);
    connection->createTable("GGG", {{"A", FieldType::number, 0}, {"B", FieldType::number, 0}});
    TwoColumns rows;
    connection->append("GGG", rows);
    const auto records = connection->open("Select * from GGG");
    EXPECT_EQ(std::get<double>(records->value("A")), 1.5);
    EXPECT_TRUE(isNull(records->value("B")));
    records->moveNext();
    EXPECT_TRUE(isNull(records->value("A")));
    records->moveNext();
    EXPECT_EQ(std::get<double>(records->value("A")), -3);
    records->moveNext();
    EXPECT_TRUE(records->eof());
}

// A large table takes a while; who waits hears that work goes on, and may cancel it.
TEST_F(Database, RowsThatTakeLongMayBeCancelled) {
    class ManyRows : public TwoColumns {
      public:
        ManyRows() { values.resize(300'000, 2.5); }
    };
    class CancelsAtOnce : public IFeedbackListener {
      public:
        explicit CancelsAtOnce(Feedback& feedback) : feedback_(feedback) {}
        void beat() override { feedback_.cancel(); }

      private:
        Feedback& feedback_;
    };
    Feedback feedback;
    CancelsAtOnce listener(feedback);
    feedback.listen(listener);
    platform.connections().createDatabase(text);
    const auto connection = platform.connections().open(text);
    connection->createTable("GGG", {{"A", FieldType::number, 0}, {"B", FieldType::number, 0}});
    watchLoops(&feedback);
    ManyRows rows;
    EXPECT_THROW(connection->append("GGG", rows), Cancelled);
    watchLoops(nullptr);
    EXPECT_NO_THROW(platform.connections().open(text)->open("Select * from GGG"));
}

TEST_F(Database, ProvidersAndFilesAreChecked) {
    EXPECT_THROW(platform.connections().open(text), PlatformError);  // no file
    made();
    EXPECT_THROW(platform.connections().createDatabase(text), PlatformError);  // exists
    EXPECT_THROW(platform.connections().open("Provider=Other;Data Source=x"), PlatformError);
    EXPECT_THROW(platform.connections().open(""), PlatformError);
    test::write(folder.file("a.mdb"), std::string(4096, 'x'));
    EXPECT_THROW(platform.connections().open(text), PlatformError);
    test::write(folder.file("a.mdb"),
                std::string("\0\1\0\0Standard Jet DB\0", 20) + std::string(100, 'x'));
    EXPECT_THAT([&] { platform.connections().open(text); },
                testing::ThrowsMessage<PlatformError>(
                    testing::HasSubstr("cannot be imported: it is damaged")));
}

TEST_F(Database, StatementsThatFailSayWhy) {
    const auto connection = made();
    EXPECT_THROW(connection->execute("DROP TABLE none"), PlatformError);
    EXPECT_THROW(connection->open("SELECT * FROM none"), PlatformError);
    TwoColumns rows;
    EXPECT_THROW(connection->append("none", rows), PlatformError);
}

TEST_F(Database, RowsThatCannotBeMadeFailAsTheySay) {
    for (const std::size_t first : {0, 2}) {
        const std::string database = "Provider=Microsoft.Jet.OLEDB.4.0;Data Source=" +
                                     folder.file(std::to_string(first) + ".mdb");
        platform.connections().createDatabase(database);
        const auto connection = platform.connections().open(database);
        connection->createTable("GGG", {{"A", FieldType::number, 0}, {"B", FieldType::number, 0}});
        TwoColumns rows;
        rows.fails = first;
        EXPECT_THAT(
            [&] { connection->append("GGG", rows); },
            testing::ThrowsMessage<PlatformError>("row " + std::to_string(first) + " fails"));
    }
}

TEST_F(Database, TheDbaseSourceReadsTables) {
    platform.features().createTable(
        folder.file("wx.dbf"),
        {{"STN", FieldType::text, 5, 0}, {"TM_Jan", FieldType::number, 8, 2}},
        {{std::string("A"), 1.25}, {std::string("B"), FieldValue()}});
    const auto connection =
        platform.connections().open("Provider=MSDASQL.1;Data Source=dBASE Files");
    const auto records = connection->open("SELECT * FROM " + folder.file("wx"));
    EXPECT_EQ(records->fieldCount(), 2);
    EXPECT_EQ(std::get<double>(records->value("TM_Jan")), 1.25);
    records->moveNext();
    EXPECT_TRUE(isNull(records->value("TM_Jan")));
    EXPECT_THROW(connection->open("DELETE FROM wx"), PlatformError);
    EXPECT_THROW(connection->execute("x"), PlatformError);
}

// What a reader of the fields alone needs does not grow with the records.
TEST_F(Database, TheRowsOfAWholeTableAreNotHeld) {
    std::vector<Field> fields = {{"STN", FieldType::text, 8, 0}};
    for (int i = 0; i < 12; ++i) {
        fields.push_back({"TM_" + std::to_string(i), FieldType::number, 8, 2});
    }
    std::vector<FieldValue> record(fields.size(), 1.25);
    record[0] = std::string("a");
    std::vector<std::vector<FieldValue>> table(120000, record);
    table.back()[12] = -7.5;
    platform.features().createTable(folder.file("wx.dbf"), fields, table);
    const auto held = [] {
        const auto memory = ::mallinfo2();
        return memory.uordblks + memory.hblkhd;
    };
    platform.features().createTable(folder.file("first.dbf"), fields, {record});
    const auto connection =
        platform.connections().open("Provider=MSDASQL.1;Data Source=dBASE Files");
    connection->open("SELECT * FROM " + folder.file("first"));  // what the libraries need once
    const std::size_t before = held();
    const auto records = connection->open("SELECT * FROM " + folder.file("wx"));
    EXPECT_EQ(records->fieldCount(), 13);
    EXPECT_EQ(records->fieldName(12), "TM_11");
    std::size_t rows = 0;
    double sum = 0;
    for (; !records->eof(); records->moveNext()) {
        ++rows;
        EXPECT_EQ(records->value("STN"), FieldValue(std::string("a")));
        for (const Field& field : fields) {
            const FieldValue value = records->value(field.name);
            if (const auto* number = std::get_if<double>(&value)) sum += *number;
        }
    }
    EXPECT_EQ(rows, 120000U);
    EXPECT_EQ(sum, 1.25 * (12 * 120000 - 1) - 7.5);
    EXPECT_LT(held(), before + 3'000'000);
}

TEST_F(Database, AColumnOfALargeTableThatIsNotPlainIsReadAsEver) {
    const std::vector<Field> fields = {{"STN", FieldType::text, 8, 0},
                                       {"P", FieldType::number, 8, 2}};
    std::vector<std::vector<FieldValue>> table;
    for (int i = 0; i < 100001; ++i) table.push_back({std::to_string(i), 0.25 * (i % 1000)});
    table.back()[0] = std::string("Gr\u00FCn");
    platform.features().createTable(folder.file("t.dbf"), fields, table);
    const auto read = platform.features().openTable(folder.file("t.dbf"));
    for (const std::size_t r : {100000U, 0U, 77777U, 3U, 99999U}) {
        EXPECT_EQ(read->value(r, "STN"), table[r][0]);
        EXPECT_EQ(read->value(r, "P"), table[r][1]);
    }
    EXPECT_THROW(read->value(100001, "P"), PlatformError);
    std::string bytes = test::contentOf(folder.file("t.dbf"));
    bytes.replace(bytes.size() - 9, 8, "   12,50");
    test::write(folder.file("t.dbf"), bytes);
    const auto damaged = platform.features().openTable(folder.file("t.dbf"));
    EXPECT_EQ(damaged->value(3, "STN"), FieldValue(std::string("3")));
    EXPECT_THAT([&] { damaged->value(3, "P"); },
                testing::ThrowsMessage<PlatformError>(testing::HasSubstr("12,50")));
}

// Rows as they were when the query ran, with what has been changed through it.
TEST_F(Database, RowsOfAWholeTableAreChangedAndAddedTo) {
    const std::vector<Field> fields = {{"STN", FieldType::text, 8, 0},
                                       {"P", FieldType::number, 8, 2}};
    platform.features().createTable(
        folder.file("t.dbf"), fields,
        {{std::string("a"), 1.5}, {std::string("Gr\u00FCn"), 2.5}, {std::string("c"), 3.5}});
    const auto connection =
        platform.connections().open("Provider=MSDASQL.1;Data Source=dBASE Files");
    const auto other = connection->open("SELECT * FROM " + folder.file("t"));
    const auto records = connection->open("SELECT * FROM " + folder.file("t"));
    const auto rows = [](IRecordset& of) {
        std::string all;
        for (of.moveFirst(); !of.eof(); of.moveNext()) {
            all += keyText(of.value("STN")) + "=" + keyText(of.value("P")) + " ";
        }
        return all;
    };
    EXPECT_EQ(rows(*records), "a=1.5 Gr\u00FCn=2.5 c=3.5 ");
    records->moveFirst();
    records->moveNext();
    records->setValue("P", 9.25);
    EXPECT_EQ(records->value("P"), FieldValue(9.25));
    records->moveNext();  // without an update it is forgotten
    records->setValue("P", FieldValue());
    records->update();
    EXPECT_EQ(rows(*records), "a=1.5 Gr\u00FCn=2.5 c= ");
    records->addNew();
    records->setValue("STN", std::string("d"));
    records->update();
    EXPECT_EQ(rows(*records), "a=1.5 Gr\u00FCn=2.5 c= d= ");
    records->moveFirst();
    records->setValue("P", 7.0);
    records->update();
    EXPECT_EQ(rows(*records), "a=7 Gr\u00FCn=2.5 c= d= ");
    EXPECT_EQ(rows(*other), "a=1.5 Gr\u00FCn=2.5 c=3.5 ");
    EXPECT_EQ(rows(*connection->open("SELECT * FROM " + folder.file("t"))),
              "a=7 Gr\u00FCn=2.5 c= d= ");
}

TEST_F(Database, ATableWithATextForANumberIsNotOpened) {
    platform.features().createTable(folder.file("wx.dbf"),
                                    {{"STN", FieldType::text, 8, 0},
                                     {"A", FieldType::number, 8, 2},
                                     {"B", FieldType::number, 8, 2}},
                                    {{std::string("a"), 1.0, 2.0}, {std::string("b"), 3.0, 47.11}});
    std::string bytes = test::contentOf(folder.file("wx.dbf"));
    bytes.replace(bytes.rfind("47.11"), 5, "47,11");
    test::write(folder.file("wx.dbf"), bytes);
    const auto connection =
        platform.connections().open("Provider=MSDASQL.1;Data Source=dBASE Files");
    EXPECT_THAT([&] { connection->open("SELECT * FROM " + folder.file("wx")); },
                testing::ThrowsMessage<PlatformError>(testing::AllOf(
                    testing::HasSubstr("record 2, field B"), testing::HasSubstr("47,11"))));
    bytes.resize(bytes.size() - 20);
    test::write(folder.file("wx.dbf"), bytes);
    EXPECT_THAT([&] { connection->open("SELECT * FROM " + folder.file("wx")); },
                testing::ThrowsMessage<PlatformError>(testing::HasSubstr("cut short")));
}

// A query's rows are those of the moment when it was opened.
TEST_F(Database, RowsStayThoseOfTheQuery) {
    platform.features().createTable(folder.file("t.dbf"), {{"A", FieldType::number, 8, 2}},
                                    {{1.0}, {2.0}});
    const auto connection =
        platform.connections().open("Provider=MSDASQL.1;Data Source=dBASE Files");
    const auto early = connection->open("SELECT * FROM " + folder.file("t"));
    const auto writer = connection->open("SELECT * FROM " + folder.file("t"));
    writer->setValue("A", 7.0);
    writer->update();
    writer->addNew();
    writer->setValue("A", 9.0);
    writer->update();
    EXPECT_EQ(std::get<double>(writer->value("A")), 9.0);
    EXPECT_EQ(std::get<double>(early->value("A")), 1.0);
    std::size_t rows = 0;
    for (writer->moveFirst(); !writer->eof(); writer->moveNext()) ++rows;
    EXPECT_EQ(rows, 3U);
    const auto adder = connection->open("SELECT * FROM " + folder.file("t"));
    adder->addNew();  // before a row was read
    adder->setValue("A", 4.0);
    adder->update();
    EXPECT_EQ(std::get<double>(adder->value("A")), 4.0);
    adder->moveFirst();
    EXPECT_EQ(std::get<double>(adder->value("A")), 7.0);
}

struct CropTable : Database {
    std::string path = folder.file("the crops");
    std::unique_ptr<IConnection> connection =
        platform.connections().open("Provider = MSDASQL.1;Data Source=dBASE Files");
    CropTable() {
        platform.features().createTable(path + ".dbf",
                                        {{"CropType", FieldType::text, 12, 0},
                                         {"Kc_Jan", FieldType::number, 8, 2},
                                         {"Note", FieldType::text, 6, 0}},
                                        {{std::string("Alfalfa"), 0.5, std::string("own")},
                                         {std::string("O'Brien"), 0.25, std::string("x")},
                                         {std::string("Alfalfa"), 0.75, FieldValue()}});
    }
    FieldValue stored(std::size_t record, const std::string& field) {
        return platform.features().openTable(path)->value(record, field);
    }
};

TEST_F(CropTable, QueriesSelectRecords) {
    const auto found = connection->open("SELECT *  FROM [" + path + "] WHERE CropType='O''Brien'");
    EXPECT_EQ(std::get<double>(found->value("Kc_Jan")), 0.25);
    EXPECT_EQ(found->fieldCount(), 3);
    EXPECT_TRUE(connection->open("SELECT *  FROM " + path + " WHERE CropType='none'")->eof());
    // Texts compare exactly, as joins compare them; names of fields do not.
    EXPECT_TRUE(connection->open("SELECT *  FROM " + path + " WHERE CropType='ALFALFA'")->eof());
    EXPECT_FALSE(connection->open("SELECT *  FROM " + path + " WHERE croptype='Alfalfa'")->eof());
    const auto types = connection->open("SELECT DISTINCT CropType  FROM " + path);
    std::vector<std::string> names;
    for (; !types->eof(); types->moveNext()) {
        names.push_back(std::get<std::string>(types->value("CropType")));
    }
    EXPECT_EQ(names, (std::vector<std::string>{"Alfalfa", "O'Brien"}));
    EXPECT_THROW(types->addNew(), PlatformError);
    platform.features().createTable(folder.file("words.dbf"), {{"GROUP", FieldType::text, 9, 0}},
                                    {{std::string("a")}, {std::string("b")}});
    EXPECT_FALSE(connection->open("SELECT DISTINCT GROUP  FROM " + folder.file("words"))->eof());
    EXPECT_TRUE(
        connection->open("SELECT *  FROM " + folder.file("words") + " WHERE GROUP='c'")->eof());
    EXPECT_THROW(connection->open("SELECT DISTINCT Crop2  FROM " + path), PlatformError);
}

TEST_F(CropTable, RecordsAreChangedAndAdded) {
    const auto all = connection->open("SELECT * FROM " + path);
    all->moveNext();
    all->setValue("Kc_Jan", 0.875);
    all->setValue("CropType", std::string("Pe\u00F1a"));
    all->update();
    EXPECT_EQ(std::get<double>(stored(1, "Kc_Jan")), 0.875);
    EXPECT_EQ(std::get<std::string>(stored(1, "CropType")), "Pe\u00F1a");
    EXPECT_EQ(std::get<std::string>(stored(1, "Note")), "x");
    all->addNew();
    all->setValue("CropType", std::string("Barley"));
    all->setValue("Kc_Jan", 1.0 / 3);
    all->update();
    EXPECT_EQ(std::get<std::string>(stored(3, "CropType")), "Barley");
    EXPECT_NEAR(std::get<double>(stored(3, "Kc_Jan")), 1.0 / 3, 1e-5);
    EXPECT_TRUE(isNull(stored(3, "Note")));
    all->setValue("Kc_Jan", 0.5);  // the record just added
    all->update();
    EXPECT_EQ(std::get<double>(stored(3, "Kc_Jan")), 0.5);
    const std::string before = test::contentOf(path + ".dbf");
    all->setValue("CropType", std::string("a name that is too long"));
    EXPECT_THROW(all->update(), PlatformError);
    EXPECT_EQ(test::contentOf(path + ".dbf"), before);
}

TEST_F(Database, ATableIsExportedToDbase) {
    const std::string to = folder.file("t.mdb");
    const std::string source = "Provider = Microsoft.Jet.OLEDB.4.0;Data Source=" + to;
    platform.connections().createDatabase(source);
    const auto connection = platform.connections().open(source);
    connection->createTable("NewKc",
                            {{"CropType", FieldType::text, 75}, {"Kc_Jan", FieldType::number, 0}});
    const auto rows = connection->open("SELECT * FROM NewKc");
    rows->addNew();
    rows->setValue("CropType", std::string("Corn"));
    rows->setValue("Kc_Jan", 0.625);
    rows->update();
    connection->execute("SELECT * INTO [DBASE 5.0;DATABASE=" + folder.path() +
                        "].[my table] FROM NewKc");
    const auto table = platform.features().openTable(folder.file("my table"));
    ASSERT_EQ(table->fields().size(), 2U);
    EXPECT_EQ(table->fields()[0].width, 75);
    EXPECT_EQ(table->fields()[1].type, FieldType::number);
    EXPECT_EQ(std::get<double>(table->value(0, "Kc_Jan")), 0.625);
    EXPECT_THROW(connection->execute("SELECT * INTO [DBASE 5.0;DATABASE=" + folder.path() +
                                     "].[x] FROM none"),
                 PlatformError);
}

TEST_F(Database, StatementsMakeTablesThatCompareTextWithoutCase) {
    const auto connection = made();
    connection->execute("CREATE TABLE IREF(ZoneUnit Char(50),[Char (5)] Double,FAEF Double)");
    EXPECT_EQ(connection->tableNames(), (std::vector<std::string>{"T", "IREF"}));
    connection->execute("INSERT INTO IREF VALUES('Daggett', 1.0, 2.0)");
    const auto row = connection->open("Select * from IREF WHERE [ZONEUNIT] = 'DAGGETT'");
    ASSERT_FALSE(row->eof());
    EXPECT_EQ(row->fieldName(1), "Char (5)");
    EXPECT_EQ(std::get<double>(row->value("FAEF")), 2);
    connection->execute("DROP TABLE IREF");
    EXPECT_EQ(connection->tableNames(), (std::vector<std::string>{"T"}));
}

TEST_F(Database, ATransactionIsStoredWholeOrNotAtAll) {
    const auto connection = made();
    const auto rowsSeen = [&] {
        const auto count = platform.connections().open(text)->open("SELECT count(*) AS n FROM T");
        return std::get<double>(count->value("n"));
    };
    const auto add = [&] {
        const auto records = connection->open("SELECT * FROM T");
        records->addNew();
        records->setValue("Share", 1.0);
        records->update();
    };
    {
        const auto transaction = connection->beginTransaction();
        add();
        EXPECT_EQ(rowsSeen(), 0);
    }
    EXPECT_EQ(rowsSeen(), 0);
    const auto transaction = connection->beginTransaction();
    add();
    transaction->commit();
    EXPECT_EQ(rowsSeen(), 1);
}

TEST_F(Database, AShapefileFolderStoresATransactionAtItsEnd) {
    IFeatureWorkspaceFactory& features = platform.features();
    const Field zone{"ZONE", FieldType::text, 20, 0};
    features.createFeatureClass(folder.file("parts.shp"), true, "",
                                {zone, {"IREF", FieldType::number, 20, 5}},
                                {rectangle({0, 0, 1, 1}, {std::string("a"), 0.0}),
                                 rectangle({1, 0, 2, 1}, {std::string("b"), 0.0})});
    const auto connection = platform.connections().open(
        "Provider=ESRI.GeoDB.Oledb.1;Data Source=" + folder.path() +
        ";Extended Properties=workspacetype=esriCore.ShapefileWorkspaceFactory.1;Geometry=OBJECT");
    const auto change = [&](double value) {
        const auto records = connection->open("Select * from parts");
        for (; !records->eof(); records->moveNext()) {
            records->setValue("IREF", value);
            records->update();
        }
    };
    const auto stored = [&] {
        return std::get<double>(features.openFeatureClass(folder.file("parts"))->value(1, "IREF"));
    };
    {
        const auto transaction = connection->beginTransaction();
        EXPECT_THROW(connection->beginTransaction(), PlatformError);
        change(0.5);
        EXPECT_EQ(stored(), 0);
    }
    EXPECT_EQ(stored(), 0);
    const auto first = connection->open("Select * from parts");
    first->setValue("IREF", 0.125);
    first->update();
    EXPECT_EQ(stored(), 0);  // what was undone does not come with a later change
    {
        const auto transaction = connection->beginTransaction();
        change(0.25);
        const auto records = connection->open("Select * from parts");
        records->addNew();
        EXPECT_THROW(records->update(), PlatformError);
        transaction->commit();
    }
    EXPECT_EQ(stored(), 0.25);
    change(0.75);
    EXPECT_EQ(stored(), 0.75);
    EXPECT_THROW(connection->tableNames(), PlatformError);
}

}  // namespace
}  // namespace velmora::platform
