#include "repository/RepositoryRecordset.h"
#include "repository/SqliteProbe.h"
#include "support/TempDir.h"

#include <gtest/gtest.h>

#include <bit>
#include <cstring>
#include <limits>
#include <variant>

namespace ba {
namespace {

using ColumnValue = std::variant<std::int32_t, std::int16_t, float, double, std::string>;

template <class Record>
std::vector<ColumnValue> ColumnValues(const Record& record)
{
    std::vector<ColumnValue> values;
    Record::Bind(record, [&values](const std::string&, const auto& member) { values.emplace_back(member); });
    return values;
}

// Gives every column but ID a value that depends on the seed and the column, so that a
// column written to or read from the wrong place shows.
template <class Record>
Record MakeRecord(int seed)
{
    Record record;
    int column = 0;
    Record::Bind(record, [&]<class T>(const std::string& name, T& member) {
        ++column;
        if (name == kIdColumn) return;
        if constexpr (std::is_same_v<T, std::int32_t>) member = seed * 1000 + column;
        else if constexpr (std::is_same_v<T, std::int16_t>) member = static_cast<std::int16_t>(-seed * 100 - column);
        else if constexpr (std::is_same_v<T, float>) member = static_cast<float>(seed) + 0.1f * static_cast<float>(column);
        else if constexpr (std::is_same_v<T, double>) member = seed * 1e6 + column / 3.0;
        else member = name + " of model " + std::to_string(seed);
    });
    return record;
}

template <class Record>
class RecordsetPerTable : public ::testing::Test {
protected:
    void SetUp() override
    {
        database = RepositoryDatabase::Open(dir.Path("BARepository.mdb"), sink);
        ASSERT_NE(database, nullptr);
    }
    // A fresh recordset over the file, as another dialog would open it.
    std::vector<Record> Reread()
    {
        CRepositoryRecordset<Record> fresh(*database);
        EXPECT_TRUE(fresh.Open());
        return fresh.Records();
    }
    test::TempDir dir;
    CollectingMessageSink sink;
    std::unique_ptr<RepositoryDatabase> database;
};

using AllRecordTypes = ::testing::Types<BSpectraModelRecord, CblModelRecord, EquationModelRecord, FormulaLogRecord,
                                        GraphicalModelRecord, SpectraWindowRecord, TemplateRecord,
                                        TraceTemplateRecord, WSpectraModelRecord>;
TYPED_TEST_SUITE(RecordsetPerTable, AllRecordTypes);

TYPED_TEST(RecordsetPerTable, AddListFindUpdateDelete)
{
    using Record = TypeParam;
    CRepositoryRecordset<Record> recordset(*this->database);
    ASSERT_TRUE(recordset.Open());
    EXPECT_TRUE(recordset.Names().empty());
    EXPECT_EQ(CRepositoryRecordset<Record>::GetDefaultSQL(), "[" + std::string(Record::kTable) + "]");

    Record first = MakeRecord<Record>(1);
    Record second = MakeRecord<Record>(2);
    first.id = 77; // the database numbers records; whatever the program holds is ignored
    ASSERT_TRUE(recordset.AddNew(first));
    ASSERT_TRUE(recordset.AddNew(second));
    EXPECT_EQ(first.id, 1);
    EXPECT_EQ(second.id, 2);

    auto stored = this->Reread();
    ASSERT_EQ(stored.size(), 2u);
    EXPECT_EQ(ColumnValues(stored[0]), ColumnValues(first));
    EXPECT_EQ(ColumnValues(stored[1]), ColumnValues(second));
    EXPECT_EQ(recordset.Names(), (std::vector<std::string>{first.RecordName(), second.RecordName()}));
    const Record* found = recordset.FindByName(second.RecordName());
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->id, second.id);
    EXPECT_EQ(recordset.FindByName("no such model"), nullptr);

