#include "repository/RepositoryDatabase.h"

#include "repository/RepositorySchema.h"

#include <sqlite3.h>

#include <set>

namespace ba {

namespace {

// How long a write waits for another program that holds the file before giving up with
// "database is locked".
constexpr int kBusyTimeoutMs = 2000;

struct StatementDeleter {
    void operator()(sqlite3_stmt* statement) const { sqlite3_finalize(statement); }
};
using Statement = std::unique_ptr<sqlite3_stmt, StatementDeleter>;

std::string Quoted(std::string_view name) { return "[" + std::string(name) + "]"; }

bool EqualIgnoringAsciiCase(std::string_view a, std::string_view b)
{
    if (a.size() != b.size()) return false;
    for (std::size_t i = 0; i < a.size(); ++i) {
        const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; };
        if (lower(a[i]) != lower(b[i])) return false;
    }
    return true;
}

} // namespace

RepositoryDatabase::RepositoryDatabase(std::filesystem::path path, IMessageSink& sink, sqlite3* db)
    : m_path(std::move(path)), m_sink(sink), m_db(db)
{
}

RepositoryDatabase::~RepositoryDatabase() { sqlite3_close_v2(m_db); }

void RepositoryDatabase::ReportFailure(const std::string& what, const std::string& detail) const
{
    m_sink.Error("Error: " + what + " the model repository \"" + m_path.string() + "\": " + detail + ".");
}

std::unique_ptr<RepositoryDatabase> RepositoryDatabase::Open(const std::filesystem::path& file, IMessageSink& sink)
{
    sqlite3* db = nullptr;
    // A file the system lets us read but not write is opened for reading only, so a
    // read-only installation can still list its models.
    const int rc = sqlite3_open_v2(file.string().c_str(), &db, SQLITE_OPEN_READWRITE | SQLITE_OPEN_CREATE, nullptr);
    std::unique_ptr<RepositoryDatabase> repository(new RepositoryDatabase(file, sink, db));
    if (rc != SQLITE_OK) {
        repository->ReportFailure("cannot open", db != nullptr ? sqlite3_errmsg(db) : sqlite3_errstr(rc));
        return nullptr;
    }
    sqlite3_busy_timeout(db, kBusyTimeoutMs);
    if (!repository->CreateMissingTables()) return nullptr;
    return repository;
}

bool RepositoryDatabase::Execute(const std::string& sql, const std::string& what)
{
    char* error = nullptr;
    if (sqlite3_exec(m_db, sql.c_str(), nullptr, nullptr, &error) == SQLITE_OK) return true;
    ReportFailure(what, error != nullptr ? error : sqlite3_errmsg(m_db));
    sqlite3_free(error);
    return false;
}

bool RepositoryDatabase::CreateMissingTables()
{
    // Reading the table list first also tells a damaged or foreign file apart before
    // anything is written, and leaves a complete read-only file untouched.
    std::set<std::string> present;
    {
        sqlite3_stmt* raw = nullptr;
        const char* sql = "SELECT name FROM sqlite_master WHERE type = 'table'";
        if (sqlite3_prepare_v2(m_db, sql, -1, &raw, nullptr) != SQLITE_OK) {
            ReportFailure("cannot read", sqlite3_errmsg(m_db));
            return false;
        }
        Statement statement(raw);
        int rc = SQLITE_ROW;
        while ((rc = sqlite3_step(raw)) == SQLITE_ROW) {
            const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(raw, 0));
            if (text != nullptr) present.insert(text);
        }
        if (rc != SQLITE_DONE) {
            ReportFailure("cannot read", sqlite3_errmsg(m_db));
            return false;
        }
    }
    std::string script;
    for (const TableLayout& table : RepositoryTableLayouts()) {
        if (present.contains(table.name)) continue;
        script += "CREATE TABLE " + Quoted(table.name) + " (";
        for (std::size_t i = 0; i < table.columns.size(); ++i) {
            script += (i == 0 ? "" : ", ") + ColumnDeclaration(table.columns[i]);
        }
        script += ");\n";
    }
    if (script.empty()) return true;
    const std::string what = "cannot create the tables of";
    if (!Execute("BEGIN IMMEDIATE;\n" + script + "COMMIT;", what)) {
        if (!sqlite3_get_autocommit(m_db)) sqlite3_exec(m_db, "ROLLBACK", nullptr, nullptr, nullptr);
        return false;
    }
    return true;
}

