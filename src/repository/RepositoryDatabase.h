#pragma once
// The repository database file: opened (and given its nine tables when they are missing)
// once, then read and written a table at a time. Every failure SQLite reports - a locked,
// damaged or read-only file, a missing column - becomes one message naming the file and
// what was being done; nothing throws.

#include "base/MessageSink.h"

#include <cstdint>
#include <filesystem>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

struct sqlite3;

namespace ba {

class RepositoryDatabase {
public:
    // A column's value as stored: NULL, an integer, a float or text.
    using Value = std::variant<std::monostate, std::int64_t, double, std::string>;
    using Row = std::vector<Value>;

    // Opens the file, creating it and any of the nine tables that are missing. Reports to
    // the sink and returns null when it cannot. The sink must outlive the database.
    static std::unique_ptr<RepositoryDatabase> Open(const std::filesystem::path& file, IMessageSink& sink);
    ~RepositoryDatabase();
    RepositoryDatabase(const RepositoryDatabase&) = delete;
    RepositoryDatabase& operator=(const RepositoryDatabase&) = delete;

    const std::filesystem::path& Path() const { return m_path; }
    IMessageSink& Sink() const { return m_sink; }

    // Runs a query and returns, for every row, the named columns in the order given
    // (matched by name, regardless of case, as SQL names are).
    std::optional<std::vector<Row>> Select(std::string_view table, const std::string& sql,
                                           std::span<const std::string> columns);
    // Adds a record in a transaction and returns the ID the database gave it.
    std::optional<std::int64_t> Insert(std::string_view table, std::span<const std::string> columns,
                                       std::span<const Value> values);
    // Changes or removes the record with the ID; false (and a message) when there is none.
    bool Update(std::string_view table, std::int64_t id, std::span<const std::string> columns,
                std::span<const Value> values);
    bool Delete(std::string_view table, std::int64_t id);

    // Reports "Error: <what> the model repository "<file>": <detail>." to the sink.
    void ReportFailure(const std::string& what, const std::string& detail) const;

private:
    RepositoryDatabase(std::filesystem::path path, IMessageSink& sink, sqlite3* db);
    bool CreateMissingTables();
    bool Execute(const std::string& sql, const std::string& what);
    // Runs one statement that changes rows inside BEGIN IMMEDIATE ... COMMIT.
    std::optional<std::int64_t> WriteInTransaction(const std::string& sql, std::span<const Value> values,
                                                   std::optional<std::int64_t> id, const std::string& what);

    std::filesystem::path m_path;
    IMessageSink& m_sink;
    sqlite3* m_db;
};

} // namespace ba
