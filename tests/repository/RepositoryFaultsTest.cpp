#include "repository/RepositoryRecordset.h"
#include "repository/SqliteProbe.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <unistd.h>

namespace ba {
namespace {

class RepositoryFaults : public ::testing::Test {
protected:
    std::string Quoted(const std::filesystem::path& path) const { return "\"" + path.string() + "\""; }
    test::TempDir dir;
    CollectingMessageSink sink;
};

TEST_F(RepositoryFaults, FilesThatCannotBeOpenedAreNamed)
{
    struct Case {
        const char* name;
        std::string contents; // written as the file; empty: no file, in a missing folder
        std::string expected; // after "Error: " and before the quoted path
        std::string detail;
    };
    const Case cases[] = {
        {"not a database", std::string(2048, 'x'), "cannot read the model repository ", "file is not a database"},
        {"missing folder", "", "cannot open the model repository ", "unable to open database file"},
    };
    for (const Case& c : cases) {
        CollectingMessageSink caseSink;
        const std::filesystem::path file =
            c.contents.empty() ? dir.Path("absent") / "BARepository.mdb" : dir.Path("BARepository.mdb");
        if (!c.contents.empty()) dir.Write("BARepository.mdb", c.contents);
        EXPECT_EQ(RepositoryDatabase::Open(file, caseSink), nullptr) << c.name;
        EXPECT_EQ(caseSink.Texts(),
                  (std::vector<std::string>{"Error: " + c.expected + Quoted(file) + ": " + c.detail + "."}))
            << c.name;
        // The damaged file is left as it was.
        if (!c.contents.empty()) {
            EXPECT_EQ(dir.Read("BARepository.mdb"), c.contents);
        }
    }
}

TEST_F(RepositoryFaults, TablesChangedByAnotherProgramAreReportedWhenOpened)
{
    struct Case {
        const char* setup;
        std::string table;
        std::string detail;
    };
    const Case cases[] = {
        {"ALTER TABLE [EquationModels] DROP COLUMN [Formula]", "EquationModels", "it has no column [Formula]"},
        {"INSERT INTO [GraphicalModels] (Name, ModelType) VALUES ('a', 70000)", "GraphicalModels",
         "column [ModelType] of record 1 holds 70000, which is out of range for a Short"},
        {"INSERT INTO [EquationModels] (Name, Formula) VALUES ('a', 'two')", "EquationModels",
         "column [Formula] of record 1 holds text where a Long is expected"},
        {"INSERT INTO [EquationModels] (Name, Coef1) VALUES ('a', 1e300)", "EquationModels",
         "column [Coef1] of record 1 holds 1e+300, which is out of range for a Single"},
        {"INSERT INTO [FormulaLogs] (Name) VALUES (x'00ff')", "FormulaLogs", "column [Name] holds binary data"},
    };
    for (const Case& c : cases) {
        test::TempDir caseDir;
        CollectingMessageSink caseSink;
        const auto file = caseDir.Path("BARepository.mdb");
        ASSERT_NE(RepositoryDatabase::Open(file, caseSink), nullptr);
        test::SqliteProbe(file).Execute(c.setup);
        const auto db = RepositoryDatabase::Open(file, caseSink);
        ASSERT_NE(db, nullptr);
        bool opened = true;
        if (c.table == "EquationModels") opened = CEquationModelsRepository(*db).Open();
        else if (c.table == "GraphicalModels") opened = CGraphicalModelsRepository(*db).Open();
        else opened = CFormulaLogRepository(*db).Open();
        EXPECT_FALSE(opened) << c.setup;
        EXPECT_EQ(caseSink.Texts(), (std::vector<std::string>{"Error: cannot read table [" + c.table +
                                                              "] of the model repository " + Quoted(file) + ": " +
                                                              c.detail + "."}))
            << c.setup;
    }
}

TEST_F(RepositoryFaults, WritesToALockedFileFailWithAMessageAndChangeNothing)
{
    const auto file = dir.Path("BARepository.mdb");
    const auto db = RepositoryDatabase::Open(file, sink);
    ASSERT_NE(db, nullptr);
    CCBLModelsRepository recordset(*db);
    ASSERT_TRUE(recordset.Open());
    CblModelRecord record;
    record.name = "Casing";
    ASSERT_TRUE(recordset.AddNew(record));

    test::SqliteProbe other(file);
    other.Execute("BEGIN EXCLUSIVE");
    CblModelRecord second;
    second.name = "Liner";
    EXPECT_FALSE(recordset.AddNew(second));
    record.windowLength = 9;
    EXPECT_FALSE(recordset.Update(record));
    EXPECT_FALSE(recordset.Delete(record.id));
    other.Execute("ROLLBACK");

    const std::string where = " the model repository " + Quoted(file) + ": database is locked.";
    EXPECT_EQ(sink.Texts(), (std::vector<std::string>{"Error: cannot add a record to table [CBL] of" + where,
                                                      "Error: cannot change record 1 in table [CBL] of" + where,
                                                      "Error: cannot delete record 1 from table [CBL] of" + where}));
    ASSERT_EQ(recordset.Records().size(), 1u);
    EXPECT_EQ(recordset.Records()[0].windowLength, 0);
    CCBLModelsRepository fresh(*db);
    ASSERT_TRUE(fresh.Open());
    ASSERT_EQ(fresh.Records().size(), 1u);
    EXPECT_EQ(fresh.Records()[0].windowLength, 0);
}

TEST_F(RepositoryFaults, ChangingARecordThatIsGoneIsReported)
{
    const auto file = dir.Path("BARepository.mdb");
    const auto db = RepositoryDatabase::Open(file, sink);
    ASSERT_NE(db, nullptr);
    CFormulaLogRepository recordset(*db);
    ASSERT_TRUE(recordset.Open());
    FormulaLogRecord record;
    record.id = 5;
    EXPECT_FALSE(recordset.Update(record));
    EXPECT_FALSE(recordset.Delete(5));
    const std::string why = " the model repository " + Quoted(file) + ": there is no record with that ID.";
    EXPECT_EQ(sink.Texts(), (std::vector<std::string>{"Error: cannot change record 5 in table [FormulaLogs] of" + why,
                                                      "Error: cannot delete record 5 from table [FormulaLogs] of" + why}));
}

TEST_F(RepositoryFaults, AReadOnlyFileCanBeListedButNotWritten)
{
    const auto file = dir.Path("BARepository.mdb");
    {
        const auto db = RepositoryDatabase::Open(file, sink);
        ASSERT_NE(db, nullptr);
        CTemplatesRepository recordset(*db);
        TemplateRecord record;
        record.name = "Standard";
        ASSERT_TRUE(recordset.AddNew(record));
    }
    std::filesystem::permissions(file, std::filesystem::perms::owner_read | std::filesystem::perms::group_read |
                                           std::filesystem::perms::others_read);
    if (access(file.c_str(), W_OK) == 0) GTEST_SKIP() << "this user may write read-only files";
    const auto db = RepositoryDatabase::Open(file, sink);
    ASSERT_NE(db, nullptr);
    CTemplatesRepository recordset(*db);
    ASSERT_TRUE(recordset.Open());
    EXPECT_EQ(recordset.Names(), std::vector<std::string>{"Standard"});
    TemplateRecord other;
    other.name = "Other";
    EXPECT_FALSE(recordset.AddNew(other));
    EXPECT_EQ(sink.Texts(), (std::vector<std::string>{"Error: cannot add a record to table [Templates] of the model "
                                                      "repository " +
                                                      Quoted(file) + ": attempt to write a readonly database."}));
}

} // namespace
} // namespace ba
