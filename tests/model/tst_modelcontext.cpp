#include "../support/standarderror.h"
#include "../support/teststore.h"
#include "model/livequery.h"
#include "model/projectcode.h"
#include "model/recordtable.h"
#include "model/tasklist.h"
#include "model/tasktemplate.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <sqlite3.h>

#include <QFileInfo>
#include <QSignalSpy>
#include <QTest>

#include <functional>
#include <limits>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

// A write fails at the first of these, as on a full disk, while the switch is on.
bool diskIsFull = false;

int refuseCommit(void *)
{
    return diskIsFull ? 1 : 0;
}

} // namespace

class TestModelContext : public QObject
{
    Q_OBJECT

private:
    FakeClock m_clock;

    static QStringList names(const QList<Task *> &tasks)
    {
        QStringList names;
        for (const Task *task : tasks)
            names << task->name();
        return names;
    }

    static QStringList storedNames(ModelContext &context)
    {
        LiveQuery<Task> tasks(context, allRecords(), QueryOrder::Store);
        return names(tasks.results());
    }

    /// How a save ends, and what it writes to standard error.
    struct Save {
        bool isSaved;
        QString said;
    };
    /// Runs @p action, which saves and returns whether that has succeeded.
    static Save saveBy(const std::function<bool()> &action)
    {
        bool isSaved = false;
        const QString said = saidBy([&] { isSaved = action(); });
        return {isSaved, said};
    }

    /// The path of a store that is closed, with a task of this name.
    QString makeStore(const QTemporaryDir &directory, const QString &name) const
    {
        QString path = directory.filePath(u"store.sqlite"_s);
        ModelContainer container(path, m_clock);
        container.mainContext().insert(
            std::make_unique<Task>(m_clock, name, m_clock.now(), std::nullopt));
        return path;
    }

private Q_SLOTS:
    void init() { diskIsFull = false; }

    void shouldShowAnInsertedTaskBeforeItIsWritten()
    {
        // given
        TestStore store(m_clock);

        // when
        store.insertTask(u"Ny"_s);

        // then
        QVERIFY(store.context().hasChanges());
        QCOMPARE(storedNames(store.context()), QStringList{u"Ny"_s});
    }

    void shouldHaveOneObjectPerStoredRecord()
    {
        // given
        TestStore store(m_clock);
        Task *const task = store.insertTask(u"Ny"_s);
        const QUuid id = task->id();
        const AllTasks all(store.context());

        // then
        QCOMPARE(all.withID(id), task);

        // when
        QVERIFY(store.context().save());

        // then
        QCOMPARE(all.withID(id), task);
        LiveQuery<Task> day(store.context(),
                            tasksOnDay(m_clock.calendar().dayInterval(m_clock.now())),
                            QueryOrder::Store);
        QCOMPARE(day.results(), QList<Task *>{task});
    }

    void shouldMakeObjectsOnlyForWhatIsLookedAt()
    {
        // given
        TestStore store(m_clock);
        const Instant today = m_clock.now();
        for (int day = 0; day < 100; ++day)
            store.insert<Task>(u"Gammel"_s, today - day * 86400.0, std::nullopt);

        // when
        store.reopen();

        // then
        QVERIFY(store.context().inMemory(RecordType::Task, allRecords()).isEmpty());

        // when
        LiveQuery<Task> tasks(store.context(), tasksOnDay(m_clock.calendar().dayInterval(today)),
                              QueryOrder::Store);

        // then
        QCOMPARE(tasks.results().size(), 1);
        QCOMPARE(store.context().inMemory(RecordType::Task, allRecords()).size(), 1);
    }

    void shouldNeverReadTheHistoryAsAWhole_data()
    {
        QTest::addColumn<RecordFilter>("filter");
        QTest::newRow("a day") << tasksOnDay({0, 86400});
        QTest::newRow("running") << runningTasks();
        QTest::newRow("by id") << tasksWithID(QUuid::createUuid());
    }

    void shouldNeverReadTheHistoryAsAWhole()
    {
        QFETCH(RecordFilter, filter);

        // given
        FakeClock clock;
        TestStore store(clock);
        store.close();
        SQLite::Database database(store.path().toStdString());

        // when
        SQLite::Statement plan(database, "EXPLAIN QUERY PLAN " +
                                             selection(recordTable(RecordType::Task), filter));
        QVERIFY(plan.executeStep());

        // then
        const QByteArray first(plan.getColumn("detail").getText());
        QVERIFY2(first.contains(" USING INDEX "), first);
    }