std::optional<std::vector<RepositoryDatabase::Row>>
RepositoryDatabase::Select(std::string_view table, const std::string& sql, std::span<const std::string> columns)
{
    const std::string what = "cannot read table " + Quoted(table) + " of";
    sqlite3_stmt* raw = nullptr;
    if (sqlite3_prepare_v2(m_db, sql.c_str(), -1, &raw, nullptr) != SQLITE_OK) {
        ReportFailure(what, sqlite3_errmsg(m_db));
        return std::nullopt;
    }
    Statement statement(raw);
    const int resultColumns = sqlite3_column_count(raw);
    std::vector<int> source;
    source.reserve(columns.size());
    for (const std::string& column : columns) {
        int found = -1;
        for (int i = 0; i < resultColumns && found < 0; ++i) {
            if (EqualIgnoringAsciiCase(sqlite3_column_name(raw, i), column)) found = i;
        }
        if (found < 0) {
            ReportFailure(what, "it has no column " + Quoted(column));
            return std::nullopt;
        }
        source.push_back(found);
    }

    std::vector<Row> rows;
    int rc = SQLITE_ROW;
    while ((rc = sqlite3_step(raw)) == SQLITE_ROW) {
        Row row;
        row.reserve(columns.size());
        for (std::size_t c = 0; c < columns.size(); ++c) {
            const int i = source[c];
            switch (sqlite3_column_type(raw, i)) {
            case SQLITE_NULL: row.emplace_back(std::monostate{}); break;
            case SQLITE_INTEGER: row.emplace_back(static_cast<std::int64_t>(sqlite3_column_int64(raw, i))); break;
            case SQLITE_FLOAT: row.emplace_back(sqlite3_column_double(raw, i)); break;
            case SQLITE_TEXT: {
                const auto* text = reinterpret_cast<const char*>(sqlite3_column_text(raw, i));
                row.emplace_back(std::string(text, static_cast<std::size_t>(sqlite3_column_bytes(raw, i))));
                break;
            }
            default:
                ReportFailure(what, "column " + Quoted(columns[c]) + " holds binary data");
                return std::nullopt;
            }
        }
        rows.push_back(std::move(row));
    }
    if (rc != SQLITE_DONE) {
        ReportFailure(what, sqlite3_errmsg(m_db));
        return std::nullopt;
    }
    return rows;
}

std::optional<std::int64_t> RepositoryDatabase::WriteInTransaction(const std::string& sql,
                                                                   std::span<const Value> values,
                                                                   std::optional<std::int64_t> id,
                                                                   const std::string& what)
{
    if (!Execute("BEGIN IMMEDIATE", what)) return std::nullopt;
    const auto fail = [&] {
        ReportFailure(what, sqlite3_errmsg(m_db));
        sqlite3_exec(m_db, "ROLLBACK", nullptr, nullptr, nullptr);
        return std::nullopt;
    };
    sqlite3_stmt* raw = nullptr;
    if (sqlite3_prepare_v2(m_db, sql.c_str(), -1, &raw, nullptr) != SQLITE_OK) return fail();
    Statement statement(raw);
    int index = 1;
    for (const Value& value : values) {
        int rc = SQLITE_OK;
        if (const auto* i = std::get_if<std::int64_t>(&value)) rc = sqlite3_bind_int64(raw, index, *i);
        else if (const auto* d = std::get_if<double>(&value)) rc = sqlite3_bind_double(raw, index, *d);
        else if (const auto* s = std::get_if<std::string>(&value))
            rc = sqlite3_bind_text64(raw, index, s->data(), s->size(), SQLITE_TRANSIENT, SQLITE_UTF8);
        else rc = sqlite3_bind_null(raw, index);
        if (rc != SQLITE_OK) return fail();
        ++index;
    }
    if (id && sqlite3_bind_int64(raw, index, *id) != SQLITE_OK) return fail();
    if (sqlite3_step(raw) != SQLITE_DONE) return fail();
    const std::int64_t changed = sqlite3_changes64(m_db);
    statement.reset();
    if (!Execute("COMMIT", what)) {
        sqlite3_exec(m_db, "ROLLBACK", nullptr, nullptr, nullptr);
        return std::nullopt;
    }
    return changed;
}

std::optional<std::int64_t> RepositoryDatabase::Insert(std::string_view table, std::span<const std::string> columns,
                                                       std::span<const Value> values)
{
    std::string names;
    std::string slots;
    for (const std::string& column : columns) {
        names += (names.empty() ? "" : ", ") + Quoted(column);
        slots += slots.empty() ? "?" : ", ?";
    }
    const std::string sql = "INSERT INTO " + Quoted(table) + " (" + names + ") VALUES (" + slots + ")";
    if (!WriteInTransaction(sql, values, std::nullopt, "cannot add a record to table " + Quoted(table) + " of")) {
        return std::nullopt;
    }
    return sqlite3_last_insert_rowid(m_db);
}

bool RepositoryDatabase::Update(std::string_view table, std::int64_t id, std::span<const std::string> columns,
                                std::span<const Value> values)
{
    std::string assignments;
    for (const std::string& column : columns) assignments += (assignments.empty() ? "" : ", ") + Quoted(column) + " = ?";
    const std::string sql = "UPDATE " + Quoted(table) + " SET " + assignments + " WHERE [ID] = ?";
    const std::string what = "cannot change record " + std::to_string(id) + " in table " + Quoted(table) + " of";
    const auto changed = WriteInTransaction(sql, values, id, what);
    if (!changed) return false;
    if (*changed == 0) {
        ReportFailure(what, "there is no record with that ID");
        return false;
    }
    return true;
}

bool RepositoryDatabase::Delete(std::string_view table, std::int64_t id)
{
    const std::string what = "cannot delete record " + std::to_string(id) + " from table " + Quoted(table) + " of";
    const auto changed = WriteInTransaction("DELETE FROM " + Quoted(table) + " WHERE [ID] = ?", {}, id, what);
    if (!changed) return false;
    if (*changed == 0) {
        ReportFailure(what, "there is no record with that ID");
        return false;
    }
    return true;
}

} // namespace ba
