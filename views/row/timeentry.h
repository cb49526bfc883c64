#pragma once

#include <QString>

/// The seconds that an entered time means: "1:30:15" hours, minutes and seconds, "1:30" hours and
/// minutes, "45" minutes. Parts that are no whole numbers are left out; of nothing, or of more than
/// three parts, comes 0. May be negative. Fatal if the sum overflows.
qint64 secondsOfTimeEntry(const QString &entry);
