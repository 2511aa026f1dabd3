#pragma once
// A recordset over one repository table: opened, it holds the table's records in table
// order (ascending ID), and adds, changes and deletes records both in the file and in
// what it holds. Failures are reported to the database's sink and answered with false.

#include "repository/ModelNameCheck.h"
#include "repository/RepositoryDatabase.h"
#include "repository/RepositoryPath.h"
#include "repository/RepositoryRecords.h"
#include "repository/RepositoryValues.h"

#include <algorithm>
#include <functional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace ba {

template <class Record>
class CRepositoryRecordset {
public:
    explicit CRepositoryRecordset(RepositoryDatabase& database) : m_database(database) {}

    // The table in square brackets: opening with it reads the whole table.
    static std::string GetDefaultSQL() { return "[" + std::string(Record::kTable) + "]"; }
    static std::filesystem::path GetDefaultDBName() { return DefaultRepositoryPath(); }

    // sql is either a table reference such as the default "[Table]", or a whole SELECT
    // statement whose columns are found by name.
    bool Open(const std::string& sql = GetDefaultSQL())
    {
        Close();
        const bool isSelect = sql.size() >= 6 && std::equal(sql.begin(), sql.begin() + 6, "SELECT", [](char a, char b) {
                                  return (a >= 'a' && a <= 'z' ? static_cast<char>(a - 'a' + 'A') : a) == b;
                              });
        const std::string query = isSelect ? sql : "SELECT * FROM " + sql + " ORDER BY [ID]";
        const std::vector<std::string> columns = ColumnNames();
        const auto rows = m_database.Select(Record::kTable, query, columns);
        if (!rows) return false;
        const std::size_t idColumn =
            static_cast<std::size_t>(std::find(columns.begin(), columns.end(), kIdColumn) - columns.begin());
        std::vector<Record> records;
        records.reserve(rows->size());
        for (const auto& row : *rows) {
            Record record;
            // Read first so that a fault in any column can name its record.
            if (const auto* id = std::get_if<std::int64_t>(&row[idColumn])) record.id = static_cast<std::int32_t>(*id);
            std::size_t column = 0;
            std::string problem;
            std::string where;
            Record::Bind(record, [&](const std::string& name, auto& member) {
                if (problem.empty()) {
                    problem = FromStored(row[column], member);
                    where = name;
                }
                ++column;
            });
            if (!problem.empty()) {
                m_database.ReportFailure("cannot read table [" + std::string(Record::kTable) + "] of",
                                         "column [" + where + "] of record " + std::to_string(record.id) +
                                             " holds " + problem);
                return false;
            }
            records.push_back(std::move(record));
        }
        m_records = std::move(records);
        m_open = true;
        return true;
    }
    bool IsOpen() const { return m_open; }
    void Close()
    {
        m_records.clear();
        m_open = false;
    }

    const std::vector<Record>& Records() const { return m_records; }
    // The name column of every record from the first to the end: what a dialog's combo
    // box lists.
    std::vector<std::string> Names() const
    {
        std::vector<std::string> names;
        names.reserve(m_records.size());
        for (const Record& r : m_records) names.push_back(r.RecordName());
        return names;
    }
    // The first record in table order whose name matches byte for byte, or null.
    const Record* FindByName(std::string_view name) const
    {
        for (const Record& r : m_records) {
            if (r.RecordName() == name) return &r;
        }
        return nullptr;
    }

    // Writes a new record; its ID is the one the database gives (written into record).
    bool AddNew(Record& record)
    {
        std::vector<std::string> columns;
        std::vector<RepositoryDatabase::Value> values;
        Record::Bind(std::as_const(record), [&](const std::string& name, const auto& member) {
            if (name == kIdColumn) return;
            columns.push_back(name);
            values.push_back(ToStored(member));
        });
        const auto id = m_database.Insert(Record::kTable, columns, values);
        if (!id) return false;
        record.id = static_cast<std::int32_t>(*id);
        m_records.push_back(record);
        return true;
    }

    // A dialog's save of a new model: the name walk, then the dialog's own check (may be
    // empty), and only then the write.
    bool AddNewNamed(Record& record, const NameRefusalTexts& texts, IMessageSink& sink,
                     const std::function<bool(const Record&, IMessageSink&)>& ownCheck = {})
    {
        if (!AcceptNewName(record.RecordName(), Names(), texts, sink)) return false;
        if (ownCheck && !ownCheck(record, sink)) return false;
        return AddNew(record);
    }

    // Writes every column of the record whose ID it carries.
    bool Update(const Record& record)
    {
        std::vector<std::string> columns;
        std::vector<RepositoryDatabase::Value> values;
        Record::Bind(record, [&](const std::string& name, const auto& member) {
            if (name == kIdColumn) return;
            columns.push_back(name);
            values.push_back(ToStored(member));
        });
        if (!m_database.Update(Record::kTable, record.id, columns, values)) return false;
        for (Record& held : m_records) {
            if (held.id == record.id) held = record;
        }
        return true;
    }

    bool Delete(std::int32_t id)
    {
        if (!m_database.Delete(Record::kTable, id)) return false;
        std::erase_if(m_records, [id](const Record& r) { return r.id == id; });
        return true;
    }

    static std::vector<std::string> ColumnNames()
    {
        std::vector<std::string> names;
        const Record sample{};
        Record::Bind(sample, [&names](const std::string& name, const auto&) { names.push_back(name); });
        return names;
    }

private:
    RepositoryDatabase& m_database;
    std::vector<Record> m_records;
    bool m_open = false;
};

// One recordset class per table.
using CBSpectraModelsRepository = CRepositoryRecordset<BSpectraModelRecord>;
using CCBLModelsRepository = CRepositoryRecordset<CblModelRecord>;
using CEquationModelsRepository = CRepositoryRecordset<EquationModelRecord>;
using CFormulaLogRepository = CRepositoryRecordset<FormulaLogRecord>;
using CGraphicalModelsRepository = CRepositoryRecordset<GraphicalModelRecord>;
using CSpectraWindowsRepository = CRepositoryRecordset<SpectraWindowRecord>;
using CTemplatesRepository = CRepositoryRecordset<TemplateRecord>;
using CTraceTemplatesRepository = CRepositoryRecordset<TraceTemplateRecord>;
using CWSpectraModelsRepository = CRepositoryRecordset<WSpectraModelRecord>;

} // namespace ba
