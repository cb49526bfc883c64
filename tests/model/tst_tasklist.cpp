#include "../support/teststore.h"
#include "model/tasklist.h"

#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class TestTaskList : public QObject
{
    Q_OBJECT

private:
    FakeClock m_clock;

    DayInterval today() const { return m_clock.calendar().dayInterval(m_clock.now()); }
    Instant yesterday() const { return m_clock.now() - 86400; }

private Q_SLOTS:
    void shouldHaveADaysTasksInTheStoresOrderAndSorted()
    {
        // given
        TestStore store(m_clock);
        Task *const second = store.insertTask(u"a"_s, 2);
        Task *const first = store.insertTask(u"b"_s, 1);
        store.insert<Task>(u"i går"_s, yesterday(), std::nullopt);

        // when
        const DayTasks day(store.context(), today());

        // then
        QCOMPARE(day.tasks(), (QList<Task *>{second, first}));
        QCOMPARE(day.sortedTasks(), (QList<Task *>{first, second}));
        QVERIFY(day.isKnown());
        QVERIFY(!day.isEmpty());
    }

    void shouldFindATaskOfItsDayByTheId()
    {
        // given
        TestStore store(m_clock);
        store.insertTask(u"a"_s);
        Task *const wanted = store.insertTask(u"b"_s);
        Task *const other = store.insert<Task>(u"i går"_s, yesterday(), std::nullopt);

        // when
        const DayTasks day(store.context(), today());

        // then
        QCOMPARE(day.withID(wanted->id()), wanted);
        QCOMPARE(day.withID(other->id()), nullptr);
    }

    void shouldKnowWhichTasksOfItsDayRun()
    {
        // given
        TestStore store(m_clock);
        store.insertTask(u"a"_s);
        Task *const running = store.insertTask(u"b"_s);
        store.insert<Task>(u"i går"_s, yesterday(), std::nullopt)->start();
        const DayTasks day(store.context(), today());
        QVERIFY(day.running().isEmpty());

        // when
        running->start();

        // then
        QCOMPARE(day.running(), QList<Task *>{running});
    }

    void shouldShowAnotherDayOnceItIsSet()
    {
        // given
        TestStore store(m_clock);
        store.insertTask(u"a"_s);
        Task *const other = store.insert<Task>(u"i går"_s, yesterday(), std::nullopt);
        DayTasks day(store.context(), today());
        QSignalSpy changed(&day, &DayTasks::changed);

        // when
        day.setDay(today());

        // then
        QCOMPARE(changed.count(), 0);

        // when
        day.setDay(m_clock.calendar().dayInterval(yesterday()));

        // then
        QCOMPARE(changed.count(), 1);
        QCOMPARE(day.tasks(), QList<Task *>{other});
    }
};

QTEST_GUILESS_MAIN(TestTaskList)
#include "tst_tasklist.moc"
