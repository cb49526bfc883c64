#include "../support/fakeclock.h"
#include "model/recordtable.h"
#include "model/taskreading.h"

#include <SQLiteCpp/Database.h>
#include <sqlite3.h>

#include <QTest>

#include <algorithm>
#include <memory>

using namespace Qt::StringLiterals;

namespace
{

/// "2026-11-20 name 12", or "2026-11-20 [code] name 12".
QString line(const RecordedTask &task)
{
    return task.day.toString(Qt::ISODate) +
           (task.projectCode ? u" ["_s + *task.projectCode + u']' : QString()) + u' ' + task.name +
           u' ' + QString::number(task.seconds);
}

void ignoreFault(const char *, const Task::Values &) {}

} // namespace

class TestTaskReading : public QObject
{
    Q_OBJECT

private:
    std::unique_ptr<SQLite::Database> m_database;

    void insert(const Task::Values &values)
    {
        const FakeClock clock;
        SQLite::Statement insertion(*m_database, recordTable(RecordType::Task).insert);
        recordTable(RecordType::Task).bind(insertion, Task(clock, values));
        insertion.exec();
    }
    void insert(const QString &name, Instant date)
    {
        Task::Values values;
        values.name = name;
        values.date = date;
        insert(values);
    }

    /// What a reading hands over, with all slices of no time; each slice ends with "|".
    QString read(const DayInterval &period)
    {
        TaskReading reading(*m_database, period);
        QString names;
        for (bool isDone = false; !isDone; names += u'|')
            isDone = reading.goOn(std::chrono::nanoseconds(0), [&names](StoredTask &&task) {
                names += task.values.name + QString::number(task.rowid) + u' ';
            });
        return names;
    }

    static StoredTask stored(qint64 rowid, const QString &name, Instant date)
    {
        StoredTask task;
        task.rowid = rowid;
        task.values.name = name;
        task.values.date = date;
        return task;
    }

    static QStringList daysOf(const Calendar &calendar, Instant now,
                              const std::vector<StoredTask> &tasks)
    {
        QStringList lines;
        RecordedDays days(
            calendar, now, [&lines](const RecordedTask &task) { lines << line(task); },
            ignoreFault);
        for (const StoredTask &task : tasks)
            days.take(StoredTask(task));
        days.finish();
        return lines;
    }

private Q_SLOTS:
    void init()
    {
        m_database = std::make_unique<SQLite::Database>(":memory:", SQLite::OPEN_READWRITE |
                                                                        SQLite::OPEN_CREATE);
        m_database->exec(recordTable(RecordType::Task).create);
    }

    void shouldReadThePeriodByDatesAndRows()
    {
        // given
        insert(u"after"_s, 30);
        insert(u"c"_s, 20);
        insert(u"a"_s, 10);
        insert(u"b"_s, 10);
        insert(u"d"_s, 29.5);
        insert(u"before"_s, 9.5);

        // then
        QCOMPARE(read({10, 30}), u"a3 |b4 |c2 |d5 ||"_s);
    }

    void shouldReadNothingOfAnEmptyPeriod()
    {
        insert(u"a"_s, 10);
        QCOMPARE(read({11, 30}), u"|"_s);
        QCOMPARE(read({10, 10}), u"|"_s);
    }

    void shouldReadAllAtOnceWhereThereIsTime()
    {
        // given
        for (int i = 0; i < 100; ++i)
            insert(u"a"_s, i % 10);
        TaskReading reading(*m_database, {0, 10});
        int count = 0;

        // when
        const bool isDone =
            reading.goOn(std::chrono::hours(1), [&count](StoredTask &&) { ++count; });

        // then
        QVERIFY(isDone);
        QCOMPARE(count, 100);
    }

