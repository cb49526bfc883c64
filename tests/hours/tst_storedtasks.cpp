#include "../support/teststore.h"
#include "hours/storedtasks.h"
#include "model/storeerror.h"

#include <SQLiteCpp/Database.h>

#include <QDir>
#include <QFile>
#include <QTest>

#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

const Period november{{2026, 11, 1}, {2026, 11, 30}};

/// The folder's files: names, contents, sizes, times, rights.
QStringList filesOf(const QString &folder)
{
    QStringList files;
    const QFileInfoList entries =
        QDir(folder).entryInfoList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QFileInfo &entry : entries) {
        QFile file(entry.filePath());
        const QByteArray content =
            file.open(QFile::ReadOnly) ? file.readAll().toHex() : QByteArray();
        struct stat status {
        };
        ::stat(QFile::encodeName(entry.filePath()).constData(), &status);
        files.append(u"%1 %2 %3 %4 %5"_s.arg(entry.fileName(), QString::fromLatin1(content))
                         .arg(status.st_mtim.tv_sec)
                         .arg(status.st_mtim.tv_nsec)
                         .arg(status.st_mode));
    }
    struct stat status {
    };
    ::stat(QFile::encodeName(folder).constData(), &status);
    files.append(u"itself %1 %2"_s.arg(status.st_mtim.tv_sec).arg(status.st_mtim.tv_nsec));
    return files;
}

std::filesystem::path pathOf(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

} // namespace

class TestStoredTasks : public QObject
{
    Q_OBJECT

private:
    struct Fixture {
        FakeClock clock;
        TestStore store{clock, {1h, 1h}};

        Task *addTask(const QString &time, const QString &name, qint64 seconds = 0)
        {
            auto *const task = store.insert<Task>(name, clock.at(time), std::nullopt);
            task->setAccumulatedSeconds(seconds);
            return task;
        }

        /// The tasks of @p period in the file at @p path, "day name seconds".
        QStringList read(const QString &path, const Period &period = november) const
        {
            QStringList tasks;
            readStoredTasks(pathOf(path), period, clock.calendar(), clock.now(),
                            [&tasks](const RecordedTask &task) {
                                tasks.append(
                                    u"%1 %2 %3"_s.arg(task.day.toString(Qt::ISODate), task.name)
                                        .arg(task.seconds));
                            });
            return tasks;
        }

        QStringList readClosed(const Period &period = november)
        {
            store.close();
            return read(store.path(), period);
        }
    };

private Q_SLOTS:
    void shouldReadTheTasksOfThePeriodInTheStoresOrder()
    {
        // given
        Fixture f;
        f.addTask(u"2026-11-30T12:00:00"_s, u"last"_s, 1);
        f.addTask(u"2026-11-01T12:00:00"_s, u"second"_s, 2);
        f.addTask(u"2026-11-01T12:00:00"_s, u"first"_s, 3);
        f.addTask(u"2026-10-31T12:00:00"_s, u"before"_s);
        f.addTask(u"2026-12-01T12:00:00"_s, u"after"_s);

        // then
        QCOMPARE(f.readClosed(), (QStringList{u"2026-11-01 second 2"_s, u"2026-11-01 first 3"_s,
                                              u"2026-11-30 last 1"_s}));
    }

    void shouldTellProjectCodes()
    {
        // given
        Fixture f;
        f.store.insert<Task>(u"a"_s, f.clock.now(), u"4711"_s);
        f.store.insert<Task>(u"b"_s, f.clock.now(), u""_s);
        f.store.insert<Task>(u"c"_s, f.clock.now(), std::nullopt);
        f.store.close();

        // when
        QList<std::optional<QString>> codes;
        readStoredTasks(pathOf(f.store.path()), november, f.clock.calendar(), f.clock.now(),
                        [&codes](const RecordedTask &task) { codes.append(task.projectCode); });

        // then
        QCOMPARE(codes, (QList<std::optional<QString>>{u"4711"_s, u""_s, std::nullopt}));
    }

    void shouldCountARunningTaskUpToNow()
    {
        // given
        Fixture f;
        f.addTask(u"2026-11-20T00:00:00"_s, u"a"_s, 100)->start();
        f.store.close();

        // when
        f.clock.advance(65.9);

        // then
        QCOMPARE(f.read(f.store.path()), QStringList{u"2026-11-20 a 165"_s});
    }