    void shouldSaveByItselfSoonAfterTheFirstChange()
    {
        // given
        TestStore store(m_clock, {1ms, 1h});

        // when
        store.insertTask(u"Ny"_s);

        // then
        QTRY_VERIFY(!store.context().hasChanges());

        // when
        store.reopen();

        // then
        QCOMPARE(storedNames(store.context()), QStringList{u"Ny"_s});
    }

    void shouldNotPutASaveOffForLaterChanges()
    {
        // given
        TestStore store(m_clock, {20ms, 1h});
        Task *const task = store.insertTask(u"Ny"_s);
        bool wasSaved = false;
        int keys = 0;

        // when changes come without end, faster than the delay
        QTimer typing;
        connect(&typing, &QTimer::timeout, this, [&] {
            wasSaved = wasSaved || !store.context().hasChanges();
            task->setName(QString::number(++keys));
        });
        typing.start(0);

        // then a save comes between two of them
        QTRY_VERIFY(wasSaved);
    }

    void shouldWriteEditsAndDeletions()
    {
        // given
        TestStore store(m_clock);
        Task *const kept = store.insertTask(u"a"_s);
        Task *const gone = store.insertTask(u"b"_s);
        QVERIFY(store.context().save());

        // when
        kept->setName(u"A"_s);
        store.context().remove(gone);

        // then
        QCOMPARE(storedNames(store.context()), QStringList{u"A"_s});

        // when
        store.reopen();

        // then
        QCOMPARE(storedNames(store.context()), QStringList{u"A"_s});
    }

    void shouldWriteWhatIsUnsavedWhenItCloses()
    {
        // given
        TestStore store(m_clock, {1h, 1h});
        store.insertTask(u"Ny"_s);

        // when
        store.reopen();

        // then
        QCOMPARE(storedNames(store.context()), QStringList{u"Ny"_s});
    }

    void shouldForgetARecordThatIsDeletedBeforeItWasWritten()
    {
        // given
        TestStore store(m_clock);

        // when
        store.context().remove(store.insertTask(u"Fortrudt"_s));

        // then
        QVERIFY(!store.context().hasChanges());

        // when
        store.reopen();

        // then
        QCOMPARE(storedNames(store.context()), QStringList());
    }

    void shouldLetADeletedRecordGoOnlyInTheEventLoop()
    {
        // given
        TestStore store(m_clock);
        const QPointer<Task> task = store.insertTask(u"Væk"_s);
        QVERIFY(store.context().save());

        // when
        store.context().remove(task);

        // then
        QVERIFY(task);

        // when somebody still holds it and changes it
        task->setName(u"Spøgelse"_s);
        store.context().remove(task);

        // then
        QTRY_VERIFY(!task);

        // when
        store.reopen();

        // then
        QCOMPARE(storedNames(store.context()), QStringList());
    }

    void shouldKeepTheOrderOfInsertionWhenTheLastRowIsGivenAgain()
    {
        // given
        TestStore store(m_clock);
        store.insertTask(u"a"_s);
        Task *const last = store.insertTask(u"b"_s);
        QVERIFY(store.context().save());

        // when
        store.context().remove(last);
        store.insertTask(u"c"_s);
        QVERIFY(store.context().save());
        store.insertTask(u"d"_s);

        // then
        QCOMPARE(storedNames(store.context()), (QStringList{u"a"_s, u"c"_s, u"d"_s}));

        // when
        store.reopen();

        // then
        QCOMPARE(storedNames(store.context()), (QStringList{u"a"_s, u"c"_s, u"d"_s}));
    }

