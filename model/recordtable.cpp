#include "model/recordtable.h"

#include "model/projectcode.h"
#include "model/recordfilter.h"
#include "model/task.h"
#include "model/tasktemplate.h"

#include <SQLiteCpp/Column.h>
#include <SQLiteCpp/Statement.h>

namespace
{

QUuid readId(const SQLite::Column &column)
{
    return QUuid::fromRfc4122(
        QByteArray(static_cast<const char *>(column.getBlob()), column.getBytes()));
}

QString readText(const SQLite::Column &column)
{
    // With its length: a text may hold a NUL.
    const char *text = column.getText();
    return QString::fromUtf8(text, column.getBytes());
}

void bindId(SQLite::Statement &statement, int index, const QUuid &id)
{
    const std::string bytes = storedId(id);
    statement.bind(index, bytes.data(), static_cast<int>(bytes.size()));
}

void bindText(SQLite::Statement &statement, int index, const QString &text)
{
    statement.bind(index, text.toStdString());
}

Record *readTask(SQLite::Statement &row, const Clock &clock)
{
    Task::Values values;
    values.id = readId(row.getColumn(1));
    values.name = readText(row.getColumn(2));
    values.date = row.getColumn(3).getDouble();
    values.accumulatedSeconds = row.getColumn(4).getInt64();
    if (const SQLite::Column start = row.getColumn(5); !start.isNull())
        values.lastStartTime = start.getDouble();
    values.sortOrder = row.getColumn(6).getInt64();
    values.createdAt = row.getColumn(7).getDouble();
    if (const SQLite::Column code = row.getColumn(8); !code.isNull())
        values.projectCode = readText(code);
    return new Task(clock, values);
}

int bindTask(SQLite::Statement &statement, const Record &record)
{
    const auto &task = static_cast<const Task &>(record);
    bindId(statement, 1, task.id());
    bindText(statement, 2, task.name());
    statement.bind(3, task.date());
    statement.bind(4, static_cast<int64_t>(task.accumulatedSeconds()));
    if (task.lastStartTime())
        statement.bind(5, *task.lastStartTime());
    else
        statement.bind(5);
    statement.bind(6, static_cast<int64_t>(task.sortOrder()));
    statement.bind(7, task.createdAt());
    if (task.projectCode())
        bindText(statement, 8, *task.projectCode());
    else
        statement.bind(8);
    return 9;
}

Record *readTaskTemplate(SQLite::Statement &row, const Clock &)
{
    TaskTemplate::Values values;
    values.id = readId(row.getColumn(1));
    values.name = readText(row.getColumn(2));
    values.sortOrder = row.getColumn(3).getInt64();
    values.createdAt = row.getColumn(4).getDouble();
    return new TaskTemplate(values);
}

int bindTaskTemplate(SQLite::Statement &statement, const Record &record)
{
    const auto &taskTemplate = static_cast<const TaskTemplate &>(record);
    bindId(statement, 1, taskTemplate.id());
    bindText(statement, 2, taskTemplate.name());
    statement.bind(3, static_cast<int64_t>(taskTemplate.sortOrder()));
    statement.bind(4, taskTemplate.createdAt());
    return 5;
}

Record *readProjectCode(SQLite::Statement &row, const Clock &)
{
    ProjectCode::Values values;
    values.id = readId(row.getColumn(1));
    values.code = readText(row.getColumn(2));
    values.name = readText(row.getColumn(3));
    values.sortOrder = row.getColumn(4).getInt64();
    values.createdAt = row.getColumn(5).getDouble();
    return new ProjectCode(values);
}

int bindProjectCode(SQLite::Statement &statement, const Record &record)
{
    const auto &projectCode = static_cast<const ProjectCode &>(record);
    bindId(statement, 1, projectCode.id());
    bindText(statement, 2, projectCode.code());
    bindText(statement, 3, projectCode.name());
    statement.bind(4, static_cast<int64_t>(projectCode.sortOrder()));
    statement.bind(5, projectCode.createdAt());
    return 6;
}

// A day, the running tasks and one task by its id are found by index: the history may hold
// millions of tasks, and nobody waits for it.
const std::array<RecordTable, recordTypes.size()> tables{{
    {
        "CREATE TABLE Task ("
        "rowid INTEGER PRIMARY KEY, "
        "id BLOB NOT NULL, "
        "name TEXT NOT NULL, "
        "date REAL NOT NULL, "
        "accumulatedSeconds INTEGER NOT NULL, "
        "lastStartTime REAL, "
        "sortOrder INTEGER NOT NULL, "
        "createdAt REAL NOT NULL, "
        "projectCode TEXT"
        ") STRICT;"
        "CREATE INDEX TaskByDate ON Task (date);"
        "CREATE INDEX TaskByID ON Task (id);"
        "CREATE INDEX RunningTask ON Task (lastStartTime) WHERE lastStartTime IS NOT NULL;",
        "SELECT rowid, id, name, date, accumulatedSeconds, lastStartTime, sortOrder, createdAt, "
        "projectCode FROM Task",
        "INSERT INTO Task (id, name, date, accumulatedSeconds, lastStartTime, sortOrder, "
        "createdAt, projectCode) VALUES (?, ?, ?, ?, ?, ?, ?, ?)",
        "UPDATE Task SET id = ?, name = ?, date = ?, accumulatedSeconds = ?, lastStartTime = ?, "
        "sortOrder = ?, createdAt = ?, projectCode = ? WHERE rowid = ?",
        "DELETE FROM Task WHERE rowid = ?",
        &readTask,
        &bindTask,
    },
    {
        "CREATE TABLE TaskTemplate ("
        "rowid INTEGER PRIMARY KEY, "
        "id BLOB NOT NULL, "
        "name TEXT NOT NULL, "
        "sortOrder INTEGER NOT NULL, "
        "createdAt REAL NOT NULL"
        ") STRICT;",
        "SELECT rowid, id, name, sortOrder, createdAt FROM TaskTemplate",
        "INSERT INTO TaskTemplate (id, name, sortOrder, createdAt) VALUES (?, ?, ?, ?)",
        "UPDATE TaskTemplate SET id = ?, name = ?, sortOrder = ?, createdAt = ? WHERE rowid = ?",
        "DELETE FROM TaskTemplate WHERE rowid = ?",
        &readTaskTemplate,
        &bindTaskTemplate,
    },
    {
        "CREATE TABLE ProjectCode ("
        "rowid INTEGER PRIMARY KEY, "
        "id BLOB NOT NULL, "
        "code TEXT NOT NULL, "
        "name TEXT NOT NULL, "
        "sortOrder INTEGER NOT NULL, "
        "createdAt REAL NOT NULL"
        ") STRICT;",
        "SELECT rowid, id, code, name, sortOrder, createdAt FROM ProjectCode",
        "INSERT INTO ProjectCode (id, code, name, sortOrder, createdAt) VALUES (?, ?, ?, ?, ?)",
        "UPDATE ProjectCode SET id = ?, code = ?, name = ?, sortOrder = ?, createdAt = ? "
        "WHERE rowid = ?",
        "DELETE FROM ProjectCode WHERE rowid = ?",
        &readProjectCode,
        &bindProjectCode,
    },
}};

} // namespace

const RecordTable &recordTable(RecordType type)
{
    return tables.at(static_cast<std::size_t>(type));
}

std::string selection(const RecordTable &table, const RecordFilter &filter)
{
    std::string sql = table.select;
    if (!filter.condition.empty())
        sql += " WHERE " + filter.condition;
    // By its bare name SQLite would rather read the whole history in this order than sort the few
    // that match.
    return sql + " ORDER BY +rowid";
}

std::string storedId(const QUuid &id)
{
    return id.toRfc4122().toStdString();
}