    void shouldKeepToDaysOfTwentyThreeAndTwentyFiveHours()
    {
        // given
        Fixture f;
        for (const QString &day : {u"2026-03-28"_s, u"2026-03-29"_s, u"2026-03-30"_s,
                                   u"2026-10-24"_s, u"2026-10-25"_s, u"2026-10-26"_s})
            f.addTask(day + u"T12:00:00"_s, u"a"_s);
        f.store.close();

        // then
        const QString path = f.store.path();
        QCOMPARE(f.read(path, {{2026, 3, 29}, {2026, 3, 29}}), QStringList{u"2026-03-29 a 0"_s});
        QCOMPARE(f.read(path, {{2026, 10, 25}, {2026, 10, 25}}), QStringList{u"2026-10-25 a 0"_s});
        QCOMPARE(f.read(path, {{2026, 1, 1}, {2026, 12, 31}}).size(), 6);
    }

    void shouldKeepTheStoresOrderInADayOfTwoZones()
    {
        // given: the same day, begun in another zone
        Fixture f;
        f.addTask(u"2026-11-20T12:00:00"_s, u"first"_s);
        f.clock.travelTo("Europe/London");
        f.addTask(u"2026-11-20T12:00:00"_s, u"second"_s);
        f.clock.travelTo("Europe/Copenhagen");
        f.addTask(u"2026-11-20T12:00:00"_s, u"third"_s);

        // then
        QCOMPARE(f.readClosed(), (QStringList{u"2026-11-20 first 0"_s, u"2026-11-20 second 0"_s,
                                              u"2026-11-20 third 0"_s}));
    }

    void shouldChangeNothing()
    {
        // given
        Fixture f;
        f.addTask(u"2026-11-20T12:00:00"_s, u"a"_s);
        f.store.close();
        const QString folder = QFileInfo(f.store.path()).path();
        const QStringList before = filesOf(folder);

        // when
        QCOMPARE(f.read(f.store.path()).size(), 1);

        // then
        QCOMPARE(filesOf(folder), before);
    }

    void shouldReadTheLogOfAKillAndLeaveItAsItIs()
    {
        // given: the files of a store in use, as a kill leaves them
        Fixture f;
        f.addTask(u"2026-11-20T12:00:00"_s, u"in the log"_s, 5);
        QVERIFY(f.store.context().save());
        const QTemporaryDir folder;
        const QString copy = folder.filePath(u"store.sqlite"_s);
        QVERIFY(QFile::copy(f.store.path(), copy));
        QVERIFY(QFile::copy(f.store.path() + u"-wal"_s, copy + u"-wal"_s));
        const QStringList before = filesOf(folder.path());

        // when
        const QStringList tasks = f.read(copy);

        // then
        QCOMPARE(tasks, QStringList{u"2026-11-20 in the log 5"_s});
        QCOMPARE(filesOf(folder.path()), before);
    }

    void shouldLeaveALogWithoutAnyWholeChangeAsItIs()
    {
        // given: a kill in the middle of the first write
        Fixture f;
        f.addTask(u"2026-11-20T12:00:00"_s, u"a"_s, 5);
        f.store.reopen();
        f.addTask(u"2026-11-20T12:00:00"_s, u"b"_s);
        QVERIFY(f.store.context().save());
        const QTemporaryDir folder;
        const QString copy = folder.filePath(u"store.sqlite"_s);
        QVERIFY(QFile::copy(f.store.path(), copy));
        QVERIFY(QFile::copy(f.store.path() + u"-wal"_s, copy + u"-wal"_s));
        QVERIFY(QFile::resize(copy + u"-wal"_s, 100));
        const QStringList before = filesOf(folder.path());

        // when
        const QStringList tasks = f.read(copy);

        // then
        QCOMPARE(tasks, QStringList{u"2026-11-20 a 5"_s});
        QCOMPARE(filesOf(folder.path()), before);
    }

    void shouldLeaveAnEmptyLogAsItIs()
    {
        // given
        Fixture f;
        f.addTask(u"2026-11-20T12:00:00"_s, u"a"_s, 5);
        f.store.close();
        QFile log(f.store.path() + u"-wal"_s);
        QVERIFY(log.open(QFile::WriteOnly));
        log.close();
        QVERIFY(log.setPermissions(QFile::ReadOwner | QFile::WriteOwner));
        const QString folder = QFileInfo(f.store.path()).path();
        const QStringList before = filesOf(folder);

        // then
        QCOMPARE(f.read(f.store.path()), QStringList{u"2026-11-20 a 5"_s});
        QCOMPARE(filesOf(folder), before);
    }

