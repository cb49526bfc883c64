#include "../support/teststore.h"
#include "model/livequery.h"
#include "model/projectcode.h"
#include "model/reserve.h"
#include "model/tasktemplate.h"

#include <SQLiteCpp/Database.h>
#include <cerrno>
#include <filesystem>
#include <limits>

#include <QDir>
#include <QFile>
#include <QScopeGuard>
#include <QTest>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{
/// What a system call says from now on, until it is 0; an errno.
int s_renameError = 0;
int s_accessError = 0;
} // namespace

// Instead of the C library's: they may fail as they do on other file systems.

extern "C" int renameat2(int oldDirectory, const char *oldName, int newDirectory,
                         const char *newName, unsigned flags) noexcept
{
    errno = s_renameError;
    return s_renameError != 0 ? -1
                              : static_cast<int>(::syscall(SYS_renameat2, oldDirectory, oldName,
                                                           newDirectory, newName, flags));
}
extern "C" int faccessat(int directory, const char *name, int access, int flags) noexcept
{
    errno = s_accessError;
    return s_accessError != 0
               ? -1
               : static_cast<int>(::syscall(SYS_faccessat2, directory, name, access, flags));
}

class TestModelContainer : public QObject
{
    Q_OBJECT

private:
    FakeClock m_clock;

    static QByteArray contents(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
    }

    static void write(const QString &path, const QByteArray &contents)
    {
        QDir().mkpath(QFileInfo(path).path());
        QFile file(path);
        QVERIFY(file.open(QIODevice::WriteOnly, QFile::ReadOwner | QFile::WriteOwner));
        file.write(contents);
    }

    /// Opens the store at @p path and returns why that failed, or nothing if it did not.
    QString failure(const auto &path, SaveDelays delays = {}) const
    {
        try {
            const ModelContainer container(path, m_clock, delays);
        } catch (const StoreError &error) {
            return QString::fromUtf8(error.what());
        }
        return {};
    }

    static int mode(const QString &path)
    {
        struct stat status {
        };
        if (::stat(QFile::encodeName(path).constData(), &status) != 0)
            return -1;
        return static_cast<int>(status.st_mode & 07777);
    }

    /// Locks @p directory against other processes, and this one, until the descriptor is closed.
    static int lock(const QString &directory)
    {
        const int descriptor =
            ::open(QFile::encodeName(directory).constData(), O_RDONLY | O_DIRECTORY);
        return ::flock(descriptor, LOCK_EX | LOCK_NB) == 0 ? descriptor : -1;
    }

    static void execute(const QString &path, const char *sql)
    {
        SQLite::Database(QFile::encodeName(path).constData(), SQLite::OPEN_READWRITE).exec(sql);
    }

    /// Sets where the user's data lies, as long as the result lives.
    [[nodiscard]] static auto withDataHome(const QByteArray &path)
    {
        const QByteArray before = qgetenv("XDG_DATA_HOME");
        qputenv("XDG_DATA_HOME", path);
        return qScopeGuard([before] {
            if (before.isNull())
                qunsetenv("XDG_DATA_HOME");
            else
                qputenv("XDG_DATA_HOME", before);
        });
    }

private Q_SLOTS:
    void shouldMakeAnEmptyStoreAtTheFirstStart()
    {
        // given
        TestStore store(m_clock);
        LiveQuery<Task> tasks(store.context(), allRecords(), QueryOrder::Store);
        LiveQuery<TaskTemplate> templates(store.context(), allRecords(), QueryOrder::SortOrder);
        LiveQuery<ProjectCode> codes(store.context(), allRecords(), QueryOrder::SortOrder);

        // then
        QVERIFY(tasks.results().isEmpty() && tasks.isAnswered());
        QVERIFY(templates.results().isEmpty() && templates.isAnswered());
        QVERIFY(codes.results().isEmpty() && codes.isAnswered());
    }

