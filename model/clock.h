#pragma once

#include "model/calendar.h"

#include <QObject>
#include <QtQmlIntegration>

/// What time it is, and in which calendar: the one source of both for records, timer and views.
class Clock : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("There is one clock, made at start-up")

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
    /// Today is another day than it was: midnight has passed, or time or zone have been set.
    void dayChanged();

private:
    Calendar m_calendar;
};