    void shouldKeepChangesThatCouldNotBeWrittenAndTryAgain()
    {
        // given a store whose writes can fail
        const QTemporaryDir directory;
        const QString path = directory.filePath(u"store.sqlite"_s);
        {
            const ModelContainer made(path, m_clock);
        }
        SQLite::Database database(QFile::encodeName(path).constData(), SQLite::OPEN_READWRITE);
        sqlite3_commit_hook(database.getHandle(), &refuseCommit, nullptr);
        ModelContext context(database, m_clock, {1ms, 1ms});
        auto made = std::make_unique<Task>(m_clock, u"a"_s, m_clock.now(), std::nullopt);
        Task *const task = made.get();
        context.insert(std::move(made));
        QVERIFY(context.save());

        // when the disk is full
        diskIsFull = true;
        task->setName(u"A"_s);
        context.insert(std::make_unique<Task>(m_clock, u"b"_s, m_clock.now(), std::nullopt));

        // then
        QVERIFY(!context.save());
        QVERIFY(context.hasChanges());
        QCOMPARE(storedNames(context), (QStringList{u"A"_s, u"b"_s}));

        // when there is room again
        diskIsFull = false;

        // then all is written without being asked
        QTRY_VERIFY(!context.hasChanges());
        ModelContext another(database, m_clock);
        QCOMPARE(storedNames(another), (QStringList{u"A"_s, u"b"_s}));
    }

    void shouldNameWhatCouldNotBeWrittenAtTheEnd()
    {
        // given a store whose writes fail
        const QTemporaryDir directory;
        const QString path = directory.filePath(u"store.sqlite"_s);
        {
            const ModelContainer made(path, m_clock);
        }
        SQLite::Database database(QFile::encodeName(path).constData(), SQLite::OPEN_READWRITE);
        sqlite3_commit_hook(database.getHandle(), &refuseCommit, nullptr);
        ModelContext context(database, m_clock, {1h, 1h});
        const auto insert = [&](auto made) {
            auto *const inserted = made.get();
            context.insert(std::move(made));
            return inserted;
        };
        const auto newTask = [&](const QString &name) {
            return insert(std::make_unique<Task>(m_clock, name, m_clock.now(), std::nullopt));
        };
        Task *const edited = newTask(u"Skrevet før"_s);
        Task *const removed = newTask(u"Slettet"_s);
        removed->setAccumulatedSeconds(60);
        QVERIFY(context.saveOrTell());
        diskIsFull = true;
        edited->setAccumulatedSeconds(5025);
        context.remove(removed);
        // even if its time cannot be added up
        Task *const endless = newTask(u"Ny\nop\x1bgave"_s + QChar(u'\0'));
        endless->setAccumulatedSeconds(std::numeric_limits<qint64>::max());
        endless->start();
        insert(std::make_unique<TaskTemplate>(m_clock, u"Skabelon"_s));
        insert(std::make_unique<ProjectCode>(m_clock, u"4711"_s, u"Støtte"_s));

        // when the program ends
        const Save end = saveBy([&] { return context.saveOrTell(); });

        // then
        QVERIFY(!end.isSaved);
        const QStringList lines = end.said.split(u'\n');
        QVERIFY2(lines.at(0).contains(u'"' + path + u'"'), qPrintable(lines.at(0)));
        QCOMPARE(lines.sliced(1),
                 (QStringList{u"  new: task \"Ny opgave\" of 2026-11-20, "
                              "2562047788015215:30:07, running since 2026-11-20 08:00:00"_s,
                              u"  changed: task \"Skrevet før\" of 2026-11-20, 01:23:45"_s,
                              u"  deleted: task \"Slettet\" of 2026-11-20, 00:01:00"_s,
                              u"  new: template \"Skabelon\""_s,
                              u"  new: project code \"4711 \u2013 Støtte\""_s, u""_s}));

        // when it ends once more, as the session's end comes before its own
        const Save again = saveBy([&] { return context.saveOrTell(); });

        // then that is said once
        QVERIFY(!again.isSaved);
        QCOMPARE(again.said, QString());
    }

