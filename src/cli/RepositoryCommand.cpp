// repository list TABLE: prints every record of one model repository table as JSON, its
// columns in the order the table binds them.

#include "cli/Command.h"
#include "cli/JsonFormat.h"
#include "repository/RepositoryRecordset.h"
#include "repository/RepositorySchema.h"

#include <memory>
#include <string>
#include <vector>

namespace ba::cli {
namespace {

struct RepositoryOptions {
    std::string table;
    CLI::App* list = nullptr;
};

Json ColumnJson(std::int32_t value) { return value; }
Json ColumnJson(std::int16_t value) { return value; }
Json ColumnJson(float value) { return FloatJson(value); }
Json ColumnJson(double value) { return value; }
Json ColumnJson(const std::string& value) { return value; }

template <class Record>
Json ListTable(RepositoryDatabase& database)
{
    CRepositoryRecordset<Record> recordset(database);
    if (!recordset.Open()) throw CommandFailure(kExitFailure, {});
    Json records = Json::array();
    for (const Record& record : recordset.Records()) {
        Json row = Json::object();
        Record::Bind(record, [&row](const std::string& column, const auto& value) { row[column] = ColumnJson(value); });
        records.push_back(std::move(row));
    }
    return records;
}

void RunRepository(const RepositoryOptions& options, CommandContext& context)
{
    const auto database = RepositoryDatabase::Open(DefaultRepositoryPath(), context.sink);
    if (!database) throw CommandFailure(kExitFailure, {});
    Json records;
    ForEachRecordType([&]<class R>(std::type_identity<R>) {
        if (options.table == R::kTable) records = ListTable<R>(*database);
    });
    context.out << JsonText(records);
}

} // namespace

Command AddRepositoryCommand(CLI::App& app)
{
    auto options = std::make_shared<RepositoryOptions>();
    CLI::App* sub = app.add_subcommand(
        "repository",
        "Read the model repository, the database of named models and templates shared by all documents: "
        "BARepository.mdb beside the program, or the file named by the environment variable BA_REPOSITORY. "
        "It is created with its tables when absent.");
    sub->require_subcommand(1);
    std::vector<std::string> tables;
    for (const TableLayout& layout : RepositoryTableLayouts()) tables.push_back(layout.name);
    options->list = sub->add_subcommand("list", "Print the table's records as JSON, in table order.");
    options->list->add_option("TABLE", options->table, "table name")->required()->check(CLI::IsMember(tables));
    return {sub, [options](CommandContext& context) { RunRepository(*options, context); }};
}

} // namespace ba::cli
