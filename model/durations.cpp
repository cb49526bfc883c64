#include "model/durations.h"

#include <array>
#include <charconv>
#include <cmath>

QString clockText(qint64 seconds)
{
    constexpr qint64 perHour = 3600;
    constexpr qint64 perMinute = 60;
    return QString::asprintf("%02lld:%02lld:%02lld", static_cast<long long>(seconds / perHour),
                             static_cast<long long>(seconds % perHour / perMinute),
                             static_cast<long long>(seconds % perMinute));
}

double decimalHours(qint64 seconds)
{
    return static_cast<double>(seconds) / 3600.0;
}

double roundedDecimalHours(qint64 seconds)
{
    constexpr double quarter = 15.0;
    constexpr double grace = 5.0;
    const double minutes = static_cast<double>(seconds) / 60.0;
    if (!(minutes > 0.0))
        return 0.0;
    const double quarters = minutes / quarter;
    return (std::fmod(minutes, quarter) > grace ? std::ceil(quarters) : std::floor(quarters)) *
           0.25;
}

QString hoursText(double hours)
{
    // Qt rounds 0.125 up where C's format rounds to even, and C's takes the locale's comma.
    // The longest double has 309 digits before the full stop.
    std::array<char, 320> text{};
    const char *const end =
        std::to_chars(text.data(), text.data() + text.size(), hours, std::chars_format::fixed, 2)
            .ptr;
    return QString::fromLatin1(text.data(), end - text.data());
}
