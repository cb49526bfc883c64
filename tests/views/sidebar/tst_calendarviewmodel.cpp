#include "tests/support/fakeclock.h"
#include "views/sidebar/calendarviewmodel.h"

#include <QSignalSpy>
#include <QTest>

#include <algorithm>
#include <limits>
#include <memory>

using namespace Qt::StringLiterals;

class TestCalendarViewModel : public QObject
{
    Q_OBJECT

private:
    struct Fixture {
        explicit Fixture(const QString &selected = u"2026-11-20T00:00:00"_s,
                         const QString &now = u"2026-11-20T08:00:00"_s)
            : clock(now)
            , calendar(clock, clock.at(selected))
        {
        }

        void select(const QString &time) { calendar.setSelectedDate(clock.at(time)); }
        QVariant at(int place, MonthModel::Role role)
        {
            MonthModel *const days = calendar.daysInMonth();
            return days->data(days->index(place), role);
        }
        /// The days of the month that bear a mark.
        QList<int> marked(MonthModel::Role role)
        {
            QList<int> days;
            for (int place = 0; place < calendar.daysInMonth()->rowCount(); ++place) {
                if (at(place, role).toBool())
                    days.append(at(place, MonthModel::DayRole).toInt());
            }
            return days;
        }

        FakeClock clock;
        CalendarViewModel calendar;
    };

private Q_SLOTS:
    void shouldShowTheSelectedMonthAtFirst()
    {
        // given
        Fixture f(u"2025-03-03T00:00:00"_s);

        // then
        QCOMPARE(f.calendar.title(), u"marts 2025"_s);
        QCOMPARE(f.marked(MonthModel::IsSelectedRole), QList<int>{3});
        QVERIFY(f.marked(MonthModel::IsTodayRole).isEmpty());
    }

