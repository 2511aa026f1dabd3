#pragma once
// Reads and writes a repository file with SQLite directly, apart from the code under
// test, so that tests see what is really stored and can damage it the way another
// program could.

#include <sqlite3.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <vector>

namespace ba::test {

class SqliteProbe {
public:
    explicit SqliteProbe(const std::filesystem::path& file)
    {
        if (sqlite3_open(file.string().c_str(), &m_db) != SQLITE_OK) throw std::runtime_error(sqlite3_errmsg(m_db));
    }
    ~SqliteProbe() { sqlite3_close(m_db); }
    SqliteProbe(const SqliteProbe&) = delete;
    SqliteProbe& operator=(const SqliteProbe&) = delete;

    void Execute(const std::string& sql)
    {
        char* error = nullptr;
        if (sqlite3_exec(m_db, sql.c_str(), nullptr, nullptr, &error) != SQLITE_OK) {
            const std::string text = error != nullptr ? error : "unknown error";
            sqlite3_free(error);
            throw std::runtime_error(text + " in: " + sql);
        }
    }

    // Every row as text ("NULL" for a null).
    std::vector<std::vector<std::string>> Rows(const std::string& sql)
    {
        std::vector<std::vector<std::string>> rows;
        auto collect = [](void* target, int count, char** values, char**) {
            auto& out = *static_cast<std::vector<std::vector<std::string>>*>(target);
            out.emplace_back();
            for (int i = 0; i < count; ++i) out.back().push_back(values[i] != nullptr ? values[i] : "NULL");
            return 0;
        };
        char* error = nullptr;
        if (sqlite3_exec(m_db, sql.c_str(), collect, &rows, &error) != SQLITE_OK) {
            const std::string text = error != nullptr ? error : "unknown error";
            sqlite3_free(error);
            throw std::runtime_error(text + " in: " + sql);
        }
        return rows;
    }

private:
    sqlite3* m_db = nullptr;
};

} // namespace ba::test
