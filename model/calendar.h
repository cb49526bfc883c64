#pragma once

#include <QDateTime>
#include <QTimeZone>

#include <optional>

/// A moment: seconds since 1970-01-01 00:00 UTC, fractions included.
using Instant = double;

/// The moments of one calendar day: start ≤ moment < end.
struct DayInterval {
    Instant start;
    Instant end;

    bool contains(Instant instant) const { return start <= instant && instant < end; }
    bool operator==(const DayInterval &) const = default;
};

/// Days as the user lives them: the Gregorian calendar in one time zone. A value; cheap to copy.
class Calendar
{
public:
    /// The system's time zone, whatever it is at each use.
    Calendar() = default;
    /// Always @p zone.
    explicit Calendar(QTimeZone zone);

    /// The wall time at @p instant; invalid beyond the years that a date can hold.
    QDateTime dateTime(Instant instant) const;
    /// The day that @p instant lies in; invalid beyond the years that a date can hold.
    QDate dayOf(Instant instant) const;
    /// The first moment of @p instant's day; @p instant itself where there is no such day.
    Instant startOfDay(Instant instant) const;
    /// The first moment of @p day; nothing if the zone skips that day or the date is invalid.
    std::optional<Instant> startOfDay(QDate day) const;
    /// From the start of @p instant's day to the start of the next.
    DayInterval dayInterval(Instant instant) const;
    /// From the start of @p first to the end of @p last. Empty if the days are not in this order or
    /// there are no such days.
    DayInterval interval(QDate first, QDate last) const;
    bool isSameDay(Instant a, Instant b) const;
    /// @p instant moved by @p days calendar days, its time of day kept; where the clock jumps over
    /// that time, the first moment after the jump. A day that the zone skips is stepped over.
    /// Nothing if the result is beyond the calendar.
    std::optional<Instant> addingDays(Instant instant, int days) const;

private:
    QDateTime dateTime(QDate day, QTime time) const;
    QDateTime firstMoment(QDate day) const;

    std::optional<QTimeZone> m_zone;
};
