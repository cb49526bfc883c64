#include "../support/teststore.h"
#include "model/tasklist.h"
#include "model/tasktemplate.h"

#include <SQLiteCpp/Database.h>

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class TestLiveQuery : public QObject
{
    Q_OBJECT

private:
    FakeClock m_clock;

    RecordFilter today() const { return tasksOnDay(m_clock.calendar().dayInterval(m_clock.now())); }

private Q_SLOTS:
    void shouldYieldTheTasksOfOneDayInTheStoresOrder()
    {
        // given
        TestStore store(m_clock);
        const Instant noon = m_clock.now();
        Task *const first = store.insert<Task>(u"a"_s, noon, std::nullopt, 2);
        store.insert<Task>(u"i går"_s, noon - 86400, std::nullopt);
        Task *const second = store.insert<Task>(u"b"_s, noon, std::nullopt, 1);
        store.insert<Task>(u"i morgen"_s, noon + 86400, std::nullopt);

        // when
        LiveQuery<Task> query(store.context(), today(), QueryOrder::Store);

        // then
        QCOMPARE(query.results(), (QList<Task *>{first, second}));

        // when
        QVERIFY(store.context().save());
        LiveQuery<Task> again(store.context(), today(), QueryOrder::Store);

        // then
        QCOMPARE(again.results(), (QList<Task *>{first, second}));
    }

    void shouldSortBySortOrderAndKeepEqualOnesInTheStoresOrder()
    {
        // given
        TestStore store(m_clock);
        Task *const c = store.insertTask(u"c"_s, 2);
        Task *const a = store.insertTask(u"a"_s, 0);
        Task *const d = store.insertTask(u"d"_s, 2);
        Task *const b = store.insertTask(u"b"_s, 1);

        // when
        LiveQuery<Task> query(store.context(), allRecords(), QueryOrder::SortOrder);

        // then
        QCOMPARE(query.results(), (QList<Task *>{a, b, c, d}));

        // when
        d->setSortOrder(-1);

        // then
        QCOMPARE(query.results(), (QList<Task *>{d, a, b, c}));

        // when
        Task *const e = store.insertTask(u"e"_s, 0);

        // then
        QCOMPARE(query.results(), (QList<Task *>{d, a, e, b, c}));
    }

    void shouldTellOfWhatComesGoesAndChanges()
    {
        // given
        TestStore store(m_clock);
        LiveQuery<Task> query(store.context(), today(), QueryOrder::Store);
        QVERIFY(query.results().isEmpty());
        QSignalSpy changed(&query, &RecordQuery::changed);

        // when a task comes
        Task *const task = store.insertTask(u"a"_s);

        // then
        QCOMPARE(changed.count(), 1);
        QCOMPARE(query.results(), QList<Task *>{task});

        // when it changes
        task->setName(u"A"_s);

        // then
        QCOMPARE(changed.count(), 2);

        // when it leaves the day
        task->setDate(m_clock.now() + 86400);

        // then
        QCOMPARE(changed.count(), 3);
        QVERIFY(query.results().isEmpty());

        // when it changes on another day
        task->setName(u"i morgen"_s);

        // then
        QCOMPARE(changed.count(), 3);

        // when it comes back to the day
        task->setDate(m_clock.now());

        // then
        QCOMPARE(changed.count(), 4);
        QCOMPARE(query.results(), QList<Task *>{task});

        // when it is deleted
        store.context().remove(task);

        // then
        QCOMPARE(changed.count(), 5);
        QVERIFY(query.results().isEmpty());
    }

    void shouldNotTellOfOtherTypesOrOtherDays()
    {
        // given
        TestStore store(m_clock);
        LiveQuery<Task> query(store.context(), today(), QueryOrder::Store);
        QVERIFY(query.results().isEmpty());
        QSignalSpy changed(&query, &RecordQuery::changed);

        // when
        Task *const other = store.insert<Task>(u"i går"_s, m_clock.now() - 86400, std::nullopt);
        other->setName(u"stadig i går"_s);
        store.context().remove(other);
        store.context().remove(store.insert<TaskTemplate>(u"i dag"_s, 0));

        // then
        QCOMPARE(changed.count(), 0);
    }

    void shouldTellOfARemovalBeforeItHasBeenAsked()
    {
        // given
        TestStore store(m_clock);
        Task *const other = store.insert<Task>(u"i går"_s, m_clock.now() - 86400, std::nullopt);
        Task *const task = store.insertTask(u"i dag"_s);
        QVERIFY(store.context().save());
        LiveQuery<Task> query(store.context(), today(), QueryOrder::Store);
        QSignalSpy changed(&query, &RecordQuery::changed);

        // when
        store.context().remove(other);

        // then
        QCOMPARE(changed.count(), 0);

        // when
        store.context().remove(task);

        // then
        QCOMPARE(changed.count(), 1);
    }

    void shouldPutATaskThatMovesToTheDayInItsPlace()
    {
        // given
        TestStore store(m_clock);
        Task *const early = store.insert<Task>(u"i går"_s, m_clock.now() - 86400, std::nullopt);
        Task *const late = store.insertTask(u"i dag"_s);
        LiveQuery<Task> query(store.context(), today(), QueryOrder::Store);
        QCOMPARE(query.results(), QList<Task *>{late});
        QVERIFY(store.context().save());

        // when
        early->setDate(m_clock.now());

        // then
        QCOMPARE(query.results(), (QList<Task *>{early, late}));
    }

    void shouldAskForAnotherDayWhenItsFilterChanges()
    {
        // given
        TestStore store(m_clock);
        store.insertTask(u"i dag"_s);
        Task *const yesterday = store.insert<Task>(u"i går"_s, m_clock.now() - 86400, std::nullopt);
        LiveQuery<Task> query(store.context(), today(), QueryOrder::Store);
        QSignalSpy changed(&query, &RecordQuery::changed);

        // when
        query.setFilter(tasksOnDay(m_clock.calendar().dayInterval(m_clock.now() - 86400)));

        // then
        QCOMPARE(changed.count(), 1);
        QCOMPARE(query.results(), QList<Task *>{yesterday});
    }

    void shouldFindTheTasksOfADayOfAnyLength_data()
    {
        QTest::addColumn<QString>("noon");
        QTest::addColumn<QByteArray>("zone");
        QTest::newRow("clocks go forward")
            << u"2026-03-29T12:00:00"_s << QByteArray("Europe/Copenhagen");
        QTest::newRow("clocks go back")
            << u"2026-10-25T12:00:00"_s << QByteArray("Europe/Copenhagen");
        QTest::newRow("no midnight") << u"2018-11-04T12:00:00"_s << QByteArray("America/Sao_Paulo");
        QTest::newRow("before a skipped day")
            << u"2011-12-29T12:00:00"_s << QByteArray("Pacific/Apia");
    }
    void shouldFindTheTasksOfADayOfAnyLength()
    {
        QFETCH(QString, noon);
        QFETCH(QByteArray, zone);

        // given
        const FakeClock clock(noon, zone);
        TestStore store(clock);
        const Calendar &calendar = clock.calendar();
        const Instant day = clock.today();
        store.insert<Task>(u"før"_s, calendar.addingDays(day, -1).value(), std::nullopt);
        Task *const task = store.insertTask(u"på dagen"_s);
        store.insert<Task>(u"efter"_s, calendar.addingDays(day, 1).value(), std::nullopt);
        QVERIFY(store.context().save());

        // when
        LiveQuery<Task> query(store.context(), tasksOnDay(calendar.dayInterval(day)),
                              QueryOrder::Store);

        // then
        QCOMPARE(query.results(), QList<Task *>{task});
    }

    void shouldFindRunningTasksOfAnyDayInTheStoresOrder()
    {
        // given
        TestStore store(m_clock);
        Task *const yesterday = store.insert<Task>(u"i går"_s, m_clock.now() - 86400, std::nullopt);
        store.insertTask(u"står"_s);
        Task *const today = store.insertTask(u"i dag"_s);
        QVERIFY(store.context().save());
        const AllTasks all(store.context());
        QVERIFY(all.running().isEmpty());
        QSignalSpy changed(&all, &AllTasks::runningChanged);

        // when
        today->start();
        yesterday->start();

        // then
        QCOMPARE(all.running(), (QList<Task *>{yesterday, today}));

        // when
        QVERIFY(store.context().save());

        // then
        QCOMPARE(all.running(), (QList<Task *>{yesterday, today}));

        // when
        yesterday->stop();

        // then
        QCOMPARE(all.running(), QList<Task *>{today});
        QCOMPARE(changed.count(), 3);
    }

    void shouldFindATaskByItsIDWhetherWrittenOrNot()
    {
        // given
        TestStore store(m_clock);
        Task *const task = store.insertTask(u"a"_s);
        const QUuid id = task->id();
        const AllTasks all(store.context());

        // then
        QCOMPARE(all.withID(id), task);

        // when
        store.reopen();
        const AllTasks reopened(store.context());
        Task *const found = reopened.withID(id);

        // then
        QVERIFY(found);
        QCOMPARE(found->name(), u"a"_s);

        // when
        store.context().remove(found);

        // then
        QVERIFY(!reopened.withID(id));
        QVERIFY(!reopened.withID(QUuid::createUuid()));
    }

    void shouldKeepItsLastAnswerWhenTheStoreCannotBeRead()
    {
        // given
        const QTemporaryDir directory;
        const QString path = directory.filePath(u"store.sqlite"_s);
        {
            ModelContainer container(path, m_clock);
            container.mainContext().insert(
                std::make_unique<Task>(m_clock, u"a"_s, m_clock.now(), std::nullopt));
        }
        SQLite::Database database(QFile::encodeName(path).constData(), SQLite::OPEN_READWRITE);
        ModelContext context(database, m_clock);
        LiveQuery<Task> day(context, today(), QueryOrder::Store);
        Task *const task = day.results().value(0);
        QVERIFY(task);
        QVERIFY(day.isAnswered());

        // when its table cannot be read any more
        database.exec("ALTER TABLE Task RENAME TO Hidden");
        LiveQuery<Task> running(context, runningTasks(), QueryOrder::Store);

        // then
        QVERIFY(running.results().isEmpty());
        QVERIFY(!running.isAnswered());

        // when
        task->start();

        // then the answers are those of the records in memory
        QCOMPARE(day.results(), QList<Task *>{task});
        QCOMPARE(running.results(), QList<Task *>{task});
        QCOMPARE(AllTasks(context).withID(task->id()), task);

        // when
        day.setFilter(tasksOnDay(m_clock.calendar().dayInterval(m_clock.now() - 86400)));

        // then
        QVERIFY(day.results().isEmpty());
        QVERIFY(!day.isAnswered());

        // when it can be read again
        database.exec("ALTER TABLE Hidden RENAME TO Task");

        // then the next question is asked again
        QVERIFY(running.isAnswered());
        QVERIFY(day.isAnswered());
        QCOMPARE(running.results(), QList<Task *>{task});
    }
};

QTEST_GUILESS_MAIN(TestLiveQuery)
#include "tst_livequery.moc"
