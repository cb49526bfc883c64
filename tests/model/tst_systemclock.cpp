#include "model/systemclock.h"

#include <QFile>
#include <QFileSystemWatcher>
#include <QScopeGuard>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <sys/syscall.h>
#include <sys/timerfd.h>
#include <unistd.h>

#include <cmath>

using namespace Qt::StringLiterals;

namespace
{
/// The alarm that a clock has asked the system for.
struct Alarm {
    int descriptor = -1;
    int flags = 0;
};
Alarm s_alarm;
bool s_hasAlarms = true;
} // namespace

// Instead of the C library's: there may be no alarms.
extern "C" int timerfd_create(int clock, int flags)
{
    return s_hasAlarms ? static_cast<int>(::syscall(SYS_timerfd_create, clock, flags)) : -1;
}

// Instead of the C library's: notes what is asked for, and passes it on.
extern "C" int timerfd_settime(int descriptor, int flags, const itimerspec *time, itimerspec *old)
{
    s_alarm = {descriptor, flags};
    return static_cast<int>(::syscall(SYS_timerfd_settime, descriptor, flags, time, old));
}

class TestSystemClock : public QObject
{
    Q_OBJECT

private:
    /// A zone file that leads to another one, as the system's does.
    struct Zone {
        Zone() { leadTo("a"); }

        QString path(const char *name) const { return folder.filePath(QString::fromLatin1(name)); }
        void write(const char *name, const QByteArray &text) const
        {
            QFile file(path(name));
            QVERIFY(file.open(QFile::WriteOnly | QFile::Truncate));
            QCOMPARE(file.write(text), text.size());
        }
        /// Puts another link in its place in one step.
        void leadTo(const char *name) const
        {
            write(name, name);
            QVERIFY(QFile::link(path(name), path("new")));
            QCOMPARE(std::rename(QFile::encodeName(path("new")).constData(),
                                 QFile::encodeName(path("localtime")).constData()),
                     0);
        }

        QTemporaryDir folder;
    };

private Q_SLOTS:
    void shouldTellTheTime()
    {
        // given
        const SystemClock clock;
        const Instant before = static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / 1000.0;

        // then
        QVERIFY(std::abs(clock.now() - before) < 10);
    }

    void shouldTellOfANewDayAtMidnightWithoutBeingAsked_data()
    {
        QTest::addColumn<bool>("hasAlarms");
        QTest::newRow("by an alarm") << true;
        QTest::newRow("where there are no alarms") << false;
    }
    void shouldTellOfANewDayAtMidnightWithoutBeingAsked()
    {
        QFETCH(bool, hasAlarms);
        s_hasAlarms = hasAlarms;
        const auto restore = qScopeGuard([] { s_hasAlarms = true; });

        // given a zone in which it is midnight in two to three seconds
        const SystemClock utc{Calendar(QTimeZone::utc())};
        const auto secondsOfDay = static_cast<int>(std::fmod(utc.now(), 86400));
        const int untilMidnight = 86400 - secondsOfDay;
        constexpr int halfADay = 43200; // offsets reach no further
        const int offset = (untilMidnight <= halfADay ? untilMidnight : untilMidnight - 86400) - 3;
        const SystemClock clock{Calendar(QTimeZone(offset))};
        const QDate today = clock.calendar().dayOf(clock.now());
        QSignalSpy changed(&clock, &Clock::calendarChanged);

        // then
        QTRY_COMPARE(changed.count(), 1);
        QCOMPARE(clock.calendar().dayOf(clock.now()), today.addDays(1));
    }

    void shouldBeWokenWhenTheTimeIsSet()
    {
        const SystemClock clock;
        QVERIFY(s_alarm.flags & TFD_TIMER_ABSTIME);
        QVERIFY(s_alarm.flags & TFD_TIMER_CANCEL_ON_SET);
    }

    void shouldTellOfAnAlarmThoughTheDayIsTheSame()
    {
        // given
        const SystemClock clock;
        QSignalSpy changed(&clock, &Clock::calendarChanged);

        // when the alarm goes off now
        const int alarm = s_alarm.descriptor;
        s_alarm = {};
        constexpr itimerspec soon{{}, {0, 1}};
        QCOMPARE(::syscall(SYS_timerfd_settime, alarm, 0, &soon, nullptr), 0);

        // then that is told, and it is set again
        QTRY_COMPARE(changed.count(), 1);
        QCOMPARE(s_alarm.descriptor, alarm);
        QVERIFY(s_alarm.flags & TFD_TIMER_CANCEL_ON_SET);
    }

    void shouldTellOfANewZone()
    {
        // given
        const Zone zone;
        const SystemClock clock({}, zone.path("localtime"));
        QSignalSpy changed(&clock, &Clock::calendarChanged);

        // when
        zone.leadTo("b");

        // then
        QTRY_COMPARE(changed.count(), 1);

        // when
        zone.leadTo("c");

        // then
        QTRY_COMPARE(changed.count(), 2);
    }

    void shouldTellOfNewRulesInTheFileThatTheZoneLeadsTo()
    {
        // given
        const Zone zone;
        const SystemClock clock({}, zone.path("localtime"));
        QSignalSpy changed(&clock, &Clock::calendarChanged);

        // when another link comes
        zone.leadTo("b");

        // then
        QTRY_COMPARE(changed.count(), 1);

        // when that one's file changes
        zone.write("b", "other rules");

        // then
        QTRY_VERIFY(changed.count() >= 2);
    }

    void shouldTellOfAZoneThatComesBack()
    {
        // given
        const Zone zone;
        const SystemClock clock({}, zone.path("localtime"));
        QSignalSpy changed(&clock, &Clock::calendarChanged);

        // when it goes
        QVERIFY(QFile::remove(zone.path("localtime")));

        // then
        QTRY_COMPARE(changed.count(), 1);

        // when it comes back
        zone.leadTo("b");

        // then
        QTRY_COMPARE(changed.count(), 2);
    }

    void shouldNotTellOfOtherFilesBesideTheZone()
    {
        // given
        const Zone zone;
        const SystemClock clock({}, zone.path("localtime"));
        QSignalSpy changed(&clock, &Clock::calendarChanged);
        // Changes that come together would be told together.
        const QFileSystemWatcher watcher({zone.folder.path()});
        QSignalSpy seen(&watcher, &QFileSystemWatcher::directoryChanged);

        // when
        zone.write("resolv.conf", "nameserver");
        QTRY_VERIFY(seen.count() > 0);
        // What comes later is told, and nothing before it.
        zone.leadTo("b");

        // then
        QTRY_VERIFY(changed.count() > 0);
        QCOMPARE(changed.count(), 1);
    }
};

QTEST_GUILESS_MAIN(TestSystemClock)
#include "tst_systemclock.moc"
