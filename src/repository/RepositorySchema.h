#pragma once
// The repository's tables as data: names, columns in binding order and column types,
// derived from the record types so that the two cannot disagree.

#include "repository/RepositoryRecords.h"

#include <string>
#include <string_view>
#include <vector>

namespace ba {

struct ColumnLayout {
    std::string name;
    ColumnType type = ColumnType::Long;
};

struct TableLayout {
    std::string name;
    std::vector<ColumnLayout> columns; // binding order
};

template <class Record>
TableLayout TableLayoutOf()
{
    TableLayout layout{Record::kTable, {}};
    const Record sample{};
    Record::Bind(sample, [&layout]<class T>(const std::string& column, const T&) {
        layout.columns.push_back({column, ColumnTypeOf<T>()});
    });
    return layout;
}

// The nine tables, in alphabetical order.
const std::vector<TableLayout>& RepositoryTableLayouts();

// "Long", "Short", "Single", "Double" or "Text".
std::string_view ColumnTypeName(ColumnType type);

// The column's definition in CREATE TABLE. Text compares byte for byte (BINARY), so a name
// that differs only in case is another name; ID is the database's own row number.
std::string ColumnDeclaration(const ColumnLayout& column);

} // namespace ba
