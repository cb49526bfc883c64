#pragma once

#include "model/calendar.h"

#include <QDate>

#include <optional>
#include <vector>

/// The days of the month that @p month lies in, as they stand in whole weeks from Monday to Sunday:
/// nothing in the places before the month's first day and after its last. A day that the calendar's
/// zone skips has no place. Empty for an invalid date.
std::vector<std::optional<QDate>> monthGrid(QDate month, const Calendar &calendar);
