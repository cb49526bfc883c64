#include "../support/teststore.h"
#include "model/periodreading.h"
#include "model/projectcode.h"

#include <SQLiteCpp/Database.h>

#include <QTest>

#include <algorithm>
#include <random>

using namespace Qt::StringLiterals;

namespace
{

/// All slices end after one task.
SaveDelays oneByOne()
{
    SaveDelays delays;
    delays.slice = std::chrono::milliseconds(0);
    return delays;
}

QString line(const RecordedTask &task)
{
    return task.day.toString(Qt::ISODate) + u' ' + task.name + u' ' +
           task.projectCode.value_or(u"-"_s) + u' ' + QString::number(task.seconds);
}

QStringList linesOf(RecordedPeriod &&period)
{
    QStringList lines;
    period.deliver([&lines](const RecordedTask &task) { lines << line(task); });
    return lines;
}

} // namespace

class TestPeriodReading : public QObject
{
    Q_OBJECT

private:
    FakeClock m_clock;

    DayInterval period(int days) const
    {
        const QDate today = m_clock.calendar().dayOf(m_clock.now());
        return m_clock.calendar().interval(today, today.addDays(days - 1));
    }

    /// What there is in @p period by the objects that the context makes.
    QStringList expected(TestStore &store, const DayInterval &period) const
    {
        std::vector<RecordedTask> tasks;
        for (const Record *record : store.context().fetch(Task::type, tasksOnDay(period))) {
            const auto *const task = static_cast<const Task *>(record);
            tasks.push_back({m_clock.calendar().dayOf(task->date()), task->projectCode(),
                             task->name(), task->currentTotalSeconds()});
        }
        std::stable_sort(
            tasks.begin(), tasks.end(),
            [](const RecordedTask &a, const RecordedTask &b) { return a.day < b.day; });
        QStringList lines;
        std::transform(tasks.begin(), tasks.end(), std::back_inserter(lines), line);
        return lines;
    }

private Q_SLOTS:
    void init() { m_clock.set(u"2026-11-20T08:00:00"_s); }

    void shouldReadOneTaskASliceIfThereIsNoTime()
    {
        // given
        TestStore store(m_clock, oneByOne());
        for (const auto *name : {"a", "b", "c"})
            store.insertTask(QString::fromLatin1(name));
        store.reopen();
        PeriodReading reading(store.context(), period(1));

        // when
        int slices = 0;
        QList<qint64> counts;
        while (!reading.goOn()) {
            ++slices;
            counts << reading.count();
        }

        // then
        QCOMPARE(counts, QList<qint64>({1, 2, 3}));
        QCOMPARE(reading.characters(), 3);
        QCOMPARE(linesOf(reading.take()), QStringList({u"2026-11-20 a - 0"_s, u"2026-11-20 b - 0"_s,
                                                       u"2026-11-20 c - 0"_s}));
    }

    void shouldMakeNoObjects()
    {
        // given
        TestStore store(m_clock);
        store.insertTask(u"a"_s);
        store.reopen();
        PeriodReading reading(store.context(), period(1));

        // when
        while (!reading.goOn())
            continue;

        // then
        QCOMPARE(linesOf(reading.take()).size(), 1);
        QVERIFY(store.context().inMemory(Task::type, allRecords()).isEmpty());
    }

    void shouldCountWhatIsUnsaved()
    {
        // given
        TestStore store(m_clock, oneByOne());
        Task *const edited = store.insertTask(u"edited"_s);
        Task *const removed = store.insertTask(u"removed"_s);
        Task *const moved = store.insertTask(u"moved"_s);
        Task *const started = store.insertTask(u"started"_s);
        QVERIFY(store.context().save());
        edited->setName(u"anders"_s);
        edited->setProjectCode(u"X"_s);
        store.context().remove(removed);
        moved->setDate(m_clock.now() + 3 * 24 * 3600);
        started->start();
        store.insertTask(u"new"_s);
        m_clock.advance(90);

        // when
        PeriodReading reading(store.context(), period(1));
        while (!reading.goOn())
            continue;

        // then
        QCOMPARE(linesOf(reading.take()),
                 QStringList({u"2026-11-20 anders X 0"_s, u"2026-11-20 started - 90"_s,
                              u"2026-11-20 new - 0"_s}));
        QVERIFY(store.context().hasChanges());
    }

    void shouldCountNeitherOtherRecordsNorATaskThatComesAndGoes()
    {
        // given
        TestStore store(m_clock, oneByOne());
        store.insertTask(u"a"_s);
        QVERIFY(store.context().save());
        PeriodReading reading(store.context(), period(1));
        while (!reading.goOn())
            continue;

        // when
        store.context().remove(store.insert<ProjectCode>(u"X"_s, u"x"_s));
        store.context().remove(store.insertTask(u"b"_s));

        // then
        QCOMPARE(linesOf(reading.take()), QStringList{u"2026-11-20 a - 0"_s});
    }

