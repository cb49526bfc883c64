#pragma once

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <QtGlobal>

#include <chrono>
#include <cstddef>
#include <limits>
#include <optional>
#include <set>
#include <string>

/// Looks through a store row by row, a little at a time: whether each row can be read, and whether
/// each index finds it.
class StoreInspection
{
public:
    /// Of the store that @p database has open, which outlives the inspection and is not changed by
    /// it.
    explicit StoreInspection(SQLite::Database &database);

    /// Goes on for about @p time, and for one row at least. True once there is nothing left to look
    /// at, or once damage keeps it from going on. Throws SQLite::Exception if the disk fails.
    bool goOn(std::chrono::milliseconds time);

    /// What is damaged, in English; empty if all rows could be read.
    const std::string &damage() const { return m_damage; }
    /// The names of the indexes that do not find all rows.
    const std::set<std::string> &brokenIndexes() const { return m_brokenIndexes; }

private:
    using Moment = std::chrono::steady_clock::time_point;
    bool lookThroughTable(Moment end);

    SQLite::Database &m_database;
    std::size_t m_table = 0;
    /// The rows of the table that is being looked through.
    std::optional<SQLite::Statement> m_rows;
    qint64 m_lastRowid = std::numeric_limits<qint64>::min();
    std::string m_damage;
    std::set<std::string> m_brokenIndexes;
};
