#include "repository/RepositoryDatabase.h"
#include "repository/SqliteProbe.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace ba {
namespace {

using Columns = std::vector<std::pair<std::string, std::string>>; // name, declared type

Columns TableInfo(test::SqliteProbe& probe, const std::string& table)
{
    Columns columns;
    for (const auto& row : probe.Rows("PRAGMA table_info([" + table + "])")) columns.emplace_back(row[1], row[2]);
    return columns;
}

class RepositorySchema : public ::testing::Test {
protected:
    std::filesystem::path CreateRepository()
    {
        const auto file = dir.Path("BARepository.mdb");
        EXPECT_NE(RepositoryDatabase::Open(file, sink), nullptr);
        EXPECT_TRUE(sink.messages.empty());
        return file;
    }
    test::TempDir dir;
    CollectingMessageSink sink;
};

TEST_F(RepositorySchema, CreatesTheSmallTablesWithTheirColumnsInBindingOrder)
{
    const std::string L = "INTEGER", S = "SMALLINT", F = "REAL", D = "DOUBLE", T = "TEXT";
    const std::map<std::string, Columns> expected = {
        {"CBL",
         {{"ID", L}, {"Name", T}, {"Description", T}, {"WindowLength", L}, {"BondedAmplitude", D},
          {"UnbondedAmplitude", D}}},
        {"EquationModels",
         {{"ID", L}, {"Name", T}, {"Description", T}, {"Coef1", F}, {"Coef2", F}, {"Coef3", F}, {"Coef4", F},
          {"Coef5", F}, {"Formula", L}}},
        {"FormulaLogs", {{"ID", L}, {"Name", T}, {"LogName", T}, {"Formula", T}, {"Description", T}}},
        {"GraphicalModels",
         {{"ID", L}, {"Name", T}, {"Description", T}, {"Constituent1Name", T}, {"Constituent1X", F},
          {"Constituent1Y", F}, {"Constituent1Z", F}, {"Constituent2Name", T}, {"Constituent2X", F},
          {"Constituent2Y", F}, {"Constituent2Z", F}, {"Constituent3Name", T}, {"Constituent3X", F},
          {"Constituent3Y", F}, {"Constituent3Z", F}, {"Constituent4Name", T}, {"Constituent4X", F},
          {"Constituent4Y", F}, {"Constituent4Z", F}, {"ModelType", S}, {"Log1Name", T}, {"Log2Name", T},
          {"Log3Name", T}}},
        {"SpectraWindows", {{"ID", L}, {"Name", T}, {"UpperEnergy", D}, {"LowerEnergy", D}}},
        {"Templates",
         {{"DepthMeters", L}, {"DepthScale", F}, {"DepthVertical", L}, {"Description", T}, {"ID", L}, {"Name", T},
          {"TraceTemplateList", T}}},
        {"TraceTemplates",
         {{"ID", L}, {"TraceName", T}, {"Track", L}, {"LineType", L}, {"ScaleMin", F}, {"ScaleMax", F},
          {"Hide", L}, {"Aux1", L}, {"Aux2", L}, {"Color", L}}},
    };
    test::SqliteProbe probe(CreateRepository());
    for (const auto& [table, columns] : expected) EXPECT_EQ(TableInfo(probe, table), columns) << table;
}

TEST_F(RepositorySchema, SpectrumModelTablesAreTriangleAndRectangle)
{
    test::SqliteProbe probe(CreateRepository());
    struct Case {
        const char* table;
        std::size_t count;
        std::map<std::size_t, std::string> namesAt; // position -> column name
    };
    // B: 3 + 5 test names + 2*(1+2+3+4+5) isotope/error values + 4*5 spectrum columns.
    // W: 3 + 5 isotope names + 5 windows + 5 tests * 20 values.
    const Case cases[] = {
        {"BSpectraModels", 58,
         {{3, "Tst1Name1"}, {7, "Tst5Name5"}, {8, "Tst1Iso1"}, {9, "Tst1Err1"}, {10, "Tst2Iso1"}, {11, "Tst2Iso2"},
          {12, "Tst2Err1"}, {13, "Tst2Err2"}, {28, "Tst5Iso1"}, {37, "Tst5Err5"}, {38, "LeftSpectrum1"},
          {43, "RightSpectrum1"}, {48, "Spectrum1"}, {53, "TimeSpectrum1"}, {57, "TimeSpectrum5"}}},
        {"WSpectraModels", 113,
         {{3, "Iso1Name"}, {8, "Tst1Win1"}, {12, "Tst1Win5"}, {13, "Tst1Iso1"}, {18, "Tst1Err1"}, {23, "Tst1Cps1"},
          {28, "Tst1CErr1"}, {32, "Tst1CErr5"}, {33, "Tst2Iso1"}, {112, "Tst5CErr5"}}},
    };
    for (const Case& c : cases) {
        const Columns columns = TableInfo(probe, c.table);
        ASSERT_EQ(columns.size(), c.count) << c.table;
        EXPECT_EQ(columns[0], (std::pair<std::string, std::string>("ID", "INTEGER")));
        for (const auto& [position, name] : c.namesAt) EXPECT_EQ(columns[position].first, name) << c.table;
        // Past the names and descriptions every column is Single or Text.
        for (std::size_t i = 3; i < columns.size(); ++i) {
            EXPECT_TRUE(columns[i].second == "REAL" || columns[i].second == "TEXT") << columns[i].first;
        }
    }
}

TEST_F(RepositorySchema, IdIsNumberedByTheDatabaseAndNamesCompareByteForByte)
{
    const auto file = CreateRepository();
    test::SqliteProbe probe(file);
    const auto sql = probe.Rows("SELECT sql FROM sqlite_master WHERE name = 'Templates'");
    ASSERT_EQ(sql.size(), 1u);
    EXPECT_NE(sql[0][0].find("[ID] INTEGER PRIMARY KEY AUTOINCREMENT"), std::string::npos) << sql[0][0];
    probe.Execute("INSERT INTO [CBL] (Name) VALUES ('Casing')");
    EXPECT_EQ(probe.Rows("SELECT count(*) FROM [CBL] WHERE Name = 'casing'")[0][0], "0");
    EXPECT_EQ(probe.Rows("SELECT count(*) FROM [CBL] WHERE Name = 'Casing'")[0][0], "1");
}

TEST_F(RepositorySchema, OpeningAgainKeepsRecordsAndAddsOnlyMissingTables)
{
    const auto file = CreateRepository();
    {
        test::SqliteProbe probe(file);
        probe.Execute("INSERT INTO [FormulaLogs] (Name) VALUES ('kept'); DROP TABLE [SpectraWindows];");
    }
    ASSERT_NE(RepositoryDatabase::Open(file, sink), nullptr);
    EXPECT_TRUE(sink.messages.empty());
    test::SqliteProbe probe(file);
    EXPECT_EQ(probe.Rows("SELECT Name FROM [FormulaLogs]"), (std::vector<std::vector<std::string>>{{"kept"}}));
    EXPECT_EQ(probe.Rows("SELECT count(*) FROM sqlite_master WHERE type = 'table' AND name <> 'sqlite_sequence'")[0][0],
              "9");
}

} // namespace
} // namespace ba
