#include "model/systemclock.h"

#include <QSignalSpy>
#include <QTest>

#include <cmath>

class TestSystemClock : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shouldTellTheTime()
    {
        const SystemClock clock;
        const Instant before = static_cast<double>(QDateTime::currentMSecsSinceEpoch()) / 1000.0;
        QVERIFY(std::abs(clock.now() - before) < 10);
    }

    void shouldTellOfANewDayAtMidnightWithoutBeingAsked()
    {
        // given a zone in which it is almost midnight
        const SystemClock utc{Calendar(QTimeZone::utc())};
        const auto secondsOfDay = static_cast<int>(std::fmod(utc.now(), 86400));
        const int untilMidnight = 86400 - secondsOfDay;
        constexpr int halfADay = 43200; // offsets reach no further
        const int offset = (untilMidnight <= halfADay ? untilMidnight : untilMidnight - 86400) - 1;
        const SystemClock clock{Calendar(QTimeZone(offset))};
        const QDate today = clock.calendar().dayOf(clock.now());
        QSignalSpy changed(&clock, &Clock::dayChanged);
        QTRY_COMPARE(changed.count(), 1);
        QCOMPARE(clock.calendar().dayOf(clock.now()), today.addDays(1));
    }
};

QTEST_GUILESS_MAIN(TestSystemClock)
#include "tst_systemclock.moc"
