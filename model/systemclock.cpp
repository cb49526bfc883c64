#include "model/systemclock.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <utility>

#ifdef Q_OS_LINUX
#include <sys/timerfd.h>
#include <unistd.h>
#endif

using namespace Qt::StringLiterals;

namespace
{

Instant systemTime()
{
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch())
        .count();
}

} // namespace

SystemClock::SystemClock(Calendar calendar)
    : Clock(std::move(calendar))
    , m_day(this->calendar().dayOf(systemTime()))
{
#ifdef Q_OS_LINUX
    m_alarm = ::timerfd_create(CLOCK_REALTIME, TFD_NONBLOCK | TFD_CLOEXEC);
    if (m_alarm >= 0) {
        m_alarmNotifier = std::make_unique<QSocketNotifier>(m_alarm, QSocketNotifier::Read);
        connect(m_alarmNotifier.get(), &QSocketNotifier::activated, this,
                &SystemClock::lookAtTheDay);
    }
#endif
    m_timer.setSingleShot(true);
    connect(&m_timer, &QTimer::timeout, this, &SystemClock::lookAtTheDay);
    // A new zone is a new link in this directory; the file that it led to does not change.
    m_zoneWatcher.addPath(u"/etc"_s);
    connect(&m_zoneWatcher, &QFileSystemWatcher::directoryChanged, this,
            &SystemClock::lookAtTheDay);
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

void SystemClock::lookAtTheDay()
{
    // Also reads the alarm: an error says that the clock has been set.
#ifdef Q_OS_LINUX
    quint64 expirations = 0;
    if (m_alarm >= 0) {
        [[maybe_unused]] const ssize_t size = ::read(m_alarm, &expirations, sizeof(expirations));
    }
#endif
    waitForMidnight();
    const QDate day = calendar().dayOf(now());
    if (day == m_day)
        return;
    m_day = day;
    Q_EMIT dayChanged();
}