    void shouldRefuseAStoreWithAHotJournal()
    {
        // given: changes that were begun with a journal, as another program's would be
        Fixture f;
        f.addTask(u"2026-11-20T12:00:00"_s, u"a"_s, 5);
        f.store.close();
        const QTemporaryDir folder;
        const QString copy = folder.filePath(u"store.sqlite"_s);
        {
            SQLite::Database other(QFile::encodeName(f.store.path()).constData(),
                                   SQLite::OPEN_READWRITE);
            other.exec("PRAGMA journal_mode = DELETE; PRAGMA cache_size = 1; BEGIN; "
                       "UPDATE Task SET name = hex(randomblob(20000))");
            QVERIFY(QFile::copy(f.store.path(), copy));
            QVERIFY(QFile::copy(f.store.path() + u"-journal"_s, copy + u"-journal"_s));
        }
        const QStringList before = filesOf(folder.path());

        // then
        QVERIFY_THROWS_EXCEPTION(StoreError, f.read(copy));
        QCOMPARE(filesOf(folder.path()), before);
    }

    void shouldFindNoTasksAndMakeNothingWithoutAStore()
    {
        const Fixture f;
        const QTemporaryDir folder;
        QCOMPARE(f.read(folder.filePath(u"store.sqlite"_s)), QStringList());
        QCOMPARE(f.read(folder.filePath(u"missing/store.sqlite"_s)), QStringList());
        QVERIFY(folder.isValid() && QDir(folder.path()).isEmpty());
    }

    void shouldRefuseAStoreThatAnotherProcessHolds()
    {
        // Locks do not tell a process from itself, so another one looks.
        Fixture f;
        QVERIFY(f.store.context().save());
        const pid_t child = ::fork();
        if (child == 0) {
            int status = 1;
            try {
                f.read(f.store.path());
            } catch (const StoreInUseError &) {
                status = 0;
            }
            std::_Exit(status);
        }
        int status = -1;
        QCOMPARE(::waitpid(child, &status, 0), child);
        QCOMPARE(status, 0);
    }

    void shouldSayOfADamagedStoreWhatTheProgramSays()
    {
        // given
        Fixture f;
        f.addTask(u"2026-11-20T12:00:00"_s, u"a"_s);
        f.store.close();
        QVERIFY(QFile::resize(f.store.path(), 5000));
        const auto sentence = [](const auto &open) {
            try {
                open();
            } catch (const StoreError &error) {
                return QByteArray(error.what());
            }
            return QByteArray();
        };

        // when
        const QByteArray said = sentence([&f] { f.read(f.store.path()); });

        // then
        QVERIFY(!said.isEmpty());
        QCOMPARE(said, sentence([&f] { const ModelContainer container(f.store.path(), f.clock); }));
    }

    void shouldNoticeAChangeWhileItReads()
    {
        // given
        Fixture f;
        f.addTask(u"2026-11-20T12:00:00"_s, u"a"_s);
        f.store.close();

        // when: somebody writes while a task is delivered
        const auto change = [&f](const RecordedTask &) {
            SQLite::Database other(QFile::encodeName(f.store.path()).constData(),
                                   SQLite::OPEN_READWRITE);
            other.exec("UPDATE Task SET name = 'b'");
        };

        // then
        QVERIFY_THROWS_EXCEPTION(TasksChanged,
                                 readStoredTasks(pathOf(f.store.path()), november,
                                                 f.clock.calendar(), f.clock.now(), change));
    }

    void shouldOpenAStoreByAnyName()
    {
        // given
        Fixture f;
        f.addTask(u"2026-11-20T12:00:00"_s, u"a"_s);
        f.store.close();
        const QTemporaryDir folder;
        const QString odd = folder.filePath(u"50% ?a=b#c&æ\"'%41.sqlite"_s);
        QVERIFY(QFile::copy(f.store.path(), odd));

        // then
        QCOMPARE(f.read(odd).size(), 1);
    }
};

QTEST_GUILESS_MAIN(TestStoredTasks)
#include "tst_storedtasks.moc"
