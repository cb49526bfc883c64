#pragma once

#include "model/calendar.h"

#include <QObject>

#include <utility>

/// What time it is, and in which calendar: the one source of both for records, timer and views.
class Clock : public QObject
{
    Q_OBJECT

public:
    /// Reads the time in @p calendar.
    explicit Clock(Calendar calendar = Calendar());
    ~Clock() override;

    /// The current moment. It may be set back while the program runs.
    virtual Instant now() const = 0;

    /// The user's calendar.
    const Calendar &calendar() const { return m_calendar; }
    /// The start of today.
    Instant today() const { return m_calendar.startOfDay(now()); }

Q_SIGNALS:
    /// Days are to be derived again: midnight has passed, or the time or the zone have been set.
    void calendarChanged();

protected:
    /// Sets the calendar from now on. The caller emits calendarChanged().
    void setCalendar(Calendar calendar) { m_calendar = std::move(calendar); }

private:
    Calendar m_calendar;
};