    Record changed = MakeRecord<Record>(3);
    changed.id = second.id;
    ASSERT_TRUE(recordset.Update(changed));
    ASSERT_TRUE(recordset.Delete(first.id));
    stored = this->Reread();
    ASSERT_EQ(stored.size(), 1u);
    EXPECT_EQ(ColumnValues(stored[0]), ColumnValues(changed));
    EXPECT_EQ(ColumnValues(recordset.Records().at(0)), ColumnValues(changed));

    // A deleted ID is not given out again.
    Record third = MakeRecord<Record>(4);
    ASSERT_TRUE(recordset.AddNew(third));
    EXPECT_EQ(third.id, 3);
    EXPECT_TRUE(this->sink.messages.empty());
}

class RepositoryRecordset : public ::testing::Test {
protected:
    void SetUp() override
    {
        database = RepositoryDatabase::Open(dir.Path("BARepository.mdb"), sink);
        ASSERT_NE(database, nullptr);
    }
    test::TempDir dir;
    CollectingMessageSink sink;
    std::unique_ptr<RepositoryDatabase> database;
};

TEST_F(RepositoryRecordset, NewNameChecksRefuseWithTheDialogsWording)
{
    struct Case {
        const char* given;
        const NameRefusalTexts* texts;
        std::vector<std::string> messages; // empty: saved
    };
    const Case cases[] = {
        {"", &kModelNameTexts, {"Error: No name specified."}},
        {"", &kLowerCaseModelNameTexts, {"Error: no name specified."}},
        {"Shale", &kModelNameTexts, {"Error: A model with this name already exists in the repository!"}},
        {"Shale", &kLowerCaseModelNameTexts, {"Error: a model with this name already exists in the repository!"}},
        {"Shale", &kTemplateNameTexts, {"Error: A template with this name already exists in the repository!"}},
        // Case matters, and so does a trailing blank.
        {"shale", &kModelNameTexts, {}},
        {"Shale ", &kModelNameTexts, {}},
    };
    for (const Case& c : cases) {
        test::TempDir caseDir;
        CollectingMessageSink caseSink;
        const auto db = RepositoryDatabase::Open(caseDir.Path("BARepository.mdb"), caseSink);
        ASSERT_NE(db, nullptr);
        CEquationModelsRepository recordset(*db);
        ASSERT_TRUE(recordset.Open());
        EquationModelRecord existing;
        existing.name = "Shale";
        ASSERT_TRUE(recordset.AddNew(existing));

        EquationModelRecord record;
        record.name = c.given;
        const bool saved = recordset.AddNewNamed(record, *c.texts, caseSink);
        EXPECT_EQ(saved, c.messages.empty()) << c.given;
        EXPECT_EQ(caseSink.Texts(), c.messages) << c.given;
        for (const Message& m : caseSink.messages) EXPECT_EQ(m.severity, Severity::Warning);
        CEquationModelsRepository fresh(*db);
        ASSERT_TRUE(fresh.Open());
        EXPECT_EQ(fresh.Records().size(), saved ? 2u : 1u) << c.given;
    }
}

TEST_F(RepositoryRecordset, CblModelNeedsUnbondedAboveBondedAfterTheNameChecks)
{
    CCBLModelsRepository recordset(*database);
    ASSERT_TRUE(recordset.Open());
    CblModelRecord record;
    record.bondedAmplitude = 5.0;
    record.unbondedAmplitude = 5.0;
    // The empty name is reported first; the amplitude check only runs after the name passes.
    EXPECT_FALSE(recordset.AddNewNamed(record, kModelNameTexts, sink, AcceptCblAmplitudes));
    record.name = "Casing 7in";
    EXPECT_FALSE(recordset.AddNewNamed(record, kModelNameTexts, sink, AcceptCblAmplitudes));
    record.unbondedAmplitude = 5.5;
    EXPECT_TRUE(recordset.AddNewNamed(record, kModelNameTexts, sink, AcceptCblAmplitudes));
    EXPECT_EQ(sink.Texts(), (std::vector<std::string>{"Error: No name specified.",
                                                      "Error: Unbonded amplitude must be greater than bonded amplitude."}));
    EXPECT_EQ(recordset.Records().size(), 1u);
}

TEST_F(RepositoryRecordset, DuplicateNamesFromOutsideSelectTheFirstInTableOrder)
{
    test::SqliteProbe probe(database->Path());
    probe.Execute("INSERT INTO [SpectraWindows] (Name, UpperEnergy) VALUES ('K40', 1.0), ('Th', 2.0), ('K40', 3.0)");
    CSpectraWindowsRepository recordset(*database);
    ASSERT_TRUE(recordset.Open());
    EXPECT_EQ(recordset.Names(), (std::vector<std::string>{"K40", "Th", "K40"}));
    const SpectraWindowRecord* found = recordset.FindByName("K40");
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->upperEnergy, 1.0);
    EXPECT_EQ(recordset.FindByName("k40"), nullptr);
    // A NULL left by another program reads as zero or empty text.
    EXPECT_EQ(found->lowerEnergy, 0.0);
}

