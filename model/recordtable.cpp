#include "model/recordtable.h"

#include "model/projectcode.h"
#include "model/recordfilter.h"
#include "model/tasktemplate.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Statement.h>

#include <optional>
#include <type_traits>
#include <variant>

namespace
{

// How a property's value lies in its column, which may be empty where the value is optional.

template<typename Value>
constexpr const char *sqlType = nullptr;
template<>
constexpr const char *sqlType<QUuid> = "BLOB NOT NULL";
template<>
constexpr const char *sqlType<QString> = "TEXT NOT NULL";
template<>
constexpr const char *sqlType<std::optional<QString>> = "TEXT";
template<>
constexpr const char *sqlType<qint64> = "INTEGER NOT NULL";
template<>
constexpr const char *sqlType<double> = "REAL NOT NULL";
template<>
constexpr const char *sqlType<std::optional<double>> = "REAL";

void read(const SQLite::Column &cell, QUuid &id)
{
    id = QUuid::fromRfc4122(QByteArray(static_cast<const char *>(cell.getBlob()), cell.getBytes()));
}

void read(const SQLite::Column &cell, QString &text)
{
    // The length is given because a text may hold a NUL.
    const char *bytes = cell.getText();
    text = QString::fromUtf8(bytes, cell.getBytes());
}

void read(const SQLite::Column &cell, qint64 &number)
{
    number = cell.getInt64();
}

void read(const SQLite::Column &cell, double &number)
{
    number = cell.getDouble();
}

template<typename Value>
void read(const SQLite::Column &cell, std::optional<Value> &value)
{
    if (!cell.isNull())
        read(cell, value.emplace());
}

void bind(SQLite::Statement &statement, int index, const QUuid &id)
{
    const std::string bytes = storedId(id);
    statement.bind(index, bytes.data(), static_cast<int>(bytes.size()));
}

void bind(SQLite::Statement &statement, int index, const QString &text)
{
    statement.bind(index, text.toStdString());
}

void bind(SQLite::Statement &statement, int index, qint64 number)
{
    statement.bind(index, static_cast<int64_t>(number));
}

void bind(SQLite::Statement &statement, int index, double number)
{
    statement.bind(index, number);
}

template<typename Value>
void bind(SQLite::Statement &statement, int index, const std::optional<Value> &value)
{
    if (value)
        bind(statement, index, *value);
    else
        statement.bind(index);
}

/// One property of a record type: its column's name, and where its value is.
template<typename Values>
struct Property {
    const char *name;
    std::variant<QUuid Values::*, QString Values::*, std::optional<QString> Values::*,
                 qint64 Values::*, double Values::*, std::optional<double> Values::*>
        member;
};

/// The properties of a record type, in the order of the schema.
template<typename Type>
constexpr std::array<Property<typename Type::Values>, 0> properties{};

template<>
constexpr std::array properties<Task>{
    Property<Task::Values>{"id", &Task::Values::id},
    Property<Task::Values>{"name", &Task::Values::name},
    Property<Task::Values>{"date", &Task::Values::date},
    Property<Task::Values>{"accumulatedSeconds", &Task::Values::accumulatedSeconds},
    Property<Task::Values>{"lastStartTime", &Task::Values::lastStartTime},
    Property<Task::Values>{"sortOrder", &Task::Values::sortOrder},
    Property<Task::Values>{"createdAt", &Task::Values::createdAt},
    Property<Task::Values>{"projectCode", &Task::Values::projectCode},
};

template<>
constexpr std::array properties<TaskTemplate>{
    Property<TaskTemplate::Values>{"id", &TaskTemplate::Values::id},
    Property<TaskTemplate::Values>{"name", &TaskTemplate::Values::name},
    Property<TaskTemplate::Values>{"sortOrder", &TaskTemplate::Values::sortOrder},
    Property<TaskTemplate::Values>{"createdAt", &TaskTemplate::Values::createdAt},
};

template<>
constexpr std::array properties<ProjectCode>{
    Property<ProjectCode::Values>{"id", &ProjectCode::Values::id},
    Property<ProjectCode::Values>{"code", &ProjectCode::Values::code},
    Property<ProjectCode::Values>{"name", &ProjectCode::Values::name},
    Property<ProjectCode::Values>{"sortOrder", &ProjectCode::Values::sortOrder},
    Property<ProjectCode::Values>{"createdAt", &ProjectCode::Values::createdAt},
};

template<typename Type>
typename Type::Values readValues(SQLite::Statement &row)
{
    typename Type::Values values;
    int index = 0;
    for (const auto &property : properties<Type>) {
        // The rowid is the first column.
        const SQLite::Column cell = row.getColumn(++index);
        std::visit([&](auto member) { read(cell, values.*member); }, property.member);
    }
    return values;
}

template<typename Type>
Record *readRecord(SQLite::Statement &row, const Clock &clock)
{
    const typename Type::Values values = readValues<Type>(row);
    if constexpr (std::is_constructible_v<Type, const Clock &, typename Type::Values>)
        return new Type(clock, values);
    else
        return new Type(values);
}

template<typename Type>
int bindRecord(SQLite::Statement &statement, const Record &record)
{
    const typename Type::Values &values = static_cast<const Type &>(record).values();
    int index = 1;
    for (const auto &property : properties<Type>)
        std::visit([&](auto member) { bind(statement, index++, values.*member); }, property.member);
    return index;
}

template<typename Type>
RecordTable makeTable(const std::string &table, const std::vector<RecordTable::Index> &indexes)
{
    const auto joined = [](const auto &textOf) {
        std::string list;
        for (const Property<typename Type::Values> &property : properties<Type>)
            list.append(list.empty() ? "" : ", ").append(textOf(property));
        return list;
    };
    const std::string names = joined([](const auto &property) { return property.name; });
    const std::string places = joined([](const auto &) { return "?"; });
    const std::string assignments =
        joined([](const auto &property) { return std::string(property.name) + " = ?"; });
    const std::string declarations = joined([](const auto &property) {
        const auto type = [](auto member) {
            return sqlType<std::decay_t<decltype(typename Type::Values().*member)>>;
        };
        return std::string(property.name) + ' ' + std::visit(type, property.member);
    });
    std::string create =
        "CREATE TABLE " + table + " (rowid INTEGER PRIMARY KEY, " + declarations + ") STRICT;";
    for (const RecordTable::Index &index : indexes) {
        create.append("CREATE INDEX ").append(index.name).append(" ON ").append(table);
        create.append(" (").append(index.column).append(")");
        if (!index.condition.empty())
            create.append(" WHERE ").append(index.condition);
        create.append(";");
    }
    return {
        table,
        indexes,
        create,
        "SELECT rowid, " + names + " FROM " + table,
        "INSERT INTO " + table + " (" + names + ") VALUES (" + places + ")",
        "UPDATE " + table + " SET " + assignments + " WHERE rowid = ?",
        "DELETE FROM " + table + " WHERE rowid = ?",
        &readRecord<Type>,
        &bindRecord<Type>,
    };
}

} // namespace

const RecordTable &recordTable(RecordType type)
{
    // A day, the running tasks and one task by its id are found by index: the history may hold
    // millions of tasks, and nobody waits for it.
    static const std::array<RecordTable, recordTypes.size()> tables{
        makeTable<Task>("Task", {{"TaskByDate", "date", ""},
                                 {"TaskByID", "id", ""},
                                 {"RunningTask", "lastStartTime", "lastStartTime IS NOT NULL"}}),
        makeTable<TaskTemplate>("TaskTemplate", {}),
        makeTable<ProjectCode>("ProjectCode", {}),
    };
    return tables.at(static_cast<std::size_t>(type));
}

Task::Values taskValues(SQLite::Statement &row)
{
    return readValues<Task>(row);
}

std::string selection(const RecordTable &table, const RecordFilter &filter)
{
    std::string sql = table.select;
    if (!filter.condition.empty())
        sql += " WHERE " + filter.condition;
    // A bare column name would make SQLite read the whole history in this order, instead of sorting
    // the few records that match.
    return sql + " ORDER BY +rowid";
}

std::string storedId(const QUuid &id)
{
    return id.toRfc4122().toStdString();
}
