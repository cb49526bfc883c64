#include "../support/fakeclock.h"

#include <QTest>

#include <limits>

using namespace Qt::StringLiterals;

class TestCalendar : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shouldFindTheStartOfADay()
    {
        const FakeClock clock(u"2026-11-20T14:35:12.345"_s);
        QCOMPARE(clock.today(), clock.at(u"2026-11-20T00:00:00"_s));
        QCOMPARE(clock.calendar().dayOf(clock.now()), QDate(2026, 11, 20));
    }

    void shouldReachFromTheStartOfADayToTheEndOfAnother()
    {
        const FakeClock clock;
        const Calendar &calendar = clock.calendar();
        // October has the day of 25 hours.
        QCOMPARE(
            calendar.interval({2026, 10, 1}, {2026, 10, 31}),
            (DayInterval{clock.at(u"2026-10-01T00:00:00"_s), clock.at(u"2026-11-01T00:00:00"_s)}));
        QCOMPARE(calendar.interval({2026, 10, 25}, {2026, 10, 25}).end -
                     calendar.interval({2026, 10, 25}, {2026, 10, 25}).start,
                 25.0 * 3600);
    }

    void shouldReachAroundADayThatTheZoneSkips()
    {
        // Samoa went from the 29th of December 2011 to the 31st.
        const Calendar calendar{QTimeZone("Pacific/Apia")};
        const Instant skip = *calendar.startOfDay(QDate(2011, 12, 31));
        QCOMPARE(calendar.interval({2011, 12, 29}, {2011, 12, 29}).end, skip);
        QCOMPARE(calendar.interval({2011, 12, 30}, {2011, 12, 31}).start, skip);
        QCOMPARE(calendar.interval({2011, 12, 30}, {2011, 12, 30}), (DayInterval{skip, skip}));
    }

    void shouldReachNowhereFromALaterDayToAnEarlierOne()
    {
        const DayInterval none = FakeClock().calendar().interval({2026, 11, 2}, {2026, 11, 1});
        QVERIFY(none.start >= none.end);
        const DayInterval back = FakeClock().calendar().interval({2026, 11, 3}, {2026, 11, 1});
        QVERIFY(back.start >= back.end);
        const DayInterval invalid = FakeClock().calendar().interval(QDate(), {2026, 11, 1});
        QVERIFY(invalid.start >= invalid.end);
        const DayInterval endless = FakeClock().calendar().interval({2026, 11, 1}, QDate());
        QCOMPARE(endless.start, endless.end);
    }

    void shouldEndADayAtTheStartOfTheNext_data()
    {
        QTest::addColumn<QString>("noon");
        QTest::addColumn<double>("hours");

        QTest::newRow("an ordinary day") << u"2026-11-20T12:00:00"_s << 24.0;
        QTest::newRow("clocks go forward") << u"2026-03-29T12:00:00"_s << 23.0;
        QTest::newRow("clocks go back") << u"2026-10-25T12:00:00"_s << 25.0;
    }
    void shouldEndADayAtTheStartOfTheNext()
    {
        QFETCH(QString, noon);
        QFETCH(double, hours);

        // given
        const FakeClock clock(noon);

        // when
        const DayInterval day = clock.calendar().dayInterval(clock.now());

        // then
        QCOMPARE(day.end - day.start, hours * 3600);
        QVERIFY(day.contains(day.start));
        QVERIFY(!day.contains(day.end));
    }

    void shouldStepByCalendarDays_data()
    {
        QTest::addColumn<QString>("from");
        QTest::addColumn<int>("days");
        QTest::addColumn<QString>("to");

        QTest::newRow("into the month before")
            << u"2026-03-01T00:00:00"_s << -1 << u"2026-02-28T00:00:00"_s;
        QTest::newRow("into a leap day")
            << u"2028-02-28T00:00:00"_s << 1 << u"2028-02-29T00:00:00"_s;
        QTest::newRow("into the year after")
            << u"2026-12-31T00:00:00"_s << 1 << u"2027-01-01T00:00:00"_s;
        QTest::newRow("over a short day")
            << u"2026-03-29T00:00:00"_s << 1 << u"2026-03-30T00:00:00"_s;
        QTest::newRow("back over a short day")
            << u"2026-03-30T00:00:00"_s << -1 << u"2026-03-29T00:00:00"_s;
        QTest::newRow("over a long day")
            << u"2026-10-25T00:00:00"_s << 1 << u"2026-10-26T00:00:00"_s;
        QTest::newRow("back over a long day")
            << u"2026-10-26T00:00:00"_s << -1 << u"2026-10-25T00:00:00"_s;
        QTest::newRow("the time of day is kept")
            << u"2026-03-28T14:35:12.250"_s << 1 << u"2026-03-29T14:35:12.250"_s;
        QTest::newRow("a time that the clock jumps over")
            << u"2026-03-28T02:30:00"_s << 1 << u"2026-03-29T03:00:00"_s;
    }
    void shouldStepByCalendarDays()
    {
        QFETCH(QString, from);
        QFETCH(int, days);
        QFETCH(QString, to);

        // given
        const FakeClock clock;

        // when
        const auto moved = clock.calendar().addingDays(clock.at(from), days);

        // then
        QVERIFY(moved);
        QCOMPARE(*moved, clock.at(to));
    }

    void shouldBeginADayWhoseMidnightDoesNotExistLater()
    {
        // given a zone whose clocks go forward at midnight
        const FakeClock clock(u"2018-11-04T12:00:00"_s, "America/Sao_Paulo");

        // when
        const DayInterval day = clock.calendar().dayInterval(clock.now());

        // then
        QCOMPARE(clock.today(), clock.at(u"2018-11-04T01:00:00"_s));
        QCOMPARE(day.end - day.start, 23.0 * 3600);
    }

    void shouldStepIntoADayWhoseMidnightDoesNotExist()
    {
        // given
        const FakeClock clock(u"2018-11-03T12:00:00"_s, "America/Sao_Paulo");
        const Calendar &calendar = clock.calendar();
        const Instant first = clock.at(u"2018-11-04T01:00:00"_s);

        // then
        QCOMPARE(calendar.addingDays(clock.at(u"2018-11-03T00:00:00"_s), 1).value(), first);
        QCOMPARE(calendar.addingDays(clock.at(u"2018-11-05T00:00:00"_s), -1).value(), first);
    }

    void shouldTakeTheFirstOfTwoMidnights()
    {
        // given a zone whose clocks go back from one o'clock to midnight
        const FakeClock clock(u"2025-11-01T12:00:00"_s, "America/Havana");

        // when
        const Instant first = clock.calendar().startOfDay(QDate(2025, 11, 2)).value();
        const DayInterval day = clock.calendar().dayInterval(first);

        // then
        QCOMPARE(clock.calendar().addingDays(clock.at(u"2025-11-01T00:00:00"_s), 1).value(), first);
        QCOMPARE(day.end - day.start, 25.0 * 3600);
    }

    void shouldStepOverADayThatTheZoneSkips()
    {
        // given an island that crossed the date line
        const FakeClock clock(u"2011-12-29T12:00:00"_s, "Pacific/Apia");
        const Calendar &calendar = clock.calendar();
        const Instant before = clock.at(u"2011-12-29T00:00:00"_s);
        const Instant after = clock.at(u"2011-12-31T00:00:00"_s);

        // then
        QVERIFY(!calendar.startOfDay(QDate(2011, 12, 30)));
        QCOMPARE(calendar.addingDays(before, 1).value(), after);
        QCOMPARE(calendar.addingDays(after, -1).value(), before);
        QCOMPARE(calendar.dayInterval(before), (DayInterval{before, after}));
    }

    void shouldTellDaysApartByTheZone()
    {
        // given
        const FakeClock clock;
        const Calendar &calendar = clock.calendar();
        const Instant late = clock.at(u"2026-11-20T23:59:59"_s);
        const Instant early = clock.at(u"2026-11-21T00:00:00"_s);

        // then
        QVERIFY(!calendar.isSameDay(late, early));
        QVERIFY(calendar.isSameDay(early, clock.at(u"2026-11-21T23:59:59"_s)));
        QVERIFY(Calendar(QTimeZone::utc()).isSameDay(late, early));
    }

    void shouldYieldNothingBeyondTheCalendar_data()
    {
        QTest::addColumn<double>("instant");
        QTest::newRow("far") << 1e300;
        QTest::newRow("infinite") << std::numeric_limits<double>::infinity();
        QTest::newRow("no number") << std::numeric_limits<double>::quiet_NaN();
    }
    void shouldYieldNothingBeyondTheCalendar()
    {
        QFETCH(double, instant);

        // given
        const Calendar calendar;

        // then
        QVERIFY(!calendar.dayOf(instant).isValid());
        QVERIFY(!calendar.addingDays(instant, 1));
        QVERIFY(!calendar.isSameDay(instant, instant));
        QVERIFY(!calendar.dayInterval(instant).contains(instant));
    }

    void shouldFollowTheSystemsZone()
    {
        // given
        const QByteArray before = qgetenv("TZ");
        qputenv("TZ", "Asia/Tokyo");
        const Calendar calendar;

        // then
        QCOMPARE(calendar.startOfDay(QDate(2026, 11, 20)).value(),
                 FakeClock(u"2026-11-20T00:00:00"_s, "Asia/Tokyo").now());

        // when
        qputenv("TZ", "America/New_York");

        // then
        QCOMPARE(calendar.startOfDay(QDate(2026, 11, 20)).value(),
                 FakeClock(u"2026-11-20T00:00:00"_s, "America/New_York").now());
        QCOMPARE(
            calendar.addingDays(FakeClock(u"2026-11-20T08:00:00"_s, "America/New_York").now(), 1)
                .value(),
            FakeClock(u"2026-11-21T08:00:00"_s, "America/New_York").now());

        qputenv("TZ", before);
    }
};

QTEST_GUILESS_MAIN(TestCalendar)
#include "tst_calendar.moc"
