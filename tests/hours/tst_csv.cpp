#include "hours/csv.h"
#include "written.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
QString csvOf(const QList<Key> &keys, const QList<RecordedTask> &tasks)
{
    Report report(keys);
    for (const RecordedTask &task : tasks)
        report.add(task);
    return written([&](TextWriter &writer) { writeCsv(report, writer); });
}
} // namespace

class TestCsv : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shouldBeForADanishSpreadsheet()
    {
        QCOMPARE(csvOf({Key::ProjectCode, Key::Day}, {{{2026, 11, 2}, u"4711"_s, u"x"_s, 5400},
                                                      {{2026, 11, 2}, {}, u"x"_s, 360}}),
                 u"\ufeffProjektkode;Dag;Faktisk;Fakturerbar\r\n"
                 "4711;2026-11-02;\"1,50\";\"1,50\"\r\n"
                 "Uden projektkode;2026-11-02;\"0,10\";\"0,25\"\r\n"
                 "I alt;;\"1,60\";\"1,75\"\r\n"_s);
    }

    void shouldHaveTheSumAloneWithoutTasks()
    {
        QCOMPARE(csvOf({Key::Task}, {}),
                 u"\ufeffOpgave;Faktisk;Fakturerbar\r\nI alt;\"0,00\";\"0,00\"\r\n"_s);
    }

    void shouldQuoteWhatWouldEndACell_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("cell");

        QTest::newRow("nothing") << u"a b.c"_s << u"a b.c"_s;
        QTest::newRow("a semicolon") << u"a;b"_s << u"\"a;b\""_s;
        QTest::newRow("a comma") << u"a,b"_s << u"\"a,b\""_s;
        QTest::newRow("a tab") << u"a\tb"_s << u"\"a\tb\""_s;
        QTest::newRow("quotes") << u"a \"b\""_s << u"\"a \"\"b\"\"\""_s;
        QTest::newRow("a line break") << u"a\nb"_s << u"\"a\nb\""_s;
        QTest::newRow("a carriage return") << u"a\rb"_s << u"\"a\rb\""_s;
    }
    void shouldQuoteWhatWouldEndACell()
    {
        QFETCH(QString, name);
        QFETCH(QString, cell);
        QVERIFY(csvOf({Key::Task}, {{{2026, 11, 2}, {}, name, 0}})
                    .contains(u"\r\n"_s + cell + u";\"0,00\";\"0,00\"\r\n"_s));
    }

    void shouldMakeHarmlessWhatASpreadsheetWouldReckon_data()
    {
        QTest::addColumn<QString>("name");
        QTest::addColumn<QString>("cell");

        QTest::newRow("=") << u"=1+1"_s << u"'=1+1"_s;
        QTest::newRow("+") << u"+1"_s << u"'+1"_s;
        QTest::newRow("-") << u"-1"_s << u"'-1"_s;
        QTest::newRow("@") << u"@SUM(A1)"_s << u"'@SUM(A1)"_s;
        QTest::newRow("a tab") << u"\t=1"_s << u"\"'\t=1\""_s;
        QTest::newRow("in quotes") << u"=A1;B1"_s << u"\"'=A1;B1\""_s;
        QTest::newRow("only at the start") << u"1=1"_s << u"1=1"_s;
    }
    void shouldMakeHarmlessWhatASpreadsheetWouldReckon()
    {
        QFETCH(QString, name);
        QFETCH(QString, cell);
        QVERIFY(csvOf({Key::Task}, {{{2026, 11, 2}, {}, name, 0}})
                    .contains(u"\r\n"_s + cell + u";\"0,00\";\"0,00\"\r\n"_s));
        QVERIFY(csvOf({Key::ProjectCode}, {{{2026, 11, 2}, name, u"x"_s, 0}})
                    .contains(u"\r\n"_s + cell + u";\"0,00\";\"0,00\"\r\n"_s));
    }

    void shouldKeepANegativeNumberANumber()
    {
        QVERIFY(csvOf({Key::Task}, {{{2026, 11, 2}, {}, u"x"_s, -3600}})
                    .contains(u"\r\nx;\"-1,00\";\"0,00\"\r\n"_s));
    }
};

QTEST_GUILESS_MAIN(TestCsv)
#include "tst_csv.moc"
