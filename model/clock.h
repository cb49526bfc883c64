#pragma once

#include "model/calendar.h"

/// What time it is, and in which calendar: the one source of both for records, timer and views.
class Clock
{
public:
    /// The system's clock, read in @p calendar.
    explicit Clock(Calendar calendar = Calendar());
    virtual ~Clock();

    Clock(const Clock &) = delete;
    Clock &operator=(const Clock &) = delete;

    /// The current moment. It may be set back while the program runs.
    virtual Instant now() const;

    /// The user's calendar.
    const Calendar &calendar() const { return m_calendar; }
    /// The start of today.
    Instant today() const { return m_calendar.startOfDay(now()); }

private:
    Calendar m_calendar;
};
