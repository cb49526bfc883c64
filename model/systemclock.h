#pragma once

#include "model/clock.h"

#include <QFileSystemWatcher>
#include <QSocketNotifier>
#include <QTimer>

#include <memory>

/// The system's clock. It sleeps until midnight, until the time is set or until the system has
/// another zone. On Linux it sleeps by the real-time clock, so that time spent in suspend counts
/// and a setting of the clock wakes it; elsewhere by a timer.
class SystemClock : public Clock
{
    Q_OBJECT

public:
    /// @p zoneFile is what the C library reads the system's zone from: a file, or a link to one.
    explicit SystemClock(Calendar calendar = Calendar(),
                         QString zoneFile = QStringLiteral("/etc/localtime"));
    ~SystemClock() override;

    Instant now() const override;

private:
    void waitForMidnight();
    void onAlarm();
    void onTimer();
    void onZoneFileChanged();
    void tell();
    QByteArray watchedZone();

    QDate m_day;
    QString m_zoneFile;
    QFileSystemWatcher m_zoneWatcher;
    /// What the zone file holds.
    QByteArray m_zone;
    int m_alarm = -1;
    std::unique_ptr<QSocketNotifier> m_alarmNotifier;
    QTimer m_timer;
};
