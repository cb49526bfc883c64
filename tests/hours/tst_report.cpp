#include "../support/teststore.h"
#include "hours/report.h"
#include "hours/storedtasks.h"
#include "hours/text.h"
#include "model/durations.h"
#include "views/day/footerviewmodel.h"

#include <QFile>
#include <QTest>

#include <random>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

RecordedTask task(int day, const std::optional<QString> &code, const QString &name, qint64 seconds)
{
    return {{2026, 11, day}, code, name, seconds};
}

Report reportOf(const QList<Key> &keys, const QList<RecordedTask> &tasks)
{
    Report report(keys);
    for (const RecordedTask &task : tasks)
        report.add(task);
    return report;
}

/// The rows in words: "day|code|name seconds".
QStringList linesOf(const Report &report)
{
    QStringList lines;
    for (const Report::Row *const row : report.rows()) {
        QStringList parts;
        for (const Key key : report.keys())
            parts.append(textOf(row->first, key));
        lines.append(parts.join(u'|') + u' ' + QString::number(row->second.seconds));
    }
    return lines;
}

/// The texts of rows that differ in nothing but their project code.
QStringList inOrder(const QStringList &codes)
{
    Report report({Key::ProjectCode});
    for (const QString &code : codes)
        report.add(task(1, code, u"a"_s, 1));
    QStringList texts;
    for (const Report::Row *const row : report.rows())
        texts.append(textOf(row->first, Key::ProjectCode));
    return texts;
}

} // namespace

