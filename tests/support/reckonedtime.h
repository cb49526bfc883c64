#pragma once

#include <QString>

#include <optional>

/// The seconds that @p entry means as a time; nothing if they, or what they are the sum of, do not
/// fit in 64 bits. A reckoning that shares nothing with the program's: with regular expressions,
/// and with numbers that cannot overflow.
std::optional<qint64> reckonedSeconds(QString entry);
