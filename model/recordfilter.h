#pragma once

#include "model/calendar.h"

#include <QUuid>

#include <functional>
#include <string>
#include <variant>
#include <vector>

class Record;

/// Which records of a type are meant: once as SQL for what is stored and once as a test for the
/// objects in memory. The two agree.
struct RecordFilter {
    using Argument = std::variant<double, std::string>;

    /// A condition on the type's columns; empty for all records. Blobs are its text arguments.
    std::string condition;
    std::vector<Argument> arguments;
    std::function<bool(const Record &)> matches;
};

/// Every record of the type.
RecordFilter allRecords();
/// The tasks whose date lies in @p day.
RecordFilter tasksOnDay(const DayInterval &day);
RecordFilter runningTasks();
RecordFilter tasksWithID(const QUuid &id);