class TestReport : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void shouldHaveNoRowsWithoutTasks()
    {
        const Report report({Key::Day});
        QVERIFY(report.rows().empty());
        QCOMPARE(report.total().seconds, 0);
        QCOMPARE(report.total().hours, 0.0);
    }

    void shouldAddUpByEachKey()
    {
        const QList<RecordedTask> tasks{
            task(2, u"A"_s, u"x"_s, 10),
            task(2, u"B"_s, u"x"_s, 20),
            task(2, std::nullopt, u"y"_s, 40),
            task(3, u"A"_s, u"x"_s, 80),
        };
        QCOMPARE(linesOf(reportOf({Key::ProjectCode}, tasks)),
                 (QStringList{u"A 90"_s, u"B 20"_s, u"Uden projektkode 40"_s}));
        QCOMPARE(linesOf(reportOf({Key::Day}, tasks)),
                 (QStringList{u"2026-11-02 70"_s, u"2026-11-03 80"_s}));
        QCOMPARE(linesOf(reportOf({Key::Task}, tasks)), (QStringList{u"x 110"_s, u"y 40"_s}));
        QCOMPARE(linesOf(reportOf({Key::ProjectCode, Key::Day}, tasks)),
                 (QStringList{u"A|2026-11-02 10"_s, u"A|2026-11-03 80"_s, u"B|2026-11-02 20"_s,
                              u"Uden projektkode|2026-11-02 40"_s}));
        QCOMPARE(linesOf(reportOf({Key::Task, Key::ProjectCode}, tasks)),
                 (QStringList{u"x|A 90"_s, u"x|B 20"_s, u"y|Uden projektkode 40"_s}));
    }

    void shouldRoundEachTaskByItself()
    {
        // Two tasks of six minutes are two quarters, and their sum would be one.
        const Report report =
            reportOf({Key::Day}, {task(2, {}, u"x"_s, 360), task(2, {}, u"x"_s, 360)});
        QCOMPARE(report.total().billableHours, 0.5);
        QCOMPARE(report.rows().front()->second.billableHours, 0.5);
        QCOMPARE(report.total().seconds, 720);
    }

    void shouldTellAnEmptyCodeFromNone()
    {
        QCOMPARE(linesOf(reportOf({Key::ProjectCode},
                                  {task(2, u""_s, u"x"_s, 1), task(2, {}, u"x"_s, 2)})),
                 (QStringList{u" 1"_s, u"Uden projektkode 2"_s}));
    }

    void shouldPutTasksWithoutANameLast()
    {
        QCOMPARE(linesOf(reportOf({Key::Task}, {task(2, {}, u""_s, 1), task(2, {}, u"z"_s, 2)})),
                 (QStringList{u"z 2"_s, u"Unavngivet opgave 1"_s}));
    }

    void shouldTakeIdenticalTextsAloneForOne()
    {
        // The last two look the same, and a dictionary has them in one place.
        QCOMPARE(inOrder({u"a"_s, u"A"_s, u"a "_s, u"\u00e9"_s, u"e\u0301"_s, u"a"_s}).size(), 5);
    }

    void shouldKeepTheLinesOfATextTogether()
    {
        // Beside one that a dictionary has in the same place.
        const QString composed = u"\u00e9"_s;
        const QString decomposed = u"e\u0301"_s;
        QCOMPARE(linesOf(reportOf({Key::ProjectCode, Key::Day},
                                  {task(1, composed, u"x"_s, 1), task(2, decomposed, u"x"_s, 2),
                                   task(3, composed, u"x"_s, 4), task(4, decomposed, u"x"_s, 8)})),
                 (QStringList{decomposed + u"|2026-11-02 2"_s, decomposed + u"|2026-11-04 8"_s,
                              composed + u"|2026-11-01 1"_s, composed + u"|2026-11-03 4"_s}));
    }

    void shouldOrderTextsAsADanishDictionaryDoes()
    {
        const QStringList ordered{u"10"_s,   u"2"_s,    u"Abe"_s, u"Ø"_s,  u"and"_s,
                                  u"zone"_s, u"æble"_s, u"ål"_s,  u"øre"_s};
        QStringList expected{u"10"_s,   u"2"_s, u"Abe"_s, u"and"_s, u"zone"_s,
                             u"æble"_s, u"Ø"_s, u"øre"_s, u"ål"_s};
        QCOMPARE(inOrder(ordered), expected);
    }

    void shouldEqualTheWindowsFooterOnAnyDay()
    {
        // given
        constexpr int days = 10'000;
        constexpr int daysAtOnce = 250;
        FakeClock clock;
        TestStore store(clock, {1h, 1h});
        std::mt19937 random(20261122);
        const auto upTo = [&random](int most) {
            return std::uniform_int_distribution<int>(0, most)(random);
        };
        const QDate first(2000, 1, 1);
        QHash<QDate, std::pair<QString, QString>> footers;
        for (int day = 0; day < days; ++day) {
            if (day % daysAtOnce == 0) {
                // So that the store's memory has few days at once.
                QVERIFY(store.context().save());
                store.reopen();
            }
            const Instant start = *clock.calendar().startOfDay(first.addDays(day));
            for (int i = upTo(7); i >= 0; --i) {
                auto *const task = store.insert<Task>(u"a"_s, start, std::nullopt);
                // Sums that lie just between two texts of two decimals are frequent.
                task->setAccumulatedSeconds(upTo(1) == 0 ? upTo(30'000) : 18LL * upTo(1'000));
            }
            TimerManager timer(clock, 1h);
            const DayTasks tasks(store.context(), clock.calendar().dayInterval(start));
            const FooterViewModel footer(timer, tasks);
            timer.setShowBillableTime(false);
            const QString hours = footer.totalHoursText();
            timer.setShowBillableTime(true);
            footers.insert(first.addDays(day), {hours, footer.totalHoursText()});
        }
        store.close();

        // when
        Report report({Key::Day});
        readStoredTasks(QFile::encodeName(store.path()).toStdString(),
                        {first, first.addDays(days - 1)}, clock.calendar(), clock.now(),
                        [&report](const RecordedTask &task) { report.add(task); });

        // then
        QCOMPARE(report.rows().size(), static_cast<std::size_t>(days));
        for (const Report::Row *const row : report.rows()) {
            const auto &[hours, billableHours] = footers.value(row->first.day);
            QCOMPARE(hoursText(row->second.hours) + u" t"_s, hours);
            QCOMPARE(hoursText(row->second.billableHours) + u" t"_s, billableHours);
        }
    }
};

QTEST_GUILESS_MAIN(TestReport)
#include "tst_report.moc"