    void shouldNotCountRowsAsRemovedThatAreGivenAgain()
    {
        // given
        TestStore store(m_clock, oneByOne());
        store.insertTask(u"first"_s);
        Task *const last = store.insertTask(u"last"_s);
        QVERIFY(store.context().save());
        PeriodReading reading(store.context(), period(1));
        while (!reading.goOn())
            continue;

        // when
        store.context().remove(last);
        QVERIFY(store.context().save());
        store.insertTask(u"next"_s);
        QVERIFY(store.context().save());

        // then
        QCOMPARE(linesOf(reading.take()),
                 QStringList({u"2026-11-20 first - 0"_s, u"2026-11-20 next - 0"_s}));
    }

    void shouldLoseNothingAndRepeatNothing_data()
    {
        QTest::addColumn<unsigned>("seed");
        for (unsigned seed = 1; seed <= 40; ++seed)
            QTest::addRow("seed %u", seed) << seed;
    }
    void shouldLoseNothingAndRepeatNothing()
    {
        QFETCH(unsigned, seed);

        // given
        std::mt19937 random(seed);
        const auto below = [&random](int limit) {
            return static_cast<int>(random() % static_cast<unsigned>(limit));
        };
        TestStore store(m_clock, oneByOne());
        int made = 0;
        const auto insertOne = [&] {
            store.insert<Task>(
                QString::number(++made), m_clock.today() + (below(6) - 1) * 24 * 3600.0 + 3600,
                below(2) != 0 ? std::optional(u"K%1"_s.arg(below(3))) : std::nullopt, 0);
        };
        for (int i = 0; i < 40; ++i)
            insertOne();
        store.reopen();
        const auto anyTask = [&]() -> Task * {
            const QList<Record *> all = store.context().fetch(Task::type, allRecords());
            return all.isEmpty() ? nullptr
                                 : static_cast<Task *>(all.at(below(static_cast<int>(all.size()))));
        };
        const auto change = [&] {
            switch (below(7)) {
            case 0:
                insertOne();
                break;
            case 1:
                if (Task *task = anyTask())
                    store.context().remove(task);
                break;
            case 2:
                if (Task *task = anyTask())
                    task->setDate(m_clock.today() + (below(6) - 1) * 24 * 3600.0 + 3600);
                break;
            case 3:
                if (Task *task = anyTask())
                    task->setName(task->name() + u'x');
                break;
            case 4:
                if (Task *task = anyTask())
                    task->isRunning() ? task->stop() : task->start();
                break;
            default:
                QVERIFY(store.context().save());
            }
            m_clock.advance(1.5);
        };
        for (int i = 0; i < 5; ++i)
            change();

        // when
        PeriodReading reading(store.context(), period(4));
        for (bool isDone = false; !isDone; isDone = reading.goOn()) {
            if (below(3) == 0)
                change();
        }
        for (int i = 0; i < 3; ++i)
            change();

        // then
        const QStringList told = linesOf(reading.take());
        QVERIFY(told.size() > 5);
        QCOMPARE(told, expected(store, period(4)));
    }

    void shouldBeOfOneMoment()
    {
        // given
        TestStore store(m_clock);
        Task *const task = store.insertTask(u"a"_s);
        task->start();
        m_clock.advance(10);
        PeriodReading reading(store.context(), period(1));
        while (!reading.goOn())
            continue;
        RecordedPeriod read = reading.take();

        // when
        m_clock.advance(1000);
        task->setName(u"later"_s);

        // then
        QCOMPARE(linesOf(std::move(read)), QStringList{u"2026-11-20 a - 10"_s});
    }

    void shouldRefuseATimeThatCannotBeAddedUp()
    {
        // given
        TestStore store(m_clock);
        Task *const task = store.insertTask(u"a"_s);
        task->setAccumulatedSeconds(std::numeric_limits<qint64>::max());
        task->start();
        m_clock.advance(1);
        QVERIFY(store.context().save());
        PeriodReading reading(store.context(), period(1));
        while (!reading.goOn())
            continue;

        // when
        std::string said;
        try {
            linesOf(reading.take());
        } catch (const StoreError &error) {
            said = error.what();
        }
        task->setAccumulatedSeconds(0);

        // then
        QVERIFY(QByteArrayView(said).startsWith(
            "Integer overflow: the sum does not fit in 64 bits\nThe time of the task \"a\""));
        QVERIFY(said.find(store.path().toStdString()) != std::string::npos);
    }

    void shouldFailIfTheStoreCannotBeRead()
    {
        // given
        TestStore store(m_clock, oneByOne());
        store.insertTask(u"a"_s);
        QVERIFY(store.context().save());
        PeriodReading reading(store.context(), period(1));

        // when
        store.context().database().exec("ALTER TABLE Task RENAME TO Other");

        // then
        const auto readAll = [&reading] {
            while (!reading.goOn())
                continue;
        };
        QVERIFY_THROWS_EXCEPTION(StoreError, readAll());
        store.context().database().exec("ALTER TABLE Other RENAME TO Task");
    }
};

QTEST_GUILESS_MAIN(TestPeriodReading)
#include "tst_periodreading.moc"