    void shouldGoStraightToItsPlaceAmongTasksOfOneDate()
    {
        // given
        for (int i = 0; i < 2000; ++i)
            insert(u"a"_s, 10);
        TaskReading reading(*m_database, {10, 30});
        int steps = 0;
        sqlite3_progress_handler(
            m_database->getHandle(), 1,
            [](void *count) {
                ++*static_cast<int *>(count);
                return 0;
            },
            &steps);

        // when
        int most = 0;
        for (bool isDone = false; !isDone; most = std::max(most, std::exchange(steps, 0)))
            isDone = reading.goOn(std::chrono::nanoseconds(0), [](StoredTask &&) {});

        // then a slice costs SQLite the same everywhere
        QVERIFY2(most < 100, qPrintable(QString::number(most)));
    }

    void shouldLetTheStoreBeChangedBetweenSlices()
    {
        // given
        for (const auto *name : {"a", "b", "c"})
            insert(QString::fromLatin1(name), 10);
        TaskReading reading(*m_database, {10, 30});
        QString names;
        const auto take = [&names](StoredTask &&task) { names += task.values.name; };
        QVERIFY(!reading.goOn(std::chrono::nanoseconds(0), take));

        // when
        m_database->exec("DELETE FROM Task WHERE name = 'b'");
        insert(u"d"_s, 20);

        // then
        QVERIFY(reading.goOn(std::chrono::hours(1), take));
        QCOMPARE(names, u"acd"_s);
    }

    void shouldOrderADayByItsRows()
    {
        // given a day in whose middle the user has travelled
        const FakeClock clock;
        const Instant day = clock.today();

        // then
        QCOMPARE(
            daysOf(clock.calendar(), clock.now(),
                   {stored(7, u"c"_s, day), stored(9, u"d"_s, day), stored(3, u"a"_s, day + 3600),
                    stored(5, u"b"_s, day + 7200), stored(1, u"next"_s, day + 24 * 3600)}),
            QStringList({u"2026-11-20 a 0"_s, u"2026-11-20 b 0"_s, u"2026-11-20 c 0"_s,
                         u"2026-11-20 d 0"_s, u"2026-11-21 next 0"_s}));
    }

    void shouldPutTasksIntoDaysAsTheWindowDoes_data()
    {
        QTest::addColumn<QByteArray>("zone");
        QTest::addColumn<QString>("middle");
        QTest::newRow("spring") << QByteArray("Europe/Copenhagen") << u"2026-03-29T12:00:00"_s;
        QTest::newRow("autumn") << QByteArray("Europe/Copenhagen") << u"2026-10-25T12:00:00"_s;
        QTest::newRow("no midnight") << QByteArray("America/Havana") << u"2026-03-08T12:00:00"_s;
        QTest::newRow("two midnights")
            << QByteArray("America/St_Johns") << u"2010-11-07T12:00:00"_s;
        QTest::newRow("no such day") << QByteArray("Pacific/Apia") << u"2011-12-31T12:00:00"_s;
    }
    void shouldPutTasksIntoDaysAsTheWindowDoes()
    {
        QFETCH(QByteArray, zone);
        QFETCH(QString, middle);

        // given a task for each quarter of an hour
        const FakeClock clock(middle, zone);
        const Calendar &calendar = clock.calendar();
        std::vector<StoredTask> tasks;
        for (int i = -200; i < 200; ++i)
            tasks.push_back(stored(i, QString::number(i), clock.now() + 900 * i));

        // when they come together, and each by itself
        QStringList lines = daysOf(calendar, clock.now(), tasks);
        for (const StoredTask &task : tasks)
            lines << daysOf(calendar, clock.now(), {task});

        // then each is in the day whose interval has it
        QCOMPARE(lines.size(), 2 * static_cast<qsizetype>(tasks.size()));
        for (const QString &line : lines) {
            const QStringList parts = line.split(u' ');
            const QDate day = QDate::fromString(parts.at(0), Qt::ISODate);
            const Instant date = clock.now() + 900 * parts.at(1).toInt();
            const std::optional<Instant> start = calendar.startOfDay(day);
            QVERIFY2(start && calendar.dayInterval(*start).contains(date), qPrintable(line));
        }
    }

