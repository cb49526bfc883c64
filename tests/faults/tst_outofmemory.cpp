#include "../support/fakeclock.h"
#include "faultmemory.h"
#include "model/projectcode.h"
#include "model/task.h"
#include "model/tasktemplate.h"
#include "storeimage.h"
#include "storeuser.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <functional>
#include <optional>

using namespace Qt::StringLiterals;

/// SQLite's memory runs out at its first allocation, at a later one, and so on, until a run needs
/// no more of them.
class TestOutOfMemory : public QObject
{
    Q_OBJECT

private:
    FaultMemory m_memory;
    QTemporaryDir m_directory;
    int m_runs = 0;

    /// A store in use that the program was killed with: its log is not empty.
    StoreImage m_used;
    Contents m_usedContents;

    /// A path for another store; the last one goes.
    QString newPath()
    {
        QDir(m_directory.filePath(QString::number(m_runs))).removeRecursively();
        return m_directory.filePath(QString::number(++m_runs) + u"/store.sqlite"_s);
    }

    /// Lets the memory run out at @p position from now on.
    void runOutAt(int position)
    {
        QFETCH(bool, isForGood);
        m_memory.failAt(position,
                        isForGood ? FaultMemory::Duration::ForGood : FaultMemory::Duration::Once);
    }

    /// Calls @p run, which lets the memory run out, for every seventh position at which there is an
    /// allocation, or as TIMETRACKER_ALLOCATION_STEP says. The further on, the larger are the
    /// steps, by @p growth.
    void atEachAllocation(const std::function<void(int position)> &run, double growth = 1)
    {
        bool isGiven = false;
        const int given = qEnvironmentVariableIntValue("TIMETRACKER_ALLOCATION_STEP", &isGiven);
        const int step = isGiven ? given : 7;
        int failures = 0;
        double position = 1;
        do {
            run(static_cast<int>(position));
            m_memory.heal();
            failures += m_memory.hasFailed();
            position = std::max(position + step, position * growth);
        } while (m_memory.hasFailed() && !QTest::currentTestFailed());
        QVERIFY(failures > 0);
        qInfo("%d failures", failures);
    }

    static void addDurations()
    {
        QTest::addColumn<bool>("isForGood");
        QTest::newRow("for a moment") << false;
        QTest::newRow("for good") << true;
    }

    /// Opens the store with these files, in which there is @p contents, without memory: it is
    /// refused and stays what it is, or what could not be read is read later.
    void openWithoutMemory(int position, const StoreImage &image, const Contents &contents)
    {
        const QString path = newPath();
        writeImage(path, image);
        std::optional<StoreUser> user;
        runOutAt(position);
        try {
            user.emplace(path, contents);
            m_memory.heal();
        } catch (const StoreError &error) {
            m_memory.heal();
            QVERIFY2(QByteArray(error.what()).contains("cannot be read"), error.what());
            if (readImage(path) == image)
                return;
            user.emplace(path, contents);
        }
        QTRY_VERIFY(user->seesAllTasks());
        QVERIFY(contentsOf(user->context()) == contents);
    }

private Q_SLOTS:
    void initTestCase()
    {
        const QString path = newPath();
        const FakeClock clock;
        ModelContainer container(path, clock);
        ModelContext &context = container.mainContext();
        for (const QString &name : {u"a"_s, u"b"_s, u"c"_s})
            context.insert(std::make_unique<Task>(clock, name, clock.now(), std::nullopt));
        // One on several pages.
        context.insert(
            std::make_unique<Task>(clock, u"lang"_s.repeated(2'000), clock.now(), std::nullopt));
        context.insert(std::make_unique<TaskTemplate>(clock, u"skabelon"_s));
        context.insert(std::make_unique<ProjectCode>(clock, u"4711"_s, u"Støtte"_s));
        QVERIFY(context.save());
        m_used = readImage(path);
        m_usedContents = contentsOf(context);
        QVERIFY(!m_used.value(u"-wal"_s).isEmpty());
    }

    void shouldOpenAStoreOrLeaveItAsItIs_data() { addDurations(); }
    void shouldOpenAStoreOrLeaveItAsItIs()
    {
        atEachAllocation(
            [this](int position) { openWithoutMemory(position, m_used, m_usedContents); });
    }

    void shouldMakeAWholeStoreOrNone_data() { addDurations(); }
    void shouldMakeAWholeStoreOrNone()
    {
        atEachAllocation([this](int position) { openWithoutMemory(position, {}, {}); });
    }

    void shouldWriteEverythingOnceThereIsMemory_data() { addDurations(); }
    void shouldWriteEverythingOnceThereIsMemory()
    {
        atEachAllocation([this](int position) {
            // given
            const QString path = newPath();
            writeImage(path, m_used);
            std::optional<StoreUser> user;
            user.emplace(path, m_usedContents);

            // when
            runOutAt(position);
            user->work();
            m_memory.heal();

            // then without a restart, and without being asked
            QTRY_VERIFY(!user->context().hasChanges());
            QTRY_VERIFY(user->seesAllTasks());
            const Contents expected = user->contents();
            QVERIFY(contentsOf(user->context()) == expected);
            user.reset();
            QVERIFY(isOneOf(readImage(path), {expected}));
        });
    }

    void shouldKeepWhatWasWrittenWhenItEndsWithoutMemory_data() { addDurations(); }
    void shouldKeepWhatWasWrittenWhenItEndsWithoutMemory()
    {
        atEachAllocation([this](int position) {
            // given
            const QString path = newPath();
            writeImage(path, m_used);
            std::optional<StoreUser> user;
            user.emplace(path, m_usedContents);

            // when
            runOutAt(position);
            user->work();
            QList<Contents> possible = user->possible();
            possible.append(user->contents());
            user.reset();
            m_memory.heal();

            // then
            QVERIFY(isOneOf(readImage(path), possible));
        });
    }

    void shouldWriteMuchOnceThereIsMemory_data() { addDurations(); }
    void shouldWriteMuchOnceThereIsMemory()
    {
        atEachAllocation(
            [this](int position) {
                // given
                const QString path = newPath();
                writeImage(path, m_used);
                std::optional<StoreUser> user;
                user.emplace(path, m_usedContents);

                // when
                runOutAt(position);
                user->workALot();
                m_memory.heal();

                // then
                QTRY_VERIFY(!user->context().hasChanges());
                const Contents expected = user->contents();
                user.reset();
                QVERIFY(isOneOf(readImage(path), {expected}));
            },
            1.5);
    }
};

QTEST_GUILESS_MAIN(TestOutOfMemory)
#include "tst_outofmemory.moc"
