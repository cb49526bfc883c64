#include "views/sidebar/monthgrid.h"

#include <QTest>

namespace
{

int daysIn(int year, int month)
{
    static constexpr int days[] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    const bool isLeap = (year % 4 == 0 && year % 100 != 0) || year % 400 == 0;
    return days[month - 1] + (month == 2 && isLeap ? 1 : 0);
}

/// The empty places before the first day and after the last, and the days between.
struct Shape {
    explicit Shape(const std::vector<std::optional<QDate>> &grid)
        : count(static_cast<int>(grid.size()))
    {
        auto first = grid.begin();
        while (first != grid.end() && !*first)
            ++first;
        auto last = grid.end();
        while (last != first && !*(last - 1))
            --last;
        leading = static_cast<int>(first - grid.begin());
        trailing = static_cast<int>(grid.end() - last);
        for (; first != last; ++first)
            days.append(first->value_or(QDate()));
    }

    int count;
    int leading = 0;
    int trailing = 0;
    QList<QDate> days;
};

const Calendar utc{QTimeZone("UTC")};

} // namespace

class TestMonthGrid : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shouldShowEveryMonthOfTwoCenturiesInWholeWeeks_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::newRow("UTC") << QByteArray("UTC");
        QTest::newRow("Copenhagen") << QByteArray("Europe/Copenhagen");
    }
    void shouldShowEveryMonthOfTwoCenturiesInWholeWeeks()
    {
        QFETCH(QByteArray, zone);

        // given that 1 January 1900 was a Monday
        const Calendar calendar{QTimeZone(zone)};
        int weekday = 0;

        // then
        for (int year = 1900; year <= 2100; ++year) {
            for (int month = 1; month <= 12; ++month) {
                const int length = daysIn(year, month);
                const Shape shape(monthGrid(QDate(year, month, length / 2), calendar));
                QCOMPARE(shape.leading, weekday);
                QCOMPARE(shape.days.size(), length);
                for (int day = 1; day <= length; ++day)
                    QCOMPARE(shape.days.at(day - 1), QDate(year, month, day));
                QCOMPARE(shape.count % 7, 0);
                QVERIFY(shape.leading < 7 && shape.trailing < 7);
                weekday = (weekday + length) % 7;
            }
        }
    }

    void shouldHaveNoEmptyPlacesBeforeAMonthThatBeginsOnAMonday()
    {
        QCOMPARE(Shape(monthGrid({2026, 6, 15}, utc)).leading, 0);
    }

    void shouldHaveSixEmptyPlacesBeforeAMonthThatBeginsOnASunday()
    {
        QCOMPARE(Shape(monthGrid({2026, 11, 15}, utc)).leading, 6);
    }

    void shouldShowAFebruaryOfWholeWeeksInFourRows()
    {
        // when
        const Shape shape(monthGrid({2027, 2, 28}, utc));

        // then
        QCOMPARE(shape.count, 28);
        QCOMPARE(shape.leading, 0);
        QCOMPARE(shape.trailing, 0);
    }

    void shouldShowALongMonthThatBeginsOnASaturdayInSixRows()
    {
        // when
        const Shape shape(monthGrid({2026, 8, 1}, utc));

        // then
        QCOMPARE(shape.leading, 5);
        QCOMPARE(shape.days.size(), 31);
        QCOMPARE(shape.trailing, 6);
        QCOMPARE(shape.count, 42);
    }

    void shouldLeaveOutADayThatTheZoneSkips()
    {
        // given that Samoa went from 29 to 31 December 2011
        const Calendar samoa{QTimeZone("Pacific/Apia")};

        // when
        const Shape shape(monthGrid({2011, 12, 1}, samoa));

        // then
        QCOMPARE(shape.leading, 3);
        QCOMPARE(shape.days.size(), 30);
        QVERIFY(!shape.days.contains(QDate(2011, 12, 30)));
        QCOMPARE(shape.days.last(), QDate(2011, 12, 31));
        QCOMPARE(shape.count, 35);
    }

    void shouldKeepADayWhoseMidnightTheClockJumpsOver()
    {
        // In São Paulo, summer time began at midnight.
        const Shape shape(monthGrid({2018, 11, 1}, Calendar(QTimeZone("America/Sao_Paulo"))));
        QCOMPARE(shape.days.size(), 30);
        QVERIFY(shape.days.contains(QDate(2018, 11, 4)));
    }

    void shouldBeEmptyWithoutAMonth() { QVERIFY(monthGrid({}, utc).empty()); }
};

QTEST_GUILESS_MAIN(TestMonthGrid)
#include "tst_monthgrid.moc"