    void shouldNoticeAStoreThatIsMovedAwayAndGoOnWhenItIsBack()
    {
        // given a store that is moved away while it is open
        TestStore store(m_clock, {1h, 1h});
        store.insertTask(u"før"_s);
        QVERIFY(store.context().save());
        const QString aside = store.path() + u".aside"_s;
        QVERIFY(QFile::rename(store.path(), aside));
        store.insertTask(u"efter"_s);

        // when it is saved, and saved again
        const Save first = saveBy([&] { return store.context().save(); });
        const Save second = saveBy([&] { return store.context().save(); });

        // then standard error says so once, and the change stays unsaved
        QVERIFY(!first.isSaved);
        QVERIFY2(first.said.contains(u"The store \""_s + store.path() +
                                     u"\" is no longer in its place"_s),
                 qPrintable(first.said));
        QVERIFY(!second.isSaved);
        QCOMPARE(second.said, QString());
        QVERIFY(store.context().hasChanges());

        // when the store is back
        QVERIFY(QFile::rename(aside, store.path()));
        const bool isSaved = store.context().save();
        store.reopen();

        // then the change is written
        QVERIFY(isSaved);
        QCOMPARE(storedNames(store.context()), (QStringList{u"før"_s, u"efter"_s}));
    }

    void shouldKeepTheLogOfARemovedStore()
    {
        // given a store with its last change in its log
        TestStore store(m_clock, {1h, 1h});
        store.insertTask(u"før"_s);
        QVERIFY(store.context().save());
        QVERIFY(QFileInfo(store.path() + u"-wal"_s).size() > 0);
        const QTemporaryDir elsewhere;
        const QString moved = elsewhere.filePath(u"store.sqlite"_s);

        // when it is moved away, and the program ends
        QVERIFY(QFile::rename(store.path(), moved));
        const QString said = saidBy([&] { store.close(); });

        // then standard error says so
        QVERIFY2(said.contains("is no longer in its place"_L1), qPrintable(said));

        // when it is back
        QVERIFY(QFile::rename(moved, store.path()));
        store.open();

        // then nothing is lost: with the log it is whole
        QCOMPARE(storedNames(store.context()), QStringList{u"før"_s});
    }

    void shouldLeaveAStoreAloneThatReplacedItsOwn_data()
    {
        QTest::addColumn<bool>("isChangedAfterwards");
        QTest::newRow("before a change") << true;
        QTest::newRow("before the end") << false;
    }
    void shouldLeaveAStoreAloneThatReplacedItsOwn()
    {
        QFETCH(bool, isChangedAfterwards);

        // given a store that is replaced by another while it is open
        TestStore store(m_clock, {1h, 1h});
        for (int number = 0; number < 50; ++number)
            store.insertTask(u"egen"_s);
        QVERIFY(store.context().save());
        const QTemporaryDir elsewhere;
        const QString other = makeStore(elsewhere, u"en anden"_s);
        QCOMPARE(::rename(QFile::encodeName(other).constData(),
                          QFile::encodeName(store.path()).constData()),
                 0);

        // when something changes, or nothing does, and the program ends
        const Save end = saveBy([&] {
            if (isChangedAfterwards)
                store.insertTask(u"efter"_s);
            const bool isSaved = store.context().saveOrTell();
            store.close();
            return isSaved;
        });

        // then standard error says so, and names what could not be written
        QCOMPARE(end.isSaved, !isChangedAfterwards);
        QVERIFY2(end.said.contains("is no longer in its place"_L1), qPrintable(end.said));
        QCOMPARE(end.said.contains("new: task \"efter\""_L1), isChangedAfterwards);

        // when the store in its place is opened
        store.open();

        // then it is what it was
        QCOMPARE(storedNames(store.context()), QStringList{u"en anden"_s});
    }

    void shouldTryAgainAtOnceWithTheNextChange()
    {
        // given
        const QTemporaryDir directory;
        const QString path = directory.filePath(u"store.sqlite"_s);
        {
            const ModelContainer made(path, m_clock);
        }
        SQLite::Database database(QFile::encodeName(path).constData(), SQLite::OPEN_READWRITE);
        sqlite3_commit_hook(database.getHandle(), &refuseCommit, nullptr);
        ModelContext context(database, m_clock, {1ms, 1h});
        diskIsFull = true;
        context.insert(std::make_unique<Task>(m_clock, u"a"_s, m_clock.now(), std::nullopt));
        QVERIFY(!context.save());

        // when
        diskIsFull = false;
        context.insert(std::make_unique<Task>(m_clock, u"b"_s, m_clock.now(), std::nullopt));

        // then
        QTRY_VERIFY(!context.hasChanges());
    }
};

QTEST_GUILESS_MAIN(TestModelContext)
#include "tst_modelcontext.moc"
