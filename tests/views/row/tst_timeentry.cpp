#include "views/row/timeentry.h"

#include <QTest>

using namespace Qt::StringLiterals;

class TestTimeEntry : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shouldReadSeconds_data()
    {
        QTest::addColumn<QString>("entry");
        QTest::addColumn<qint64>("seconds");

        const auto row = [](const char *name, const QString &entry, qint64 seconds) {
            QTest::newRow(name) << entry << seconds;
        };
        row("hours, minutes, seconds", u"1:30:15"_s, 5415);
        row("hours and minutes", u"1:30"_s, 5400);
        row("minutes", u"45"_s, 2700);
        row("blanks around", u"  2:00\t"_s, 7200);
        row("no-break spaces around", u"\u00a02:00\u00a0"_s, 7200);
        row("nothing", u""_s, 0);
        row("blanks alone", u"  "_s, 0);
        row("letters", u"abc"_s, 0);
        row("four parts", u"1:2:3:4"_s, 0);
        row("a part that is no number", u"1:xx:30"_s, 5400);
        row("a decimal point", u"1.5"_s, 0);
        row("a decimal comma", u"1,5"_s, 0);
        row("negative", u"-10"_s, -600);
        row("negative minutes", u"0:-10"_s, -600);
        row("negative in sum positive", u"1:-10"_s, 3000);
        row("a plus sign", u"+5"_s, 300);
        row("two signs", u"+-5"_s, 0);
        row("a sign alone", u"-"_s, 0);
        row("minutes over 59", u"0:90"_s, 5400);
        row("seconds over 59", u"0:0:90"_s, 90);
        row("two colons together", u"1::30"_s, 5400);
        row("colons at the ends", u":1:30:"_s, 5400);
        row("colons alone", u":::"_s, 0);
        row("a blank inside a part", u"1: 30"_s, 60);
        row("a line break around", u"\n45"_s, 0);
        row("a number that does not fit", u"99999999999999999999:5"_s, 300);
        row("digits of another script", u"\u0661"_s, 0);
        row("leading zeros", u"007"_s, 420);
        row("five parts, three of them numbers", u"a:1:b:2:3"_s, 3723);
    }
    void shouldReadSeconds()
    {
        QFETCH(QString, entry);
        QTEST(secondsOfTimeEntry(entry), "seconds");
    }
};

QTEST_GUILESS_MAIN(TestTimeEntry)
#include "tst_timeentry.moc"