TEST_F(RepositoryRecordset, SingleColumnsRoundTripBitForBitAndAreStoredAsReal)
{
    const float values[] = {0.1f, -1.0f / 3.0f, std::numeric_limits<float>::max(),
                            std::numeric_limits<float>::denorm_min(), 16777216.0f, -8388607.5f};
    CTraceTemplatesRepository recordset(*database);
    ASSERT_TRUE(recordset.Open());
    for (const float value : values) {
        TraceTemplateRecord record;
        record.traceName = "GR";
        record.scaleMin = value;
        record.scaleMax = -value;
        ASSERT_TRUE(recordset.AddNew(record));
    }
    CTraceTemplatesRepository fresh(*database);
    ASSERT_TRUE(fresh.Open());
    ASSERT_EQ(fresh.Records().size(), std::size(values));
    for (std::size_t i = 0; i < std::size(values); ++i) {
        EXPECT_EQ(std::bit_cast<std::uint32_t>(fresh.Records()[i].scaleMin), std::bit_cast<std::uint32_t>(values[i]));
        EXPECT_EQ(std::bit_cast<std::uint32_t>(fresh.Records()[i].scaleMax), std::bit_cast<std::uint32_t>(-values[i]));
    }
    // SQLite keeps a whole REAL value as an integer on disk, so a negative zero comes back
    // as zero: the one float that does not keep its bits.
    TraceTemplateRecord negativeZero;
    negativeZero.scaleMin = -0.0f;
    ASSERT_TRUE(recordset.AddNew(negativeZero));
    CTraceTemplatesRepository again(*database);
    ASSERT_TRUE(again.Open());
    EXPECT_EQ(std::bit_cast<std::uint32_t>(again.Records().back().scaleMin), 0u);

    test::SqliteProbe probe(database->Path());
    EXPECT_EQ(probe.Rows("SELECT DISTINCT typeof(ScaleMin) FROM [TraceTemplates]"),
              (std::vector<std::vector<std::string>>{{"real"}}));
}

TEST_F(RepositoryRecordset, OpensAWholeSelectStatementByColumnName)
{
    test::SqliteProbe probe(database->Path());
    probe.Execute("INSERT INTO [FormulaLogs] (Name, LogName, Formula) VALUES ('a', 'A', 'x+1'), ('b', 'B', 'x*2')");
    CFormulaLogRepository recordset(*database);
    ASSERT_TRUE(recordset.Open("select * from [FormulaLogs] where Name = 'b'"));
    ASSERT_EQ(recordset.Records().size(), 1u);
    EXPECT_EQ(recordset.Records()[0].formula, "x*2");
    EXPECT_EQ(recordset.Records()[0].logName, "B");
}

} // namespace
} // namespace ba
