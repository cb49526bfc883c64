#include "model/recordfilter.h"

#include "model/recordtable.h"
#include "model/task.h"

namespace
{
const Task &asTask(const Record &record)
{
    return static_cast<const Task &>(record);
}
} // namespace

RecordFilter allRecords()
{
    return {{}, {}, [](const Record &) { return true; }};
}

RecordFilter tasksOnDay(const DayInterval &day)
{
    return {"date >= ? AND date < ?", {day.start, day.end}, [day](const Record &record) {
                return day.contains(asTask(record).date());
            }};
}

RecordFilter runningTasks()
{
    return {"lastStartTime IS NOT NULL", {}, [](const Record &record) {
                return asTask(record).isRunning();
            }};
}

RecordFilter tasksWithID(const QUuid &id)
{
    return {"id = ?", {storedId(id)}, [id](const Record &record) { return record.id() == id; }};
}
