#include "repository/RepositorySchema.h"

namespace ba {

const std::vector<TableLayout>& RepositoryTableLayouts()
{
    static const std::vector<TableLayout> layouts = [] {
        std::vector<TableLayout> all;
        ForEachRecordType([&all]<class R>(std::type_identity<R>) { all.push_back(TableLayoutOf<R>()); });
        return all;
    }();
    return layouts;
}

std::string_view ColumnTypeName(ColumnType type)
{
    switch (type) {
    case ColumnType::Long: return "Long";
    case ColumnType::Short: return "Short";
    case ColumnType::Single: return "Single";
    case ColumnType::Double: return "Double";
    case ColumnType::Text: return "Text";
    }
    return "Text";
}

namespace {

// Declared types chosen so that SQLite's type affinity keeps integers as integers and
// floats as REAL, while PRAGMA table_info still tells a Short from a Long and a Single
// from a Double.
std::string_view SqlType(ColumnType type)
{
    switch (type) {
    case ColumnType::Long: return "INTEGER";
    case ColumnType::Short: return "SMALLINT";
    case ColumnType::Single: return "REAL";
    case ColumnType::Double: return "DOUBLE";
    case ColumnType::Text: return "TEXT COLLATE BINARY";
    }
    return "TEXT";
}

} // namespace

std::string ColumnDeclaration(const ColumnLayout& column)
{
    std::string declaration = "[" + column.name + "] ";
    if (column.name == kIdColumn) return declaration + "INTEGER PRIMARY KEY AUTOINCREMENT";
    return declaration.append(SqlType(column.type));
}

} // namespace ba
