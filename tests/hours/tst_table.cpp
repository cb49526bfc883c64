#include "hours/table.h"
#include "written.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
QString tableOf(const QList<Key> &keys, const QList<RecordedTask> &tasks, const Screen &screen = {})
{
    Report report(keys);
    for (const RecordedTask &task : tasks)
        report.add(task);
    return written([&](TextWriter &writer) { writeTable(report, screen, writer); });
}

RecordedTask named(const QString &name, qint64 seconds = 3600)
{
    return {{2026, 11, 2}, {}, name, seconds};
}
} // namespace

class TestTable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shouldAlignTextsLeftAndFiguresRight()
    {
        QCOMPARE(tableOf({Key::ProjectCode, Key::Day},
                         {{{2026, 11, 2}, u"A"_s, u"x"_s, 360'000}, {{2026, 11, 2}, {}, {}, 360}}),
                 u"Projektkode       Dag         Faktisk  Fakturerbar\n"
                 "A                 2026-11-02   100,00       100,00\n"
                 "Uden projektkode  2026-11-02     0,10         0,25\n"
                 "I alt                          100,10       100,25\n"_s);
    }

    void shouldHaveTheSumAloneWithoutTasks()
    {
        QCOMPARE(tableOf({Key::Task}, {}), u"Opgave  Faktisk  Fakturerbar\n"
                                           "I alt      0,00         0,00\n"_s);
    }

    void shouldMakeRoomForFiguresWiderThanTheirTitle()
    {
        QCOMPARE(tableOf({Key::Task}, {named(u"x"_s, 36'000'000'000)}),
                 u"Opgave      Faktisk  Fakturerbar\n"
                 "x       10000000,00  10000000,00\n"
                 "I alt   10000000,00  10000000,00\n"_s);
    }

    void shouldCountCells_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<int>("cells");

        QTest::newRow("letters") << u"æøå"_s << 3;
        QTest::newRow("wide letters") << u"日本語"_s << 6;
        QTest::newRow("a full-width letter") << u"Ａ"_s << 2;
        QTest::newRow("beyond the first plane") << u"😀"_s << 2;
        QTest::newRow("a combining accent") << u"e\u0301"_s << 1;
        QTest::newRow("nothing") << u""_s << 0;
    }
    void shouldCountCells()
    {
        QFETCH(QString, text);
        QFETCH(int, cells);
        QCOMPARE(cellsOf(text), cells);
    }

    void shouldAlignWideCharacters()
    {
        QCOMPARE(tableOf({Key::Task}, {named(u"日本語日本"_s), named(u"e\u0301"_s)}),
                 u"Opgave      Faktisk  Fakturerbar\n"
                 "e\u0301              1,00         1,00\n"
                 "日本語日本     1,00         1,00\n"
                 "I alt          2,00         2,00\n"_s);
    }

    void shouldKeepALineALineAndObeyNothing()
    {
        // Line breaks, an escape sequence, and one that turns the order of letters.
        QCOMPARE(tableOf({Key::Task}, {named(u"a\r\nb\u2028c\x1b[2Jd\u202ee\u009bf"_s)}),
                 u"Opgave           Faktisk  Fakturerbar\n"
                 "a  b c [2Jd e f     1,00         1,00\n"
                 "I alt               1,00         1,00\n"_s);
    }

    void shouldShortenTheWidestTextsToFitTheScreen()
    {
        QCOMPARE(tableOf({Key::Day, Key::Task}, {named(u"en lang opgave med mange ord"_s)}, {50}),
                 u"Dag         Opgave            Faktisk  Fakturerbar\n"
                 "2026-11-02  en lang opgave …     1,00         1,00\n"
                 "I alt                            1,00         1,00\n"_s);
    }

    void shouldNotCutAWideCharacterInHalf()
    {
        QCOMPARE(tableOf({Key::Task}, {named(u"日本語日本語日本語"_s)}, {32}),
                 u"Opgave      Faktisk  Fakturerbar\n"
                 "日本語日…      1,00         1,00\n"
                 "I alt          1,00         1,00\n"_s);
    }

    void shouldNeverShortenInAPipe()
    {
        const QString name(10'000, u'x');
        QVERIFY(tableOf({Key::Task}, {named(name)}).contains(u'\n' + name + u"     1,00"_s));
    }

    void shouldMakeHeadingAndSumBoldWhereThatIsKnown()
    {
        QCOMPARE(tableOf({Key::Task}, {named(u"x"_s)}, {80, true}),
                 u"\x1b[1mOpgave  Faktisk  Fakturerbar\x1b[0m\n"
                 "x          1,00         1,00\n"
                 "\x1b[1mI alt      1,00         1,00\x1b[0m\n"_s);
    }
};

QTEST_GUILESS_MAIN(TestTable)
#include "tst_table.moc"
