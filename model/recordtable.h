#pragma once

#include "model/task.h"

#include <array>
#include <string>
#include <vector>

namespace SQLite
{
class Statement;
}
struct RecordFilter;

/// How one record type lies in the store's file. `rowid` is the record's identity and grows with
/// insertion, so it is also the store's order.
struct RecordTable {
    struct Index {
        std::string name;
        std::string column;
        /// Of the rows that are in it; empty for all.
        std::string condition;
    };

    std::string name;
    std::vector<Index> indexes;
    /// Creates the table and its indexes.
    std::string create;
    /// Yields rowid and the properties; a condition may follow.
    std::string select;
    /// Take the properties from parameter 1 on; update takes the rowid after them.
    std::string insert;
    std::string update;
    /// Takes the rowid.
    std::string remove;

    /// Makes the record from a row that select yields; the caller owns it.
    Record *(*read)(SQLite::Statement &row, const Clock &clock);
    /// Binds the properties to parameter 1 and on; returns the next free parameter.
    int (*bind)(SQLite::Statement &statement, const Record &record);
};

/// All record types, in the order of the schema.
inline constexpr std::array recordTypes{RecordType::Task, RecordType::TaskTemplate,
                                        RecordType::ProjectCode};

const RecordTable &recordTable(RecordType type);

/// Reads what is stored of a task from a row that its table's select yields.
Task::Values taskValues(SQLite::Statement &row);

/// Yields what @p table.select does for the records that match, in the store's order. Takes the
/// filter's arguments from parameter 1 on.
std::string selection(const RecordTable &table, const RecordFilter &filter);

/// An id as the store holds it: its 16 bytes.
std::string storedId(const QUuid &id);
