#include "model/storeinspection.h"

#include "model/recordtable.h"

#include <SQLiteCpp/Exception.h>
#include <sqlite3.h>

namespace
{

/// Yields the rows after a rowid: the rowid, the properties, and for each index whether it finds
/// the row.
std::string rowsAfter(const RecordTable &table)
{
    std::string sql = table.select;
    std::string found;
    for (const RecordTable::Index &index : table.indexes)
        found += ", " + index.column + " IS NULL OR EXISTS (SELECT 1 FROM " + table.name +
                 " AS other INDEXED BY " + index.name + " WHERE other." + index.column + " = " +
                 table.name + '.' + index.column + " AND other.rowid = " + table.name + ".rowid)";
    sql.insert(sql.rfind(" FROM "), found);
    return sql + " NOT INDEXED WHERE rowid > ? ORDER BY rowid";
}

} // namespace

StoreInspection::StoreInspection(SQLite::Database &database)
    : m_database(database)
{
}

bool StoreInspection::goOn(std::chrono::milliseconds time)
{
    const Moment end = std::chrono::steady_clock::now() + time;
    try {
        while (m_table < recordTypes.size()) {
            if (!lookThroughTable(end))
                return false;
            ++m_table;
            m_rows.reset();
            m_lastRowid = std::numeric_limits<qint64>::min();
        }
    } catch (const SQLite::Exception &error) {
        m_rows.reset();
        if (error.getErrorCode() != SQLITE_CORRUPT)
            throw;
        m_damage = "rows of the table " + recordTable(recordTypes.at(m_table)).name +
                   " cannot be read (" + error.what() + ")";
    }
    return true;
}

bool StoreInspection::lookThroughTable(Moment end)
{
    const RecordTable &table = recordTable(recordTypes.at(m_table));
    if (!m_rows)
        m_rows.emplace(m_database, rowsAfter(table));
    m_rows->bind(1, static_cast<int64_t>(m_lastRowid));
    while (m_rows->executeStep()) {
        const qint64 rowid = m_rows->getColumn(0).getInt64();
        // Pages that refer to each other in a circle yield their rows again and again.
        if (rowid <= m_lastRowid)
            throw SQLite::Exception("they are not in order", SQLITE_CORRUPT);
        m_lastRowid = rowid;
        int column = m_rows->getColumnCount() - static_cast<int>(table.indexes.size());
        for (const RecordTable::Index &index : table.indexes) {
            if (m_rows->getColumn(column++).getInt() == 0)
                m_brokenIndexes.insert(index.name);
        }
        if (std::chrono::steady_clock::now() >= end) {
            // No read is left open while control is elsewhere.
            m_rows->reset();
            return false;
        }
    }
    m_rows->reset();
    return true;
}
