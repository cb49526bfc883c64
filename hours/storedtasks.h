#pragma once

#include "hours/period.h"
#include "hours/recordedtask.h"
#include "model/calendar.h"

#include <filesystem>

/// Reads the tasks of @p period in the store at @p path, with days as in @p calendar and with
/// running tasks up to @p now; none if there is no store. Changes nothing of it and locks nothing.
/// Throws StoreError where the program would refuse the store, StoreInUseError where another
/// process holds it, and TasksChanged if it was changed or taken meanwhile.
void readStoredTasks(const std::filesystem::path &path, const Period &period,
                     const Calendar &calendar, Instant now, const TaskReceiver &receive);