    void shouldShowTheDaysOfTheZoneTravelledTo_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<int>("selected");
        QTest::addColumn<int>("today");
        QTest::newRow("eastward") << QByteArray("Pacific/Kiritimati") << 20 << 21;
        QTest::newRow("westward") << QByteArray("America/New_York") << 19 << 20;
    }
    void shouldShowTheDaysOfTheZoneTravelledTo()
    {
        QFETCH(QByteArray, zone);
        QFETCH(int, selected);
        QFETCH(int, today);

        // given
        Fixture f(u"2026-11-20T00:00:00"_s, u"2026-11-20T12:00:00"_s);
        QSignalSpy changes(f.calendar.daysInMonth(), &MonthModel::dataChanged);

        // when
        f.clock.travelTo(zone);

        // then
        QCOMPARE(f.marked(MonthModel::IsSelectedRole), QList<int>{selected});
        QCOMPARE(f.marked(MonthModel::IsTodayRole), QList<int>{today});
        // and each cell stands for the day as it is there
        constexpr int placeOfThe21st = 26;
        QCOMPARE(f.at(placeOfThe21st, MonthModel::DayRole), 21);
        QCOMPARE(f.at(placeOfThe21st, MonthModel::DateRole).toDouble(),
                 f.clock.at(u"2026-11-21T00:00:00"_s));
        const bool isDateAnnounced =
            std::any_of(changes.cbegin(), changes.cend(), [](const QList<QVariant> &change) {
                const auto roles = change.at(2).value<QList<int>>();
                return roles.isEmpty() || roles.contains(MonthModel::DateRole);
            });
        QVERIFY(isDateAnnounced);
    }

    void shouldFollowTheSelectedDayIntoAnotherMonthWhenTheZoneChanges()
    {
        // given
        Fixture f(u"2026-12-01T00:00:00"_s);

        // when
        f.clock.travelTo("America/New_York");

        // then
        QCOMPARE(f.calendar.title(), u"november 2026"_s);
        QCOMPARE(f.marked(MonthModel::IsSelectedRole), QList<int>{30});
    }

    void shouldStayOnAnotherMonthWhenTheZoneChanges()
    {
        // given
        Fixture f;
        f.calendar.nextMonth();

        // when
        f.clock.travelTo("America/New_York");

        // then
        QCOMPARE(f.calendar.title(), u"december 2026"_s);

        // when
        f.calendar.previousMonth();

        // then
        QCOMPARE(f.marked(MonthModel::IsSelectedRole), QList<int>{19});
    }

    void shouldNameTheMonthInDanish_data()
    {
        QTest::addColumn<int>("steps");
        QTest::addColumn<QString>("title");
        QTest::newRow("same year") << 0 << u"november 2026"_s;
        QTest::newRow("next year") << 2 << u"januar 2027"_s;
        QTest::newRow("may") << 6 << u"maj 2027"_s;
    }
    void shouldNameTheMonthInDanish()
    {
        QFETCH(int, steps);
        QFETCH(QString, title);

        // given
        Fixture f;

        // when
        for (int i = 0; i < steps; ++i)
            f.calendar.nextMonth();

        // then
        QCOMPARE(f.calendar.title(), title);
    }

    void shouldPageFromLongMonthsToShortOnesWithoutSkippingAny()
    {
        // given
        Fixture f(u"2027-01-31T00:00:00"_s);

        // when
        QStringList titles;
        for (int i = 0; i < 12; ++i) {
            f.calendar.nextMonth();
            titles << f.calendar.title();
        }

        // then
        QCOMPARE(titles.mid(0, 3),
                 (QStringList{u"februar 2027"_s, u"marts 2027"_s, u"april 2027"_s}));
        QCOMPARE(titles.last(), u"januar 2028"_s);

        // when
        for (int i = 0; i < 13; ++i)
            f.calendar.previousMonth();

        // then
        QCOMPARE(f.calendar.title(), u"december 2026"_s);
    }

    void shouldTurnToTheMonthOfADateSelectedElsewhere()
    {
        // given
        Fixture f;

        // when
        f.select(u"2026-12-01T00:00:00"_s);

        // then
        QCOMPARE(f.calendar.title(), u"december 2026"_s);
        QCOMPARE(f.marked(MonthModel::IsSelectedRole), QList<int>{1});

        // when
        f.select(u"2025-12-01T00:00:00"_s);

        // then
        QCOMPARE(f.calendar.title(), u"december 2025"_s);
    }

    void shouldLeaveThePageAloneWhenADateOfTheShownMonthIsSelected()
    {
        // given
        Fixture f;
        QSignalSpy turned(&f.calendar, &CalendarViewModel::titleChanged);

        // when
        f.select(u"2026-11-02T00:00:00"_s);

        // then
        QCOMPARE(turned.count(), 0);
        QCOMPARE(f.marked(MonthModel::IsSelectedRole), QList<int>{2});

        // given a month that was paged to
        f.calendar.nextMonth();
        QCOMPARE(turned.count(), 1);

        // when
        f.select(u"2026-12-24T00:00:00"_s);

        // then
        QCOMPARE(turned.count(), 1);
        QCOMPARE(f.marked(MonthModel::IsSelectedRole), QList<int>{24});
    }

    void shouldTurnBackWhenAnotherDayOfTheSelectedMonthIsSelected()
    {
        // given
        Fixture f;
        f.calendar.nextMonth();
        f.calendar.nextMonth();

        // when
        f.select(u"2026-11-21T00:00:00"_s);

        // then
        QCOMPARE(f.calendar.title(), u"november 2026"_s);
    }

    void shouldNotChangeTheSelectionByPaging()
    {
        // given
        Fixture f;

        // when
        f.calendar.previousMonth();

        // then
        QVERIFY(f.marked(MonthModel::IsSelectedRole).isEmpty());

        // when
        f.calendar.nextMonth();

        // then
        QCOMPARE(f.marked(MonthModel::IsSelectedRole), QList<int>{20});
        QCOMPARE(f.marked(MonthModel::IsTodayRole), QList<int>{20});
    }

    void shouldMarkTheSelectedDayWhateverTheTimeOfDay()
    {
        // given
        Fixture f(u"2026-11-20T23:59:59"_s);

        // then
        QCOMPARE(f.marked(MonthModel::IsSelectedRole), QList<int>{20});
    }

    void shouldMoveTheMarkOfTodayWithTheClock()
    {
        // given
        Fixture f(u"2026-11-20T00:00:00"_s, u"2026-11-30T23:59:59"_s);
        QCOMPARE(f.marked(MonthModel::IsTodayRole), QList<int>{30});

        // when
        f.clock.advance(1);

        // then
        QVERIFY(f.marked(MonthModel::IsTodayRole).isEmpty());
        // neither page nor selection follow it
        QCOMPARE(f.calendar.title(), u"november 2026"_s);
        QCOMPARE(f.marked(MonthModel::IsSelectedRole), QList<int>{20});

        // when
        f.calendar.nextMonth();

        // then
        QCOMPARE(f.marked(MonthModel::IsTodayRole), QList<int>{1});
    }

    void shouldGiveTheFirstMomentOfEachDay()
    {
        // given a month in which the clock is set back
        Fixture f(u"2026-10-20T00:00:00"_s);

        // then
        QCOMPARE(f.at(3, MonthModel::DayRole).toInt(), 1);
        QCOMPARE(f.at(3, MonthModel::DateRole).toDouble(), f.clock.at(u"2026-10-01T00:00:00"_s));
        QCOMPARE(f.at(27, MonthModel::DateRole).toDouble(), f.clock.at(u"2026-10-25T00:00:00"_s));
        QCOMPARE(f.at(28, MonthModel::DateRole).toDouble(),
                 f.at(27, MonthModel::DateRole).toDouble() + 25 * 3600);
    }

    void shouldNameEachDayInFull()
    {
        // given
        Fixture f(u"2025-03-20T00:00:00"_s);

        // then
        QCOMPARE(f.at(7, MonthModel::NameRole).toString(), u"mandag 3. marts 2025"_s);
        QCOMPARE(f.at(0, MonthModel::DayRole).toInt(), 0);
        QCOMPARE(f.at(0, MonthModel::NameRole).toString(), QString());
    }

    void shouldKeepThePlacesThatBothMonthsHave()
    {
        // given a month of six rows
        Fixture f(u"2026-08-20T00:00:00"_s);
        MonthModel *const days = f.calendar.daysInMonth();
        QCOMPARE(days->rowCount(), 42);
        QSignalSpy reset(days, &MonthModel::modelReset);
        QSignalSpy removed(days, &MonthModel::rowsRemoved);
        QSignalSpy inserted(days, &MonthModel::rowsInserted);

        // when the next one has five
        f.calendar.nextMonth();

        // then
        QCOMPARE(days->rowCount(), 35);
        QCOMPARE(removed.count(), 1);

        // when
        f.calendar.previousMonth();

        // then
        QCOMPARE(days->rowCount(), 42);
        QCOMPARE(inserted.count(), 1);
        QCOMPARE(reset.count(), 0);
    }

    void shouldShowTheMonthOfNowWhileTheSelectedDateIsBeyondTheCalendar_data()
    {
        QTest::addColumn<double>("date");
        QTest::newRow("not a number") << std::numeric_limits<double>::quiet_NaN();
        QTest::newRow("infinite") << std::numeric_limits<double>::infinity();
        QTest::newRow("too late") << 1e300;
    }
    void shouldShowTheMonthOfNowWhileTheSelectedDateIsBeyondTheCalendar()
    {
        QFETCH(double, date);

        // given
        FakeClock clock;
        CalendarViewModel calendar(clock, date);

        // then
        QCOMPARE(calendar.title(), u"november 2026"_s);
        QCOMPARE(calendar.daysInMonth()->rowCount(), 42);
    }
};

QTEST_GUILESS_MAIN(TestCalendarViewModel)
#include "tst_calendarviewmodel.moc"
