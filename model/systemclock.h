#pragma once

#include "model/clock.h"

#include <QFileSystemWatcher>
#include <QSocketNotifier>
#include <QTimer>

#include <memory>

/// The system's clock. It sleeps until midnight: on Linux by the real-time clock, so that time
/// spent in suspend counts and a setting of the clock wakes it; elsewhere by a timer.
class SystemClock : public Clock
{
    Q_OBJECT

public:
    explicit SystemClock(Calendar calendar = Calendar());
    ~SystemClock() override;

    Instant now() const override;

private:
    void waitForMidnight();
    void lookAtTheDay();

    QDate m_day;
    QFileSystemWatcher m_zoneWatcher;
    int m_alarm = -1;
    std::unique_ptr<QSocketNotifier> m_alarmNotifier;
    QTimer m_timer;
};
