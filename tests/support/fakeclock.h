#pragma once

#include "model/clock.h"

/// A clock that stands still, where it is, until it is set or travels.
class FakeClock : public Clock
{
public:
    /// Shows @p time in @p zone.
    explicit FakeClock(const QString &time = QStringLiteral("2026-11-20T08:00:00"),
                       const QByteArray &zone = "Europe/Copenhagen")
        : FakeClock(time, QTimeZone(zone))
    {
    }

    Instant now() const override { return m_now; }

    /// Sets the time, and tells of the new day if it is one.
    void set(Instant now)
    {
        const bool isSameDay = calendar().isSameDay(m_now, now);
        m_now = now;
        if (!isSameDay)
            Q_EMIT calendarChanged();
    }
    void set(const QString &time) { set(at(time)); }
    void advance(double seconds) { set(m_now + seconds); }

    /// Goes on in @p zone.
    void travelTo(const QByteArray &zone)
    {
        m_zone = QTimeZone(zone);
        setCalendar(Calendar(m_zone));
        Q_EMIT calendarChanged();
    }

    /// A wall time of the clock's zone, "2026-11-20T08:00:00".
    Instant at(const QString &time) const { return at(time, m_zone); }

private:
    FakeClock(const QString &time, const QTimeZone &zone)
        : Clock(Calendar(zone))
        , m_zone(zone)
        , m_now(at(time, zone))
    {
    }

    static Instant at(const QString &time, const QTimeZone &zone)
    {
        QDateTime dateTime = QDateTime::fromString(time, Qt::ISODateWithMs);
        dateTime.setTimeZone(zone);
        return static_cast<double>(dateTime.toMSecsSinceEpoch()) / 1000.0;
    }

    QTimeZone m_zone;
    Instant m_now;
};