    void shouldKeepEveryPropertyOfEveryRecordExactly()
    {
        // given
        TestStore store(m_clock);
        m_clock.set(1795158000.123456);
        auto *const task =
            store.insert<Task>(u"Møde \u2013 \U0001F600 \u05d0"_s, m_clock.now(), u""_s, -3);
        task->setAccumulatedSeconds(std::numeric_limits<qint64>::min());
        task->start();
        const QString withNull = u"a"_s + QChar(u'\0') + u"b'; DROP TABLE Task; --"_s;
        auto *const plain = store.insert<Task>(withNull, m_clock.now(), std::nullopt, 1);
        auto *const taskTemplate = store.insert<TaskTemplate>(u"Skabelon"_s, 2);
        auto *const code = store.insert<ProjectCode>(u"4711"_s, u"Støtte"_s, 9);
        const QUuid ids[] = {task->id(), plain->id(), taskTemplate->id(), code->id()};
        const Instant created = task->createdAt();
        const Instant date = task->date();

        // when
        store.reopen();

        // then
        LiveQuery<Task> tasks(store.context(), allRecords(), QueryOrder::Store);
        QCOMPARE(tasks.results().size(), 2);
        const Task *const first = tasks.results().at(0);
        QCOMPARE(first->id(), ids[0]);
        QCOMPARE(first->name(), u"Møde \u2013 \U0001F600 \u05d0"_s);
        QVERIFY(first->date() == date);
        QCOMPARE(first->accumulatedSeconds(), std::numeric_limits<qint64>::min());
        QVERIFY(first->lastStartTime().value() == created);
        QCOMPARE(first->sortOrder(), -3);
        QVERIFY(first->createdAt() == created);
        QCOMPARE(first->projectCode().value_or(u"none"_s), u""_s);
        const Task *const second = tasks.results().at(1);
        QCOMPARE(second->id(), ids[1]);
        QCOMPARE(second->name(), withNull);
        QVERIFY(!second->isRunning());
        QVERIFY(!second->projectCode());

        LiveQuery<TaskTemplate> templates(store.context(), allRecords(), QueryOrder::SortOrder);
        QCOMPARE(templates.results().size(), 1);
        QCOMPARE(templates.results().at(0)->id(), ids[2]);
        QCOMPARE(templates.results().at(0)->name(), u"Skabelon"_s);
        QCOMPARE(templates.results().at(0)->sortOrder(), 2);

        LiveQuery<ProjectCode> codes(store.context(), allRecords(), QueryOrder::SortOrder);
        QCOMPARE(codes.results().size(), 1);
        QCOMPARE(codes.results().at(0)->id(), ids[3]);
        QCOMPARE(codes.results().at(0)->code(), u"4711"_s);
        QCOMPARE(codes.results().at(0)->name(), u"Støtte"_s);
        QCOMPARE(codes.results().at(0)->sortOrder(), 9);
    }

    void shouldKeepARunningTaskRunning()
    {
        // given
        TestStore store(m_clock);
        store.insertTask(u"Kører"_s)->start();

        // when
        store.reopen();
        m_clock.advance(3600);

        // then
        LiveQuery<Task> running(store.context(), runningTasks(), QueryOrder::Store);
        QCOMPARE(running.results().size(), 1);
        QCOMPARE(running.results().at(0)->currentTotalSeconds(), 3600);
    }

    void shouldLeaveTheTasksOfADeletedCodeAlone()
    {
        // given
        TestStore store(m_clock);
        auto *const code = store.insert<ProjectCode>(u"4711"_s, u""_s);
        store.insert<Task>(u"Møde"_s, m_clock.now(), u"4711"_s);

        // when
        store.context().remove(code);
        store.reopen();

        // then
        LiveQuery<Task> tasks(store.context(), allRecords(), QueryOrder::Store);
        QCOMPARE(tasks.results().at(0)->projectCode().value_or(u"none"_s), u"4711"_s);
        LiveQuery<ProjectCode> codes(store.context(), allRecords(), QueryOrder::SortOrder);
        QVERIFY(codes.results().isEmpty());
    }

    void shouldBeTheOwnersAloneWhateverTheUmask_data()
    {
        QTest::addColumn<int>("umask");
        QTest::newRow("for all") << 0;
        QTest::newRow("for the group") << 007;
        QTest::newRow("for nobody") << 0777;
    }
    void shouldBeTheOwnersAloneWhateverTheUmask()
    {
        QFETCH(int, umask);

        // given
        const QTemporaryDir directory;
        const QString path = directory.filePath(u"made/data/store.sqlite"_s);

        // when
        const mode_t before = ::umask(static_cast<mode_t>(umask));
        ModelContainer container(path, m_clock);
        container.mainContext().insert(
            std::make_unique<Task>(m_clock, u"Møde"_s, m_clock.now(), std::nullopt));
        QVERIFY(container.mainContext().save());
        ::umask(before);

        // then
        QCOMPARE(mode(directory.filePath(u"made"_s)), 0700);
        QCOMPARE(mode(directory.filePath(u"made/data"_s)), 0700);
        const auto files = QFileInfo(path).dir().entryInfoList(QDir::Files);
        QVERIFY(files.size() >= 2); // the store and its log
        for (const QFileInfo &each : files)
            QCOMPARE(mode(each.filePath()), 0600);
    }

    void shouldTakeBackWhatOthersMayDo()
    {
        // given a store that came back from a backup with the log of a crash, for all to read
        const QTemporaryDir directory;
        const auto dataHome = withDataHome(QFile::encodeName(directory.path()));
        const QString folder = directory.filePath(QCoreApplication::applicationName());
        const QString path = folder + u"/store.sqlite"_s;
        {
            TestStore store(m_clock);
            store.insertTask(u"Møde"_s);
            QVERIFY(store.context().save());
            write(path, contents(store.path()));
            write(path + u"-wal"_s, contents(store.path() + u"-wal"_s));
        }
        for (const QString &each : {path, path + u"-wal"_s})
            QCOMPARE(::chmod(QFile::encodeName(each).constData(), 0755), 0);
        QCOMPARE(::chmod(QFile::encodeName(folder).constData(), 0777), 0);

        // when
        const QString why = failure(path);

        // then it is the owner's alone
        QCOMPARE(why, QString());
        QCOMPARE(mode(path), 0600);
        QCOMPARE(mode(folder), 0700);

        // when the directory is not the program's own
        QCOMPARE(::chmod(QFile::encodeName(directory.path()).constData(), 0755), 0);
        const QString whyElsewhere = failure(directory.filePath(u"store.sqlite"_s));

        // then it is left as it is
        QCOMPARE(whyElsewhere, QString());
        QCOMPARE(mode(directory.path()), 0755);
    }