    void shouldTakeMomentsBeyondTheCalendarForDays()
    {
        const FakeClock clock;
        QCOMPARE(daysOf(clock.calendar(), clock.now(),
                        {stored(2, u"b"_s, 1e300), stored(1, u"a"_s, 1e300),
                         stored(0, u"later"_s, 2e300)}),
                 QStringList({u" a 0"_s, u" b 0"_s, u" later 0"_s}));
    }

    void shouldCountRunningTasksUpToOneMoment()
    {
        // given
        const FakeClock clock;
        StoredTask running = stored(1, u"running"_s, clock.today());
        running.values.accumulatedSeconds = 100;
        running.values.lastStartTime = clock.now() - 10.75;
        running.values.projectCode = QString();
        StoredTask other = stored(2, u"other"_s, clock.today());
        other.values.accumulatedSeconds = 7;

        // then
        QCOMPARE(daysOf(clock.calendar(), clock.now(), {running, other}),
                 QStringList({u"2026-11-20 [] running 110"_s, u"2026-11-20 other 7"_s}));
    }

    void shouldTellOfATimeThatCannotBeAddedUp_data()
    {
        QTest::addColumn<qint64>("seconds");
        QTest::addColumn<double>("start");
        QTest::addColumn<QString>("fault");
        QTest::newRow("sum") << std::numeric_limits<qint64>::max() << 0.0
                             << u"Integer overflow: the sum does not fit in 64 bits"_s;
        QTest::newRow("run") << qint64{0} << -1e300
                             << u"Double value cannot be converted to Int because the result would "
                                "be greater than Int.max"_s;
    }
    void shouldTellOfATimeThatCannotBeAddedUp()
    {
        QFETCH(qint64, seconds);
        QFETCH(double, start);
        QFETCH(QString, fault);

        // given
        const FakeClock clock;
        StoredTask task = stored(1, u"a"_s, clock.today());
        task.values.accumulatedSeconds = seconds;
        task.values.lastStartTime = start;
        QStringList told;
        RecordedDays days(
            clock.calendar(), clock.now(),
            [&told](const RecordedTask &recorded) { told << line(recorded); },
            [&told](const char *why, const Task::Values &values) {
                told << values.name + u": "_s + QString::fromLatin1(why);
            });

        // when
        days.take(std::move(task));
        days.finish();

        // then
        QCOMPARE(told, QStringList{u"a: "_s + fault});
    }

    void shouldMakeTextsTellable_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<QString>("told");
        QTest::newRow("plain") << u"Møde på Ærø"_s << u"Møde på Ærø"_s;
        QTest::newRow("a pair") << QString::fromUtf8("\xF0\x9F\x8D\x8E")
                                << QString::fromUtf8("\xF0\x9F\x8D\x8E");
        QTest::newRow("NUL") << u"a"_s + QChar::Null + u'b' << u"a\uFFFDb"_s;
        QTest::newRow("half a pair") << u"a"_s + QChar(0xD83C) + u'b'
                                     << QString::fromUtf8((u"a"_s + QChar(0xD83C) + u'b').toUtf8());
    }
    void shouldMakeTextsTellable()
    {
        QFETCH(QString, text);
        QFETCH(QString, told);

        // given what was made up, and what the store keeps of it
        const FakeClock clock;
        StoredTask task = stored(1, text, clock.today());
        task.values.projectCode = text;
        insert(task.values);
        std::vector<StoredTask> tasks{task};
        TaskReading(*m_database, {0, 1e12})
            .goOn(std::chrono::hours(1),
                  [&tasks](StoredTask &&read) { tasks.push_back(std::move(read)); });

        // then
        const QString expected = u"2026-11-20 ["_s + told + u"] "_s + told + u" 0"_s;
        QCOMPARE(daysOf(clock.calendar(), clock.now(), tasks), QStringList({expected, expected}));
    }
};

QTEST_GUILESS_MAIN(TestTaskReading)
#include "tst_taskreading.moc"
