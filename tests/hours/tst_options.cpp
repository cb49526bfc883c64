#include "hours/options.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace
{
const QDate today(2026, 11, 22);

Options read(const QStringList &arguments)
{
    return optionsFrom(arguments, today);
}
} // namespace

class TestOptions : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shouldShowThisMonthByProjectCodeAsATable()
    {
        const Options options = read({});
        QCOMPARE(options.period, (Period{{2026, 11, 1}, {2026, 11, 30}}));
        QCOMPARE(options.keys, QList<Key>{Key::ProjectCode});
        QCOMPARE(options.format, Format::Table);
        QVERIFY(!options.wantsHelp);
    }

    void shouldTakeAPeriod()
    {
        QCOMPARE(read({u"--month"_s, u"2026-10"_s}).period,
                 (Period{{2026, 10, 1}, {2026, 10, 31}}));
        QCOMPARE(read({u"--week"_s, u"2026-W47"_s}).period,
                 (Period{{2026, 11, 16}, {2026, 11, 22}}));
        QCOMPARE(read({u"--to"_s, u"2026-11-22"_s, u"--from"_s, u"2026-11-03"_s}).period,
                 (Period{{2026, 11, 3}, {2026, 11, 22}}));
        QCOMPARE(read({u"--from"_s, u"2026-11-22"_s, u"--to"_s, u"2026-11-22"_s}).period,
                 (Period{{2026, 11, 22}, {2026, 11, 22}}));
    }

    void shouldTakeAValueBehindAnEqualsSign()
    {
        const Options options = read({u"--month=2026-10"_s, u"--by=day"_s, u"--format=csv"_s});
        QCOMPARE(options.period, (Period{{2026, 10, 1}, {2026, 10, 31}}));
        QCOMPARE(options.keys, QList<Key>{Key::Day});
        QCOMPARE(options.format, Format::Csv);
    }

    void shouldTakeKeysInTheirOrder()
    {
        QCOMPARE(read({u"--by"_s, u"task,code,day"_s}).keys,
                 (QList<Key>{Key::Task, Key::ProjectCode, Key::Day}));
    }

    void shouldTakeAFormat()
    {
        QCOMPARE(read({u"--format"_s, u"table"_s}).format, Format::Table);
        QCOMPARE(read({u"--format"_s, u"json"_s}).format, Format::Json);
    }

    void shouldTakeTheWishForHelp()
    {
        QVERIFY(read({u"--help"_s}).wantsHelp);
        QVERIFY(read({u"--by"_s, u"day"_s, u"-h"_s}).wantsHelp);
    }

    void shouldRefuseWrongUse_data()
    {
        QTest::addColumn<QStringList>("arguments");
        QTest::addColumn<QString>("reason");

        const auto add = [](const QString &arguments, const QString &reason) {
            QTest::newRow(qPrintable(arguments)) << arguments.split(u' ') << reason;
        };
        add(u"--year 2026"_s, u"ukendt valg \"--year\""_s);
        add(u"--Month 2026-10"_s, u"ukendt valg \"--Month\""_s);
        add(u"2026-10"_s, u"ukendt argument \"2026-10\""_s);
        add(u"--month"_s, u"--month mangler en værdi"_s);
        add(u"--month="_s, u"--month \"\" er ikke en måned som 2026-11"_s);
        add(u"--month 2026-13"_s, u"--month \"2026-13\" er ikke en måned som 2026-11"_s);
        add(u"--week 2026-W54"_s, u"--week \"2026-W54\" er ikke en uge som 2026-W47"_s);
        add(u"--from 1.11.2026 --to 2026-11-22"_s,
            u"--from \"1.11.2026\" er ikke en dag som 2026-11-22"_s);
        add(u"--from 2026-11-22 --to 2026-11-31"_s,
            u"--to \"2026-11-31\" er ikke en dag som 2026-11-22"_s);
        add(u"--from 2026-11-22 --to 2026-11-21"_s, u"--to ligger før --from"_s);
        add(u"--from 2026-11-22"_s, u"--from og --to skal bruges sammen"_s);
        add(u"--to 2026-11-22"_s, u"--from og --to skal bruges sammen"_s);
        add(u"--month 2026-10 --month 2026-11"_s, u"--month er angivet to gange"_s);
        add(u"--month 2026-10 --week 2026-W47"_s, u"--month og --week kan ikke bruges sammen"_s);
        add(u"--month 2026-10 --to 2026-11-22"_s,
            u"--from og --to kan ikke bruges sammen med --month eller --week"_s);
        add(u"--week 2026-W47 --from 2026-11-22"_s,
            u"--from og --to kan ikke bruges sammen med --month eller --week"_s);
        add(u"--by week"_s, u"--by \"week\" er ikke code, day eller task"_s);
        add(u"--by code,"_s, u"--by \"code,\" er ikke code, day eller task"_s);
        add(u"--by code,day,code"_s, u"--by nævner code to gange"_s);
        add(u"--format xml"_s, u"--format \"xml\" er ikke table, csv eller json"_s);
    }
    void shouldRefuseWrongUse()
    {
        QFETCH(QStringList, arguments);
        QFETCH(QString, reason);
        try {
            read(arguments);
            QFAIL("was taken");
        } catch (const UsageError &error) {
            QCOMPARE(QString::fromUtf8(error.what()), reason);
        }
    }

    void shouldNameEveryOptionInTheHelp()
    {
        for (const char *const option :
             {"--month", "--week", "--from", "--to", "--by", "--format", "--help"})
            QVERIFY2(helpText().contains(u"\n  "_s + QString::fromLatin1(option) + u' '), option);
        QVERIFY(helpText().startsWith(usageLine()));
    }
};

QTEST_GUILESS_MAIN(TestOptions)
#include "tst_options.moc"