    void shouldRefuseFilesThatOthersMayWrite_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<int>("mode");
        QTest::newRow("a store for the group") << u""_s << 0620;
        QTest::newRow("a store for others") << u""_s << 0602;
        QTest::newRow("a store for all") << u""_s << 0666;
        QTest::newRow("a log for the group") << u"-wal"_s << 0660;
        QTest::newRow("a journal for others") << u"-journal"_s << 0606;
    }
    void shouldRefuseFilesThatOthersMayWrite()
    {
        QFETCH(QString, suffix);
        QFETCH(int, mode);

        // given a store with a file that somebody else may have changed
        TestStore store(m_clock);
        store.close();
        const QByteArray before = contents(store.path());
        const QString part = store.path() + suffix;
        if (!suffix.isEmpty())
            write(part, {});
        QCOMPARE(::chmod(QFile::encodeName(part).constData(), static_cast<mode_t>(mode)), 0);

        // when it is opened
        const QString why = failure(store.path());

        // then it is refused, with what to do, and stays as it is
        QVERIFY2(why.contains("others may write it"_L1), qPrintable(why));
        QVERIFY2(why.contains(u"chmod go-w \""_s + part + u'"'), qPrintable(why));
        QCOMPARE(this->mode(part), mode);
        QCOMPARE(contents(store.path()), before);
    }

    void shouldRefuseFilesWithASecondName_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::newRow("the store") << u""_s;
        QTest::newRow("its log") << u"-wal"_s;
        QTest::newRow("its journal") << u"-journal"_s;
    }
    void shouldRefuseFilesWithASecondName()
    {
        QFETCH(QString, suffix);

        // given a store with a file that is hard-linked
        TestStore store(m_clock);
        store.close();
        const QByteArray before = contents(store.path());
        const QString part = store.path() + suffix;
        if (!suffix.isEmpty())
            write(part, {});
        const QTemporaryDir elsewhere;
        const QString other = elsewhere.filePath(u"other"_s);
        QCOMPARE(::link(QFile::encodeName(part).constData(), QFile::encodeName(other).constData()),
                 0);

        // when it is opened
        const QString why = failure(store.path());

        // then it is refused, and stays as it is under both names
        QVERIFY2(why.contains("is hard-linked"_L1), qPrintable(why));
        QVERIFY2(why.contains(u'"' + part + u'"'), qPrintable(why));
        QCOMPARE(contents(store.path()), before);
        QCOMPARE(contents(other), suffix.isEmpty() ? before : QByteArray());

        // when it has one name only
        QVERIFY(QFile::remove(other));
        const QString whyThen = failure(store.path());

        // then it is opened again
        QCOMPARE(whyThen, QString());
    }

    void shouldRefuseFilesOfAnotherUser_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::newRow("the store") << u""_s;
        QTest::newRow("its log") << u"-wal"_s;
    }
    void shouldRefuseFilesOfAnotherUser()
    {
        QFETCH(QString, suffix);

        // given a store with a file of somebody else
        if (::geteuid() != 0)
            QSKIP("Only the superuser can give a file to another user.");
        TestStore store(m_clock);
        store.close();
        const QByteArray before = contents(store.path());
        const QString part = store.path() + suffix;
        if (!suffix.isEmpty())
            write(part, {});
        constexpr uid_t nobody = 65534;
        QCOMPARE(::chown(QFile::encodeName(part).constData(), nobody, static_cast<gid_t>(-1)), 0);

        // when it is opened
        const QString why = failure(store.path());

        // then it is refused, and stays as it is
        QVERIFY2(why.contains("belongs to another user"_L1), qPrintable(why));
        QVERIFY2(why.contains(u'"' + part + u'"'), qPrintable(why));
        QCOMPARE(QFileInfo(part).ownerId(), nobody);
        QCOMPARE(contents(store.path()), before);
    }

    void shouldIgnoreADataHomeThatIsNoFullPath_data()
    {
        QTest::addColumn<QByteArray>("dataHome");
        QTest::newRow("relative") << QByteArray("data");
        QTest::newRow("relative with a dot") << QByteArray("./data");
        QTest::newRow("empty") << QByteArray("");
    }
    void shouldIgnoreADataHomeThatIsNoFullPath()
    {
        QFETCH(QByteArray, dataHome);

        // given a home, and another current directory
        const QTemporaryDir home;
        const QTemporaryDir current;
        const auto before = qScopeGuard([path = QDir::currentPath(), home = qgetenv("HOME")] {
            QDir::setCurrent(path);
            qputenv("HOME", home);
        });
        QVERIFY(QDir::setCurrent(current.path()));
        qputenv("HOME", QFile::encodeName(home.path()));
        const auto set = withDataHome(dataHome);

        // when the store is opened
        const QString why = failure(ModelContainer::defaultPath());

        // then it lies in the home
        QCOMPARE(why, QString());
        QVERIFY(QFile::exists(home.filePath(
            u".local/share/"_s + QCoreApplication::applicationName() + u"/store.sqlite"_s)));
        QVERIFY(QDir(current.path()).isEmpty());
    }

    void shouldWorkWhereADirectorysNameIsNoText()
    {
        // given a place for data whose name is not UTF-8
        const QTemporaryDir directory;
        const std::filesystem::path home =
            QFile::encodeName(directory.path()).toStdString() + "/d\xe6ta";
        const auto removal = qScopeGuard([home] { std::filesystem::remove_all(home); });
        const auto set = withDataHome(QByteArray::fromStdString(home.native()));

        // when a task is made there, and the store is asked for once more
        auto container = std::make_unique<ModelContainer>(ModelContainer::defaultPath(), m_clock);
        container->mainContext().insert(
            std::make_unique<Task>(m_clock, u"Møde"_s, m_clock.now(), std::nullopt));
        const QString why = failure(ModelContainer::defaultPath());

        // then it is found to be in use
        QVERIFY2(why.contains("in use"_L1), qPrintable(why));

        // when it closes
        container.reset();

        // then it lies there, with its reserve, and nothing lies beside that place, under a name
        // made a text
        const auto folder = home / QCoreApplication::applicationName().toStdString();
        QVERIFY(std::filesystem::exists(folder / "store.sqlite"));
        QVERIFY(std::filesystem::exists(folder / "store.sqlite-reserve"));
        QVERIFY(!std::filesystem::exists(folder / "store.sqlite-wal"));
        const std::filesystem::directory_iterator places(home.parent_path());
        QCOMPARE(std::distance(begin(places), end(places)), 1);

        // when it is opened again
        container = std::make_unique<ModelContainer>(ModelContainer::defaultPath(), m_clock);
        LiveQuery<Task> tasks(container->mainContext(), allRecords(), QueryOrder::Store);

        // then
        QCOMPARE(tasks.results().size(), 1);
    }

    void shouldRefuseASecondWriter()
    {
        // given
        TestStore store(m_clock);

        // when
        const QString why = failure(store.path());

        // then
        QVERIFY2(why.contains("in use by another process"_L1), qPrintable(why));

        // when the first goes on
        store.insertTask(u"Møde"_s);

        // then
        QVERIFY(store.context().save());
    }

    void shouldRefuseAndNotTouchWhatIsNoStore_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QString>("why");

        QTest::newRow("text") << QByteArray("Kære dagbog\n").repeated(1000)
                              << u"is not a store of TULO Time Tracker"_s;
        QTest::newRow("empty") << QByteArray() << u"is empty"_s;
        QTest::newRow("half a header")
            << QByteArray("SQLite format 3") << u"is not a store of TULO Time Tracker"_s;
    }
    void shouldRefuseAndNotTouchWhatIsNoStore()
    {
        QFETCH(QByteArray, file);
        QFETCH(QString, why);

        // given
        const QTemporaryDir directory;
        const QString path = directory.filePath(u"store.sqlite"_s);
        write(path, file);

        // when
        const QString said = failure(path);

        // then
        QVERIFY2(said.contains(why), qPrintable(said));
        QVERIFY(said.contains(path));
        QCOMPARE(contents(path), file);
    }

    void shouldRefuseAndNotTouchAnotherSchema_data()
    {
        QTest::addColumn<QByteArray>("change");
        QTest::addColumn<QString>("why");

        QTest::newRow("newer") << QByteArray("PRAGMA user_version = 10100")
                               << u"newer version of TULO Time Tracker (schema 1.1.0"_s;
        QTest::newRow("older") << QByteArray("PRAGMA user_version = 900")
                               << u"schema version 0.9.0"_s;
        QTest::newRow("another program's")
            << QByteArray("PRAGMA application_id = 1") << u"database of another program"_s;
        const auto row = [](const char *name, const char *change, const QString &part) {
            QTest::newRow(name) << QByteArray(change)
                                << u"has another schema than this program's: the "_s + part;
        };
        row("a column is missing", "ALTER TABLE TaskTemplate DROP COLUMN sortOrder",
            u"table \"TaskTemplate\""_s);
        row("a column of another type",
            "DROP TABLE TaskTemplate; CREATE TABLE TaskTemplate (rowid INTEGER PRIMARY KEY, "
            "id BLOB NOT NULL, name BLOB NOT NULL, sortOrder INTEGER NOT NULL, "
            "createdAt REAL NOT NULL) STRICT",
            u"table \"TaskTemplate\""_s);
        row("one column more", "ALTER TABLE ProjectCode ADD COLUMN more TEXT",
            u"table \"ProjectCode\""_s);
        row("a table more", "CREATE TABLE more (x)", u"table \"more\""_s);
        row("a table is missing", "DROP TABLE ProjectCode", u"table \"ProjectCode\""_s);
        row("statistics", "ANALYZE", u"table \"sqlite_stat1\""_s);
        row("an index more", "CREATE INDEX more ON Task (name)", u"index \"more\""_s);
        row("an index is missing", "DROP INDEX TaskByID", u"index \"TaskByID\""_s);
        row("an index of something else",
            "DROP INDEX TaskByID; CREATE INDEX TaskByID ON Task (name)", u"index \"TaskByID\""_s);
        row("a trigger", "CREATE TRIGGER swallow AFTER INSERT ON Task BEGIN DELETE FROM Task; END",
            u"trigger \"swallow\""_s);
        row("a view", "CREATE VIEW more AS SELECT * FROM Task", u"view \"more\""_s);
        row("a view in a table's place",
            "ALTER TABLE TaskTemplate RENAME TO more; CREATE VIEW TaskTemplate AS SELECT * FROM "
            "more",
            u"table \"TaskTemplate\""_s);
        row("a name that is no text", "CREATE TABLE \"\x1b[2J\" (x)", u"table \"?[2J\""_s);
    }
    void shouldRefuseAndNotTouchAnotherSchema()
    {
        QFETCH(QByteArray, change);
        QFETCH(QString, why);

        // given a store that something else has changed
        TestStore store(m_clock);
        store.insertTask(u"Møde"_s);
        store.close();
        execute(store.path(), change.constData());
        const QByteArray before = contents(store.path());

        // when it is opened
        const QString said = failure(store.path());

        // then it is refused, and stays as it is
        QVERIFY2(said.contains(why), qPrintable(said));
        QCOMPARE(contents(store.path()), before);
    }

    void shouldNotFoldTheLogOfANewerStoreIntoIt()
    {
        // given a newer store whose program was killed: its file and its log
        const QTemporaryDir directory;
        const QString path = directory.filePath(u"store.sqlite"_s);
        QByteArray file;
        QByteArray log;
        {
            TestStore store(m_clock);
            store.close();
            execute(store.path(), "PRAGMA user_version = 20000");
            SQLite::Database other(QFile::encodeName(store.path()).constData(),
                                   SQLite::OPEN_READWRITE);
            other.exec("INSERT INTO TaskTemplate (id, name, sortOrder, createdAt) "
                       "VALUES (x'00', 'a', 0, 0.0)");
            file = contents(store.path());
            log = contents(store.path() + u"-wal"_s);
        }
        QVERIFY(!log.isEmpty());
        write(path, file);
        write(path + u"-wal"_s, log);

        // when
        const QString why = failure(path);

        // then
        QVERIFY2(why.contains("schema 2.0.0"_L1), qPrintable(why));
        QCOMPARE(contents(path), file);
        QCOMPARE(contents(path + u"-wal"_s), log);
    }

    void shouldTakeUpTheLogOfItsOwnStore()
    {
        // given a store whose program was killed
        const QTemporaryDir directory;
        const QString path = directory.filePath(u"store.sqlite"_s);
        {
            TestStore store(m_clock);
            store.insertTask(u"Møde"_s);
            QVERIFY(store.context().save());
            QVERIFY(QFile::copy(store.path(), path));
            QVERIFY(QFile::copy(store.path() + u"-wal"_s, path + u"-wal"_s));
        }

        // when
        ModelContainer container(path, m_clock);

        // then
        LiveQuery<Task> tasks(container.mainContext(), allRecords(), QueryOrder::Store);
        QCOMPARE(tasks.results().size(), 1);
        QCOMPARE(tasks.results().at(0)->name(), u"Møde"_s);
    }

    void shouldReplaceAnUnfinishedNewStore()
    {
        // given that the machine stopped while the store was first made
        const QTemporaryDir directory;
        const QString path = directory.filePath(u"data/store.sqlite"_s);
        write(path + u".new"_s, "half a store");

        // when
        const QString why = failure(path);

        // then
        QCOMPARE(why, QString());
        QVERIFY(!QFile::exists(path + u".new"_s));
        QVERIFY(QFile::exists(path));
    }

    void shouldRefuseADirectoryOrALinkInTheFilesPlace()
    {
        // given a directory in the file's place
        const QTemporaryDir directory;
        const QString path = directory.filePath(u"store.sqlite"_s);
        QVERIFY(QDir().mkpath(path));

        // then
        QVERIFY(failure(path).contains("is not a plain file"_L1));

        // when a link to a store comes in its place
        QVERIFY(QDir().rmdir(path));
        TestStore store(m_clock);
        store.close();
        QVERIFY(QFile::link(store.path(), path));

        // then
        QVERIFY(failure(path).contains("is not a plain file"_L1));
        QVERIFY(QFileInfo(path).isSymLink());

        // when it is a link to nowhere, which is no invitation to make a store there
        QVERIFY(QFile::remove(path));
        QVERIFY(QFile::link(directory.filePath(u"nowhere"_s), path));

        // then
        QVERIFY(failure(path).contains("is not a plain file"_L1));
        QVERIFY(!QFile::exists(directory.filePath(u"nowhere"_s)));
    }

    void shouldNotFollowALinkWhereItMakesAFile_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::newRow("the new store") << u".new"_s;
        QTest::newRow("the reserve") << u"-reserve"_s;
    }
    void shouldNotFollowALinkWhereItMakesAFile()
    {
        QFETCH(QString, suffix);

        // given
        const QTemporaryDir directory;
        const QString path = directory.filePath(u"store.sqlite"_s);
        const QString other = directory.filePath(u"other"_s);
        write(other, "somebody else's");
        QVERIFY(QFile::link(other, path + suffix));

        // when
        const QString why = failure(path);

        // then
        QCOMPARE(why, QString());
        QCOMPARE(contents(other), "somebody else's");
        QVERIFY(!QFileInfo(path).isSymLink());
        QVERIFY(!QFileInfo(path + suffix).isSymLink());
        QCOMPARE(QDir(directory.path()).entryList(QDir::Files),
                 (QStringList{u"other"_s, u"store.sqlite"_s, u"store.sqlite-reserve"_s}));
    }

    void shouldKeepAReserveOfRealBlocks_data()
    {
        QTest::addColumn<QByteArray>("left");
        QTest::addColumn<int>("size");
        QTest::addColumn<int>("mode");
        QTest::newRow("where there was none") << QByteArray() << 0 << 0;
        QTest::newRow("instead of a shorter one") << QByteArray(4096, '\0') << 4096 << 0600;
        QTest::newRow("instead of one without blocks")
            << QByteArray(1, '\0') << Reserve::size << 0600;
        QTest::newRow("instead of one for all to read")
            << QByteArray(Reserve::size, '\1') << Reserve::size << 0644;
    }
    void shouldKeepAReserveOfRealBlocks()
    {
        QFETCH(QByteArray, left);
        QFETCH(int, size);
        QFETCH(int, mode);

        // given
        const QTemporaryDir directory;
        const QString path = directory.filePath(u"store.sqlite"_s);
        const QByteArray reserve = QFile::encodeName(path + u"-reserve"_s);
        if (!left.isEmpty()) {
            write(path + u"-reserve"_s, left);
            QVERIFY(QFile::resize(path + u"-reserve"_s, size));
            QCOMPARE(::chmod(reserve.constData(), static_cast<mode_t>(mode)), 0);
        }

        // when
        const QString why = failure(path);

        // then
        QCOMPARE(why, QString());
        struct stat status {
        };
        QCOMPARE(::stat(reserve.constData(), &status), 0);
        QCOMPARE(status.st_mode & 07777, 0600U);
        QCOMPARE(status.st_size, Reserve::size);
        QVERIFY(status.st_blocks * 512 >= Reserve::size);
    }

    void shouldDoWithoutAReserveWhereADirectoryIsInItsPlace()
    {
        // given
        const QTemporaryDir directory;
        const QString path = directory.filePath(u"store.sqlite"_s);
        QVERIFY(QDir().mkpath(path + u"-reserve/kept"_s));
        {
            // when
            ModelContainer container(path, m_clock);
            container.mainContext().insert(
                std::make_unique<Task>(m_clock, u"Møde"_s, m_clock.now(), std::nullopt));

            // then
            QVERIFY(container.mainContext().save());
        }
        QVERIFY(QFileInfo(path + u"-reserve/kept"_s).isDir());
    }

    void shouldMakeAStoreWhereFilesCannotBeKeptFromBeingReplaced()
    {
        // given a file system that knows no such renaming
        const QTemporaryDir directory;
        const QString path = directory.filePath(u"store.sqlite"_s);
        s_renameError = EINVAL;
        const auto restore = qScopeGuard([] { s_renameError = 0; });

        // when
        const QString why = failure(path);

        // then
        QCOMPARE(why, QString());
        QVERIFY(QFileInfo(path).isFile());
        QVERIFY(!QFileInfo::exists(path + u".new"_s));
    }

    void shouldSayWhenTheNewStoreCannotGetItsName()
    {
        // given
        const QTemporaryDir directory;
        const QString path = directory.filePath(u"store.sqlite"_s);
        s_renameError = EIO;
        const auto restore = qScopeGuard([] { s_renameError = 0; });

        // when
        const QString why = failure(path);

        // then
        QVERIFY2(why.contains(u'"' + path + u"\" cannot be made: Input/output error"_s),
                 qPrintable(why));
        QVERIFY(!QFileInfo::exists(path));
    }

    void shouldSayHowToTakeAwayTheMarkOfAnImmutableDirectory()
    {
        // given
        const QTemporaryDir directory;
        const QString path = directory.filePath(u"store.sqlite"_s);
        s_accessError = EPERM;
        const auto restore = qScopeGuard([] { s_accessError = 0; });

        // when
        const QString why = failure(path);

        // then
        QVERIFY2(
            why.contains(u"This takes the mark away: chattr -i \""_s + directory.path() + u'"'),
            qPrintable(why));
        QVERIFY(!QFileInfo::exists(path));
    }

    void shouldMakeItsDirectoryInOneThatCannotBeRead()
    {
        // given
        const QTemporaryDir directory;
        const QByteArray name = QFile::encodeName(directory.path());
        // To the superuser rights mean nothing.
        constexpr uid_t nobody = 65534;
        const uid_t user = ::geteuid();
        QCOMPARE(::chown(name.constData(), user == 0 ? nobody : user, static_cast<gid_t>(-1)), 0);
        QCOMPARE(::chmod(name.constData(), 0300), 0);

        // when
        QCOMPARE(::seteuid(user == 0 ? nobody : user), 0);
        const QString why = failure(directory.filePath(u"data/store.sqlite"_s));
        QCOMPARE(::seteuid(user), 0);
        QCOMPARE(::chmod(name.constData(), 0700), 0);

        // then
        QCOMPARE(why, QString());
        QVERIFY(QFileInfo(directory.filePath(u"data/store.sqlite"_s)).isFile());
    }

    void shouldLeaveTheStoreAndItsReserveWhenItCloses()
    {
        // given
        const QTemporaryDir directory;
        const QString path = directory.filePath(u"store.sqlite"_s);
        const QStringList left{u"store.sqlite"_s, u"store.sqlite-reserve"_s};
        const auto files = [&] { return QDir(directory.path()).entryList(QDir::Files); };

        for (int start = 0; start < 2; ++start) {
            // when
            const QString why = failure(path);

            // then
            QCOMPARE(why, QString());
            QCOMPARE(files(), left);
        }

        // when a program that was killed has left more
        write(path + u"-wal"_s, {});
        write(path + u"-shm"_s, QByteArray(32768, '\0'));
        const QString why = failure(path);

        // then that goes, too
        QCOMPARE(why, QString());
        QCOMPARE(files(), left);
    }

    void shouldFollowLinksInTheDirectoriesAbove()
    {
        // given
        const QTemporaryDir directory;
        QVERIFY(QDir().mkpath(directory.filePath(u"real"_s)));
        QVERIFY(QFile::link(directory.filePath(u"real"_s), directory.filePath(u"link"_s)));

        // when
        const QString why = failure(directory.filePath(u"link/store.sqlite"_s));

        // then
        QCOMPARE(why, QString());
        QVERIFY(QFile::exists(directory.filePath(u"real/store.sqlite"_s)));
    }

    void shouldSayWhichRightIsMissingAndLockAndMakeNothing_data()
    {
        QTest::addColumn<QString>("changed");
        QTest::addColumn<int>("mode");
        QTest::addColumn<bool>("isNew");
        QTest::addColumn<QStringList>("words");

        const QStringList file{u"you lack the rights to read and write the file"_s,
                               u"chmod u+rw \""_s};
        const QStringList folder{u"you lack the rights to make files in the directory"_s,
                                 u"chmod u+rwx \""_s};
        QTest::newRow("to write the store")
            << u"data/store.sqlite"_s << 0400 << false << file + QStringList{u"mode 0400"_s};
        QTest::newRow("to read the store")
            << u"data/store.sqlite"_s << 0200 << false << file + QStringList{u"mode 0200"_s};
        QTest::newRow("to write the log")
            << u"data/store.sqlite-wal"_s << 0400 << false << file + QStringList{u"mode 0400"_s};
        QTest::newRow("to make files beside the store")
            << u"data"_s << 0500 << false << folder + QStringList{u"mode 0500"_s};
        QTest::newRow("to enter the directory")
            << u"data"_s << 0600 << false << folder + QStringList{u"mode 0600"_s};
        QTest::newRow("to make a store")
            << u"data"_s << 0500 << true << folder + QStringList{u"mode 0500"_s};
        QTest::newRow("to read the directory")
            << u"data"_s << 0300 << true << folder + QStringList{u"mode 0300"_s};
        QTest::newRow("to make the directory") << u""_s << 0500 << true << folder;
    }
    void shouldSayWhichRightIsMissingAndLockAndMakeNothing()
    {
        QFETCH(QString, changed);
        QFETCH(int, mode);
        QFETCH(bool, isNew);
        QFETCH(QStringList, words);

        // given a store and its log, or a place for them, that the user may not use as they are, in
        // a directory that another process has locked
        const QTemporaryDir directory;
        const QString data = directory.filePath(u"data"_s);
        const QString path = data + u"/store.sqlite"_s;
        QStringList parts{directory.path()};
        if (!isNew) {
            QCOMPARE(failure(path), QString());
            write(path + u"-wal"_s, {});
        }
        if (!changed.isEmpty())
            QVERIFY(QDir().mkpath(data));
        for (const QString &part : {data, path, path + u"-wal"_s}) {
            if (QFileInfo::exists(part))
                parts << part;
        }
        // To the superuser rights mean nothing.
        constexpr uid_t nobody = 65534;
        const uid_t user = ::geteuid();
        for (const QString &part : std::as_const(parts))
            QCOMPARE(::chown(QFile::encodeName(part).constData(), user == 0 ? nobody : user,
                             static_cast<gid_t>(-1)),
                     0);
        const QByteArray before = isNew ? QByteArray() : contents(path);
        const QString parent = QDir(data).exists() ? data : directory.path();
        // So long ago that a name that comes and goes shows, however coarse the disk's times are.
        const std::filesystem::path folder = QFile::encodeName(parent).toStdString();
        std::filesystem::last_write_time(folder,
                                         std::filesystem::file_time_type::clock::now() - 1h);
        const auto change = std::filesystem::last_write_time(folder);
        const int held = lock(parent);
        QVERIFY(held >= 0);
        const QString target = directory.filePath(changed);
        QCOMPARE(::chmod(QFile::encodeName(target).constData(), static_cast<mode_t>(mode)), 0);

        // when it is opened
        QCOMPARE(::seteuid(user == 0 ? nobody : user), 0);
        const QString why = failure(path);
        QCOMPARE(::seteuid(user), 0);
        ::close(held);
        QCOMPARE(::chmod(QFile::encodeName(target).constData(), 0700), 0);

        // then it is refused, with what to do, and stays as it is
        QVERIFY(std::filesystem::last_write_time(folder) == change);
        QCOMPARE(isNew ? QByteArray() : contents(path), before);
        for (const QString &word : std::as_const(words))
            QVERIFY2(why.contains(word), qPrintable(why));
        QVERIFY2(why.contains(path) || why.contains(u'"' + data + u'"'), qPrintable(why));
        QVERIFY2(why.contains(u'"' + QDir::cleanPath(target) + u'"'), qPrintable(why));
    }

    void shouldNotWaitForeverForItsTurn()
    {
        // given a store in a directory that another process has locked
        TestStore store(m_clock);
        store.close();
        const QString directory = QFileInfo(store.path()).path();
        const int held = lock(directory);
        QVERIFY(held >= 0);
        const auto letGo = qScopeGuard([held] { ::close(held); });

        // when
        const QString why = failure(store.path(), {1h, 1h, 1ms});

        // then
        QVERIFY2(why.contains("locked by another process"_L1), qPrintable(why));
        QVERIFY2(why.contains(u'"' + directory + u'"'), qPrintable(why));
    }

    void shouldRefuseWhatIsNoFileInTheStoresPlaces_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::addColumn<bool>("isLink");
        QTest::newRow("pipe for the store") << u""_s << false;
        QTest::newRow("pipe for the log") << u"-wal"_s << false;
        QTest::newRow("pipe for the journal") << u"-journal"_s << false;
        QTest::newRow("pipe for the log's index") << u"-shm"_s << false;
        QTest::newRow("link for the log") << u"-wal"_s << true;
        QTest::newRow("link for the journal") << u"-journal"_s << true;
    }
    void shouldRefuseWhatIsNoFileInTheStoresPlaces()
    {
        QFETCH(QString, suffix);
        QFETCH(bool, isLink);

        // given
        TestStore store(m_clock);
        store.close();
        const QString place = store.path() + suffix;
        const QByteArray name = QFile::encodeName(place);
        const QByteArray before = contents(store.path());
        if (suffix.isEmpty())
            QVERIFY(QFile::remove(place));
        if (isLink)
            QVERIFY(QFile::link(store.path(), place));
        else
            QCOMPARE(::mkfifo(name.constData(), 0600), 0);

        // when
        const QString why = failure(store.path());

        // then it is refused, and all stays as it is
        QVERIFY2(why.contains("is not a plain file"_L1), qPrintable(why));
        QVERIFY2(why.contains(u'"' + place + u'"'), qPrintable(why));
        const auto left = std::filesystem::symlink_status(name.toStdString());
        QVERIFY(isLink ? std::filesystem::is_symlink(left) : std::filesystem::is_fifo(left));
        if (!suffix.isEmpty())
            QCOMPARE(contents(store.path()), before);
    }

    void shouldSayWhenTheDirectoryCannotBeMade()
    {
        // given
        const QTemporaryDir directory;
        write(directory.filePath(u"file"_s), "in the way");

        // when
        const QString why = failure(directory.filePath(u"file/data/store.sqlite"_s));

        // then
        QVERIFY2(why.contains("cannot be made"_L1), qPrintable(why));
    }
};

QTEST_GUILESS_MAIN(TestModelContainer)
#include "tst_modelcontainer.moc"
