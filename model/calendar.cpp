#include "model/calendar.h"

#include <cmath>
#include <utility>

namespace
{
Instant instantOf(const QDateTime &dateTime)
{
    return static_cast<double>(dateTime.toMSecsSinceEpoch()) / 1000.0;
}
} // namespace

Calendar::Calendar(QTimeZone zone)
    : m_zone(std::move(zone))
{
}

QDate Calendar::dayOf(Instant instant) const
{
    return dateTime(instant).date();
}

Instant Calendar::startOfDay(Instant instant) const
{
    return startOfDay(dayOf(instant)).value_or(instant);
}

std::optional<Instant> Calendar::startOfDay(QDate day) const
{
    const QDateTime first = firstMoment(day);
    if (!first.isValid())
        return std::nullopt;
    return instantOf(first);
}

DayInterval Calendar::dayInterval(Instant instant) const
{
    const QDate day = dayOf(instant);
    const std::optional<Instant> start = startOfDay(day);
    if (!start)
        return {instant, instant};
    // A zone that crosses the date line skips a day; no zone skips two.
    for (int step = 1; step <= 2; ++step) {
        if (const auto end = startOfDay(day.addDays(step)))
            return {*start, *end};
    }
    return {*start, *start};
}

DayInterval Calendar::interval(QDate first, QDate last) const
{
    // A day that the zone skips begins and ends with the day after it.
    const auto boundary = [this](QDate day) {
        const std::optional<Instant> start = startOfDay(day);
        return start ? start : startOfDay(day.addDays(1));
    };
    const std::optional<Instant> start = boundary(first);
    const std::optional<Instant> end = boundary(last.addDays(1));
    if (!start || !end || *end < *start)
        return {0, 0};
    return {*start, *end};
}

bool Calendar::isSameDay(Instant a, Instant b) const
{
    const QDate day = dayOf(a);
    return day.isValid() && day == dayOf(b);
}

std::optional<Instant> Calendar::addingDays(Instant instant, int days) const
{
    const QDateTime from = dateTime(instant);
    if (!from.isValid())
        return std::nullopt;
    QDate day = from.date().addDays(days);
    if (!firstMoment(day).isValid())
        day = day.addDays(days < 0 ? -1 : 1);
    const QDateTime first = firstMoment(day);
    if (!first.isValid())
        return std::nullopt;

    const QTime time = from.time();
    const double fraction = instant - instantOf(from);
    // A date with a time would not do: where midnight comes twice, the first one begins the day.
    if (first.time() == time)
        return instantOf(first) + fraction;
    const QDateTime moved = dateTime(day, time);
    if (moved.isValid() && moved.date() == day && moved.time() == time)
        return instantOf(moved) + fraction;

    // The clock jumps over that time. Qt's versions resolve it in different ways, so the moment
    // of the jump is sought: the first one at which the wall clock is past the time wanted.
    qint64 before = first.toMSecsSinceEpoch();
    const QDateTime wanted(day, time, QTimeZone::utc());
    const auto isPast = [&](qint64 moment) {
        const QDateTime local = dateTime(static_cast<double>(moment) / 1000.0);
        return QDateTime(local.date(), local.time(), QTimeZone::utc()) >= wanted;
    };
    if (isPast(before))
        return instantOf(first);
    qint64 after = before + 2 * Q_INT64_C(86'400'000);
    while (after - before > 1) {
        const qint64 middle = before + (after - before) / 2;
        (isPast(middle) ? after : before) = middle;
    }
    return static_cast<double>(after) / 1000.0;
}

QDateTime Calendar::dateTime(Instant instant) const
{
    // About 300,000 years: well inside what QDateTime can hold.
    constexpr double limit = 1e13;
    if (!(std::abs(instant) < limit))
        return {};
    const auto milliseconds = static_cast<qint64>(std::floor(instant * 1000.0));
    return m_zone ? QDateTime::fromMSecsSinceEpoch(milliseconds, *m_zone)
                  : QDateTime::fromMSecsSinceEpoch(milliseconds);
}

QDateTime Calendar::dateTime(QDate day, QTime time) const
{
    return m_zone ? QDateTime(day, time, *m_zone) : QDateTime(day, time);
}

QDateTime Calendar::firstMoment(QDate day) const
{
    QDateTime first = m_zone ? day.startOfDay(*m_zone) : day.startOfDay();
    // Where midnight comes twice, Qt may give the second one.
    if (const QDateTime before = first.addMSecs(-1); first.isValid() && before.date() == day)
        return first.addSecs(first.offsetFromUtc() - before.offsetFromUtc());
    return first;
}
