#include "model/durations.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestDurations : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shouldShowSecondsAsAClock_data()
    {
        QTest::addColumn<qint64>("seconds");
        QTest::addColumn<QString>("text");

        QTest::newRow("nothing") << Q_INT64_C(0) << u"00:00:00"_s;
        QTest::newRow("under a minute") << Q_INT64_C(59) << u"00:00:59"_s;
        QTest::newRow("one of each") << Q_INT64_C(3661) << u"01:01:01"_s;
        QTest::newRow("half a day") << Q_INT64_C(45296) << u"12:34:56"_s;
        QTest::newRow("more than a day") << Q_INT64_C(90000) << u"25:00:00"_s;
        QTest::newRow("a hundred hours") << Q_INT64_C(360000) << u"100:00:00"_s;
        QTest::newRow("negative") << Q_INT64_C(-3661) << u"-1:-1:-1"_s;
        QTest::newRow("a little negative") << Q_INT64_C(-5) << u"00:00:-5"_s;
    }
    void shouldShowSecondsAsAClock()
    {
        QFETCH(qint64, seconds);
        QTEST(clockText(seconds), "text");
    }

    void shouldRoundBillableHoursToQuartersWithFiveMinutesOfGrace_data()
    {
        QTest::addColumn<qint64>("seconds");
        QTest::addColumn<double>("hours");

        QTest::newRow("nothing") << Q_INT64_C(0) << 0.0;
        QTest::newRow("negative") << Q_INT64_C(-3600) << 0.0;
        QTest::newRow("a second") << Q_INT64_C(1) << 0.0;
        QTest::newRow("exactly 5 min") << Q_INT64_C(300) << 0.0;
        QTest::newRow("5 min and a second") << Q_INT64_C(301) << 0.25;
        QTest::newRow("5.5 min") << Q_INT64_C(330) << 0.25;
        QTest::newRow("a quarter") << Q_INT64_C(900) << 0.25;
        QTest::newRow("exactly 20 min") << Q_INT64_C(1200) << 0.25;
        QTest::newRow("20 min and a second") << Q_INT64_C(1201) << 0.5;
        QTest::newRow("exactly 35 min") << Q_INT64_C(2100) << 0.5;
        QTest::newRow("35 min and a second") << Q_INT64_C(2101) << 0.75;
        QTest::newRow("an hour") << Q_INT64_C(3600) << 1.0;
        QTest::newRow("65 min") << Q_INT64_C(3900) << 1.0;
        QTest::newRow("66 min") << Q_INT64_C(3960) << 1.25;
    }
    void shouldRoundBillableHoursToQuartersWithFiveMinutesOfGrace()
    {
        QFETCH(qint64, seconds);
        QTEST(roundedDecimalHours(seconds), "hours");
    }

    void shouldDivideSecondsIntoDecimalHours()
    {
        QCOMPARE(decimalHours(0), 0.0);
        QCOMPARE(decimalHours(5400), 1.5);
        QCOMPARE(decimalHours(-1800), -0.5);
    }

    void shouldShowHoursAsCDoesWithAFullStop_data()
    {
        QTest::addColumn<double>("hours");
        QTest::addColumn<QString>("text");

        QTest::newRow("nothing") << 0.0 << u"0.00"_s;
        QTest::newRow("quarters") << 7.25 << u"7.25"_s;
        // Halfway between two decimals: to the even one.
        QTest::newRow("450 s") << decimalHours(450) << u"0.12"_s;
        QTest::newRow("2250 s") << decimalHours(2250) << u"0.62"_s;
        QTest::newRow("no thousands separator") << 1234567.5 << u"1234567.50"_s;
        QTest::newRow("negative") << -1.5 << u"-1.50"_s;
    }
    void shouldShowHoursAsCDoesWithAFullStop()
    {
        QFETCH(double, hours);

        // given a locale that writes a comma
        QLocale::setDefault(QLocale(QLocale::Danish, QLocale::Denmark));

        // then
        QTEST(hoursText(hours), "text");
    }
};

QTEST_GUILESS_MAIN(TestDurations)
#include "tst_durations.moc"
