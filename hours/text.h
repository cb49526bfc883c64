#pragma once

#include "hours/report.h"

// The report's words and figures as people read them, in tables and spreadsheets.

inline constexpr QLatin1StringView totalTitle{"I alt"};
inline constexpr QLatin1StringView hoursTitle{"Faktisk"};
inline constexpr QLatin1StringView billableHoursTitle{"Fakturerbar"};

/// The heading of the column of @p key.
QString titleOf(Key key);
/// What stands in that column in the row of @p row.
QString textOf(const RowKey &row, Key key);
/// Hours with the two decimals that the window shows, and a decimal comma.
QString danishHours(double hours);
