#include "model/systemclock.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <ctime>
#include <utility>

#ifdef Q_OS_LINUX
#include <sys/timerfd.h>
#include <unistd.h>
#endif

namespace
{

Instant systemTime()
{
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch())
        .count();
}

} // namespace

SystemClock::SystemClock(Calendar calendar, QString zoneFile)
    : Clock(std::move(calendar))
    , m_day(this->calendar().dayOf(systemTime()))
    , m_zoneFile(std::move(zoneFile))
{
#ifdef Q_OS_LINUX
    m_alarm = ::timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC);
    if (m_alarm >= 0) {
        m_alarmNotifier = std::make_unique<QSocketNotifier>(m_alarm, QSocketNotifier::Read);
        connect(m_alarmNotifier.get(), &QSocketNotifier::activated, this, &SystemClock::onAlarm);
    }
#endif
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &SystemClock::onTimer);
    // A new zone is mostly a new link, and only its directory's changes show that.
    m_zoneWatcher.addPath(QFileInfo(m_zoneFile).path());
    connect(&m_zoneWatcher, &QFileSystemWatcher::directoryChanged, this,
            &SystemClock::onZoneFileChanged);
    connect(&m_zoneWatcher, &QFileSystemWatcher::fileChanged, this,
            &SystemClock::onZoneFileChanged);
    m_zone = watchedZone();
    waitForMidnight();
}

SystemClock::~SystemClock()
{
#ifdef Q_OS_LINUX
    m_alarmNotifier.reset();
    if (m_alarm >= 0)
        ::close(m_alarm);
#endif
}

Instant SystemClock::now() const
{
    return systemTime();
}

void SystemClock::waitForMidnight()
{
    const Instant midnight = calendar().dayInterval(systemTime()).end;
#ifdef Q_OS_LINUX
    if (m_alarm >= 0) {
        itimerspec alarm{};
        alarm.it_value.tv_sec = static_cast<time_t>(std::ceil(midnight));
        ::timerfd_settime(m_alarm, TFD_TIMER_ABSTIME | TFD_TIMER_CANCEL_ON_SET, &alarm, nullptr);
        return;
    }
#endif
    // Suspend and a setting of the clock may make it late or early, but never lose a day.
    constexpr double longest = 3600;
    m_timer.start(std::chrono::milliseconds(
        static_cast<qint64>(std::clamp(midnight - systemTime(), 0.001, longest) * 1000)));
}

void SystemClock::onAlarm()
{
    // Whether it is midnight or the clock has been set, of which an error tells: days may be
    // others.
#ifdef Q_OS_LINUX
    quint64 expirations = 0;
    [[maybe_unused]] const ssize_t size = ::read(m_alarm, &expirations, sizeof(expirations));
#endif
    tell();
}

void SystemClock::onTimer()
{
    if (calendar().dayOf(now()) == m_day)
        waitForMidnight();
    else
        tell();
}

void SystemClock::onZoneFileChanged()
{
    const QByteArray zone = watchedZone();
    if (zone == m_zone)
        return;
    m_zone = zone;
#ifdef Q_OS_UNIX
    // Qt has the C library look for a new zone at each use, but does not promise to.
    ::tzset();
#endif
    tell();
}

void SystemClock::tell()
{
    m_day = calendar().dayOf(now());
    waitForMidnight();
    Q_EMIT calendarChanged();
}

/// What the zone file holds, and watches the file that has it now.
QByteArray SystemClock::watchedZone()
{
    m_zoneWatcher.removePath(m_zoneFile);
    m_zoneWatcher.addPath(m_zoneFile);
    QFile file(m_zoneFile);
    return file.open(QFile::ReadOnly) ? file.readAll() : QByteArray();
}
