#include "hours/period.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestPeriod : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shouldTakeTheMonthOfADay()
    {
        QCOMPARE(monthOf(QDate(2026, 11, 22)), (Period{{2026, 11, 1}, {2026, 11, 30}}));
        QCOMPARE(monthOf(QDate(2028, 2, 29)), (Period{{2028, 2, 1}, {2028, 2, 29}}));
    }

    void shouldReadAMonth()
    {
        QCOMPARE(monthFrom(u"2026-10"), (Period{{2026, 10, 1}, {2026, 10, 31}}));
        QCOMPARE(monthFrom(u"2028-02"), (Period{{2028, 2, 1}, {2028, 2, 29}}));
    }

    void shouldReadAWeekFromMondayToSunday_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QDate>("first");

        QTest::newRow("in the year") << u"2026-W47"_s << QDate(2026, 11, 16);
        QTest::newRow("begins in the year before") << u"2026-W01"_s << QDate(2025, 12, 29);
        QTest::newRow("begins after New Year") << u"2027-W01"_s << QDate(2027, 1, 4);
        QTest::newRow("of a long year") << u"2026-W53"_s << QDate(2026, 12, 28);
    }
    void shouldReadAWeekFromMondayToSunday()
    {
        QFETCH(QString, text);
        QFETCH(QDate, first);
        QCOMPARE(weekFrom(text), (Period{first, first.addDays(6)}));
    }

    void shouldReadADay() { QCOMPARE(dayFrom(u"2026-11-22"), QDate(2026, 11, 22)); }

    void shouldNotReadWhatIsNoPeriod_data()
    {
        QTest::addColumn<QString>("text");

        const QStringList texts{
            u""_s,           u"2026"_s,        u"2026-1"_s,     u"2026-13"_s,
            u"2026-00"_s,    u"26-10"_s,       u"2026/10"_s,    u" 2026-10"_s,
            u"+026-10"_s,    u"0000-10"_s,     u"2026-W00"_s,   u"2026-W54"_s,
            u"2027-W53"_s,   u"2026-w47"_s,    u"2026W47"_s,    u"2026-W4"_s,
            u"0000-W10"_s,   u"9999-W53"_s,    u"2026-W 7"_s,   u"2026-02-29"_s,
            u"2026-11-31"_s, u"2026-11-1"_s,   u"20261122"_s,   u"22.11.2026"_s,
            u"0000-01-01"_s, u"2026-11-22 "_s, u"٢٠٢٦-١١-٢٢"_s, u"2026-11-22T00"_s};
        for (const QString &text : texts)
            QTest::newRow(qPrintable(u'"' + text + u'"')) << text;
    }
    void shouldNotReadWhatIsNoPeriod()
    {
        QFETCH(QString, text);
        QVERIFY(!dayFrom(text));
        QVERIFY(!monthFrom(text));
        QVERIFY(!weekFrom(text));
    }
};

QTEST_GUILESS_MAIN(TestPeriod)
#include "tst_period.moc"
