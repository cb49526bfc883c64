#include "hours/storedtasks.h"

#include "model/readonlystore.h"
#include "model/storechecks.h"
#include "model/storeerror.h"
#include "model/taskreading.h"

#include <SQLiteCpp/Exception.h>

#include <QFile>

#include <chrono>
#include <utility>

namespace
{

/// How long is read before it is looked whether that still makes sense.
constexpr std::chrono::milliseconds slice{5};

void failIfChanged(const ReadOnlyStore &store)
{
    if (store.hasChanged())
        throw TasksChanged("The store has been changed while it was read");
}

} // namespace

void readStoredTasks(const std::filesystem::path &path, const Period &period,
                     const Calendar &calendar, Instant now, const TaskReceiver &receive)
{
    ReadOnlyStore store(path);
    if (store.database() == nullptr)
        return;
    RecordedDays days(calendar, now, receive, [&](const char *fault, const Task::Values &values) {
        failIfChanged(store);
        const QString storePath = QFile::decodeName(store.path().c_str());
        throw StoreError(std::string(fault) + '\n' +
                         Task::repairAdvice(values, calendar, storePath));
    });
    try {
        TaskReading reading(*store.database(), calendar.interval(period.first, period.last));
        while (!reading.goOn(slice, [&days](StoredTask &&task) { days.take(std::move(task)); }))
            failIfChanged(store);
    } catch (const SQLite::Exception &error) {
        // Half of an old page and half of a new one look like damage.
        failIfChanged(store);
        refuseFor(error, store.path());
    }
    days.finish();
    failIfChanged(store);
}
