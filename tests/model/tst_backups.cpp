#include "../support/standarderror.h"
#include "../support/teststore.h"
#include "model/backupfiles.h"
#include "model/storefiles.h"
#include "model/tasklist.h"
#include "model/tasktemplate.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <QDir>
#include <QProcess>
#include <QTest>
#include <QtEndian>

#include <fcntl.h>
#include <sys/stat.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace fs = std::filesystem;

namespace
{

constexpr SaveDelays onlyWhenAsked{1h, 1h, 10s, 1h, 1h};
constexpr qint64 pageSize = 4096;

fs::path pathOf(const QString &path)
{
    return QFile::encodeName(path).toStdString();
}

/// The names of the tasks in the store at @p path, which is not opened for writing.
QStringList tasksIn(const fs::path &path)
{
    SQLite::Database database(path.native(), SQLite::OPEN_READONLY);
    SQLite::Statement query(database, "SELECT name FROM Task ORDER BY rowid");
    QStringList names;
    while (query.executeStep())
        names << QString::fromStdString(query.getColumn(0).getString());
    return names;
}

/// What SQLite thinks of the file at @p path.
QString verdictOn(const fs::path &path)
{
    SQLite::Database database(path.native(), SQLite::OPEN_READONLY);
    return QString::fromStdString(database.execAndGet("PRAGMA integrity_check").getString());
}

void setTime(const fs::path &path, Instant time)
{
    const struct timespec second {
        static_cast<time_t>(time), 0
    };
    const struct timespec times[] = {second, second};
    QCOMPARE(::utimensat(AT_FDCWD, path.c_str(), times, 0), 0);
}

void write(const fs::path &path, const QByteArray &content, qint64 size = -1)
{
    QDir().mkpath(QFile::decodeName(path.parent_path().c_str()));
    QFile file(QFile::decodeName(path.c_str()));
    QVERIFY(file.open(QIODevice::WriteOnly));
    QCOMPARE(file.write(content), content.size());
    if (size >= 0)
        QVERIFY(file.resize(size));
}

/// The days that the store at @p path has backups of, the newest first.
QStringList daysWithBackup(const QString &path)
{
    QStringList days;
    for (const BackupFile &backup : backupsOf(pathOf(path)))
        days << backup.day.toString(Qt::ISODate);
    return days;
}

QStringList filesBesideBackups(const QString &path)
{
    return QDir(QFile::decodeName(backupDirectory(pathOf(path)).c_str()))
        .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
}

/// Overwrites a page of the closed store, or the backup, at @p path, which holds more than 1 MB.
void damagePage(const fs::path &path)
{
    QFile file(QFile::decodeName(path.c_str()));
    QVERIFY(file.open(QIODevice::ReadWrite));
    QVERIFY(file.size() > 1'000'000);
    QVERIFY(file.seek(100 * pageSize));
    QCOMPARE(file.write(QByteArray(pageSize, '\xff')), pageSize);
}

/// Takes the rows of @p task out of the index @p index of the closed store at @p path, as damage
/// may do.
void breakIndex(const QString &path, const std::string &index, const std::string &task)
{
    SQLite::Database database(pathOf(path).native(), SQLite::OPEN_READWRITE);
    database.exec("PRAGMA writable_schema = ON; CREATE TEMP TABLE kept AS SELECT * FROM "
                  "sqlite_schema WHERE name = '" +
                  index + "'; DELETE FROM sqlite_schema WHERE name = '" + index + "'");
    {
        // Knows nothing of the index, and so leaves the rows out of it.
        SQLite::Database blind(pathOf(path).native(), SQLite::OPEN_READWRITE);
        blind.exec("UPDATE Task SET date = date + 1, id = randomblob(16), lastStartTime = 1 WHERE "
                   "name = '" +
                   task + "'");
    }
    database.exec("INSERT INTO sqlite_schema SELECT * FROM kept");
}

/// Turns the date of @p task, in the closed store at @p path, into a text, as damage may do. An
/// index, however new, holds that text, and is asked for the number that the text stands for.
void turnDateIntoText(const QString &path, const std::string &task)
{
    SQLite::Database database(pathOf(path).native(), SQLite::OPEN_READWRITE);
    database.exec("PRAGMA writable_schema = ON; UPDATE sqlite_schema SET "
                  "sql = replace(sql, 'date REAL', 'date TEXT') WHERE name = 'Task'");
    {
        // Takes the column for one of texts.
        SQLite::Database misled(pathOf(path).native(), SQLite::OPEN_READWRITE);
        misled.exec("UPDATE Task SET date = '1795000000' WHERE name = '" + task + "'");
    }
    database.exec("UPDATE sqlite_schema SET sql = replace(sql, 'date TEXT', 'date REAL') "
                  "WHERE name = 'Task'");
}

/// Lets the first pages of the tasks, in the closed store at @p path, be one and the same.
void repeatPages(const QString &path)
{
    int root = 0;
    {
        SQLite::Database database(pathOf(path).native(), SQLite::OPEN_READONLY);
        root = database.execAndGet("SELECT rootpage FROM sqlite_schema WHERE name = 'Task'");
    }
    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadWrite));
    const qint64 start = (root - 1) * pageSize;
    QVERIFY(file.seek(start));
    const QByteArray page = file.read(pageSize);
    // A page that refers to others: each of its cells begins with a page's number.
    QCOMPARE(page.at(0), '\x05');
    const auto cell = [&page](qsizetype number) {
        return qFromBigEndian<quint16>(page.constData() + 12 + 2 * number);
    };
    for (const qsizetype number : {1, 2}) {
        QVERIFY(file.seek(start + cell(number)));
        QCOMPARE(file.write(page.mid(cell(0), 4)), 4);
    }
}

} // namespace

class TestBackups : public QObject
{
    Q_OBJECT

private:
    FakeClock m_clock{u"2026-11-20T16:00:00"_s};

    static fs::path backupOf(const TestStore &store, const char *day)
    {
        return backupPath(pathOf(store.path()),
                          QDate::fromString(QString::fromLatin1(day), Qt::ISODate));
    }

    /// Lets the store at @p store be as if it had last been written to on @p time.
    void setTimeOfStore(const TestStore &store, const QString &time) const
    {
        setTime(pathOf(store.path()), m_clock.at(time));
    }

    /// Lets the twentieth end, so that its backup is in the making, and something change after it.
    void letADayEnd(TestStore &store)
    {
        store.backups().begin();
        store.insertTask(u"Fredag"_s);
        QVERIFY(store.context().save());
        m_clock.set(u"2026-11-21T00:00:00"_s);
        QVERIFY(store.backups().isMaking());
        store.insertTask(u"Lørdag"_s);
        QVERIFY(store.context().save());
    }

private Q_SLOTS:
    void init() { m_clock.set(u"2026-11-20T16:00:00"_s); }

    void shouldMakeABackupWhenTheDayEnds()
    {
        // given
        TestStore store(m_clock, onlyWhenAsked);
        store.backups().begin();
        store.insertTask(u"Møde"_s);
        QVERIFY(store.context().save());

        // when
        m_clock.set(u"2026-11-21T00:00:00"_s);

        // then
        QTRY_VERIFY(!store.backups().isMaking());
        const fs::path backup = backupOf(store, "2026-11-20");
        QCOMPARE(filesBesideBackups(store.path()), QStringList{u"2026-11-20.sqlite"_s});
        QCOMPARE(tasksIn(backup), QStringList{u"Møde"_s});
        QCOMPARE(verdictOn(backup), u"ok"_s);
    }

    void shouldKeepBackupsFromOthers()
    {
        // given
        const mode_t before = ::umask(0);
        TestStore store(m_clock, onlyWhenAsked);
        store.backups().begin();
        store.insertTask(u"Møde"_s);
        QVERIFY(store.context().save());

        // when
        store.backups().finish();
        ::umask(before);

        // then
        struct stat file {
        };
        struct stat directory {
        };
        const fs::path backup = backupOf(store, "2026-11-20");
        QCOMPARE(::stat(backup.c_str(), &file), 0);
        QCOMPARE(::stat(backup.parent_path().c_str(), &directory), 0);
        QCOMPARE(file.st_mode & 07777, 0600U);
        QCOMPARE(directory.st_mode & 07777, 0700U);
    }

    void shouldMakeABackupWhenTheProgramEnds()
    {
        // given
        TestStore store(m_clock, onlyWhenAsked);
        store.backups().begin();
        store.insertTask(u"Formiddag"_s);
        QVERIFY(store.context().save());

        // when
        store.backups().finish();

        // then
        const fs::path backup = backupOf(store, "2026-11-20");
        QCOMPARE(tasksIn(backup), QStringList{u"Formiddag"_s});

        // when the program is used once more on that day
        store.reopen();
        store.backups().begin();
        store.insertTask(u"Eftermiddag"_s);
        QVERIFY(store.context().save());
        store.backups().finish();

        // then the day still has one backup, with all that was done
        QCOMPARE(filesBesideBackups(store.path()), QStringList{u"2026-11-20.sqlite"_s});
        QCOMPARE(tasksIn(backup), (QStringList{u"Formiddag"_s, u"Eftermiddag"_s}));
    }

    void shouldNotMakeTheUserWaitForTheEnd()
    {
        // given a program's end that may take no time
        TestStore store(m_clock, SaveDelays{1h, 1h, 10s, 0ms, 0ms});
        store.backups().begin();
        store.insertTask(u"Møde"_s);
        QVERIFY(store.context().save());

        // when
        const QString said = saidBy([&] { store.backups().finish(); });
        store.close();

        // then there is no backup, and no trace of one
        QCOMPARE(said, QString());
        QCOMPARE(filesBesideBackups(store.path()), QStringList());

        // when the program is started on the next day
        setTimeOfStore(store, u"2026-11-20T16:00:00"_s);
        m_clock.set(u"2026-11-21T08:00:00"_s);
        store.open();
        store.backups().begin();

        // then it is made
        QTRY_COMPARE(filesBesideBackups(store.path()), QStringList{u"2026-11-20.sqlite"_s});
    }

    void shouldMakeNoneWhereNothingHasChanged()
    {
        // given a store with the backup of a day
        TestStore store(m_clock, onlyWhenAsked);
        store.backups().begin();
        store.insertTask(u"Møde"_s);
        QVERIFY(store.context().save());
        store.backups().finish();
        store.close();

        // when the program runs for two days, and is ended
        m_clock.set(u"2026-11-21T08:00:00"_s);
        store.open();
        store.backups().begin();
        m_clock.set(u"2026-11-22T00:00:00"_s);

        // then there is nothing to do
        QVERIFY(!store.backups().isMaking());
        store.backups().finish();
        QCOMPARE(daysWithBackup(store.path()), QStringList{u"2026-11-20"_s});
    }

    void shouldMakeItAtTheStartIfAnEarlierDaysChangesAreInNone_data()
    {
        QTest::addColumn<QString>("madeAt");
        QTest::addColumn<bool>("isMade");
        QTest::newRow("there is none") << QString() << true;
        QTest::newRow("it was made before the change") << u"2026-11-20T12:00:00"_s << true;
        QTest::newRow("it was made after the change") << u"2026-11-20T17:00:00"_s << false;
    }
    void shouldMakeItAtTheStartIfAnEarlierDaysChangesAreInNone()
    {
        QFETCH(QString, madeAt);
        QFETCH(bool, isMade);

        // given a store that was last changed at four o'clock on the twentieth
        TestStore store(m_clock, SaveDelays{1h, 1h, 10s, 0ms, 1h});
        store.insertTask(u"Møde"_s);
        QVERIFY(store.context().save());
        store.close();
        setTimeOfStore(store, u"2026-11-20T16:00:00"_s);
        const fs::path backup = backupOf(store, "2026-11-20");
        if (!madeAt.isEmpty()) {
            write(backup, "an older one");
            setTime(backup, m_clock.at(madeAt));
        }

        // when the program is started on the next day
        m_clock.set(u"2026-11-21T08:00:00"_s);
        store.open();
        store.backups().begin();

        // then
        if (isMade) {
            QTRY_VERIFY(sizeOf(backup) > 1000);
            QTRY_VERIFY(!store.backups().isMaking());
            QCOMPARE(tasksIn(backup), QStringList{u"Møde"_s});
        } else {
            store.backups().finish();
            QCOMPARE(sizeOf(backup), 12);
        }
        QCOMPARE(daysWithBackup(store.path()), QStringList{u"2026-11-20"_s});
    }

    void shouldHaveTheChangesOfAKilledProgram()
    {
        // given what a killed program left: changes that are in the log alone
        const QTemporaryDir directory;
        const QString path = directory.filePath(u"store.sqlite"_s);
        {
            TestStore killed(m_clock);
            killed.insertTask(u"Møde"_s);
            QVERIFY(killed.context().save());
            for (const QString &suffix : {u""_s, u"-wal"_s})
                QVERIFY(QFile::copy(killed.path() + suffix, path + suffix));
        }
        setTime(pathOf(path), m_clock.at(u"2026-11-18T16:00:00"_s));
        setTime(pathOf(path + u"-wal"_s), m_clock.at(u"2026-11-19T16:00:00"_s));

        // when it is started again
        ModelContainer container(path, m_clock, SaveDelays{1h, 1h, 10s, 0ms, 1h});
        container.backups().begin();

        // then the backup has them, and is that of their day
        const fs::path backup = backupPath(pathOf(path), QDate(2026, 11, 19));
        QTRY_VERIFY(fs::exists(backup));
        QCOMPARE(tasksIn(backup), QStringList{u"Møde"_s});
    }

    void shouldNotBackTodayUpAtTheStart()
    {
        // given
        TestStore store(m_clock, SaveDelays{1h, 1h, 10s, 0ms, 1h});
        store.close();
        setTimeOfStore(store, u"2026-11-20T09:00:00"_s);
        store.open();
        store.backups().begin();
        QTimer later;
        later.setSingleShot(true);

        // when the time for it has come
        later.start(0ms);
        QTRY_VERIFY(!later.isActive());

        // then
        QVERIFY(!store.backups().isMaking());
        QCOMPARE(daysWithBackup(store.path()), QStringList());
    }

    void shouldKeepFourteenDays()
    {
        // given twenty days with backups, and files that are none
        TestStore store(m_clock, onlyWhenAsked);
        const fs::path directory = backupDirectory(pathOf(store.path()));
        QStringList expected{u"2026-11-20"_s};
        for (int day = 19; day > 0; --day) {
            const QString name = QDate(2026, 10, day).toString(Qt::ISODate);
            write(directory / (name.toStdString() + ".sqlite"), "x");
            if (expected.size() < 14)
                expected << name;
        }
        write(directory / "notes.txt", "x");
        write(directory / "2026-13-01.sqlite", "x");
        write(directory / "2026-10-31.sqlite.gz", "x");
        fs::create_directory(directory / "2026-10-30.sqlite");
        store.backups().begin();
        store.insertTask(u"Møde"_s);
        QVERIFY(store.context().save());

        // when
        store.backups().finish();

        // then
        QCOMPARE(daysWithBackup(store.path()), expected);
        QVERIFY(fs::exists(directory / "notes.txt"));
        QVERIFY(fs::exists(directory / "2026-13-01.sqlite"));
        QVERIFY(fs::exists(directory / "2026-10-31.sqlite.gz"));
        QVERIFY(fs::exists(directory / "2026-10-30.sqlite"));
    }

    void shouldTakeUpNoMoreThan256Megabytes_data()
    {
        QTest::addColumn<QList<int>>("megabytes");
        QTest::addColumn<QStringList>("days");
        QTest::newRow("the oldest go")
            << QList<int>{100, 100, 100, 1}
            << QStringList{u"2026-11-20"_s, u"2026-10-30"_s, u"2026-10-29"_s};
        QTest::newRow("all but the newest go")
            << QList<int>{300, 1} << QStringList{u"2026-11-20"_s};
    }
    void shouldTakeUpNoMoreThan256Megabytes()
    {
        QFETCH(QList<int>, megabytes);
        QFETCH(QStringList, days);

        // given backups of that size, one a day back from the thirtieth
        TestStore store(m_clock, onlyWhenAsked);
        const fs::path directory = backupDirectory(pathOf(store.path()));
        for (int i = 0; i < megabytes.size(); ++i) {
            const std::string day = QDate(2026, 10, 30 - i).toString(Qt::ISODate).toStdString();
            write(directory / (day + ".sqlite"), "x", megabytes.at(i) * 1'000'000LL);
        }
        store.backups().begin();
        store.insertTask(u"Møde"_s);
        QVERIFY(store.context().save());

        // when
        store.backups().finish();

        // then
        QCOMPARE(daysWithBackup(store.path()), days);
    }

    void shouldRemoveWhatAKilledProgramDidNotFinish()
    {
        // given
        TestStore store(m_clock, onlyWhenAsked);
        const fs::path directory = backupDirectory(pathOf(store.path()));
        for (const char *const name : {"unfinished", "unfinished-journal", "unfinished-wal"})
            write(directory / name, "half of a backup");
        store.backups().begin();
        store.insertTask(u"Møde"_s);
        QVERIFY(store.context().save());

        // when
        store.backups().finish();

        // then
        QCOMPARE(filesBesideBackups(store.path()), QStringList{u"2026-11-20.sqlite"_s});
    }

    void shouldSayWhatKeepsItFromBeingMade_data()
    {
        QTest::addColumn<QString>("obstacle");
        QTest::addColumn<bool>("isDirectory");
        QTest::addColumn<QString>("reason");
        QTest::newRow("a file where the directory should be")
            << u"backups"_s << false << u"File exists"_s;
        QTest::newRow("a directory where it is made")
            << u"backups/unfinished"_s << true << u"File exists"_s;
        QTest::newRow("a directory that has its name")
            << u"backups/2026-11-20.sqlite"_s << true << u"Is a directory"_s;
    }
    void shouldSayWhatKeepsItFromBeingMade()
    {
        QFETCH(QString, obstacle);
        QFETCH(bool, isDirectory);
        QFETCH(QString, reason);

        // given
        TestStore store(m_clock, onlyWhenAsked);
        const fs::path path = pathOf(store.path()).parent_path() / pathOf(obstacle);
        if (isDirectory)
            fs::create_directories(path);
        else
            write(path, "not a directory");
        store.backups().begin();
        store.insertTask(u"Møde"_s);
        QVERIFY(store.context().save());

        // when
        const QString said = saidBy([&] { store.backups().finish(); });

        // then
        QVERIFY2(said.startsWith(u"The backup \""_s +
                                 QFile::decodeName(backupOf(store, "2026-11-20").c_str()) +
                                 u"\" could not be made: "_s),
                 qPrintable(said));
        QVERIFY2(said.contains(reason), qPrintable(said));

        // when that is gone
        QVERIFY(fs::remove(path));
        store.backups().finish();

        // then it is made, though nothing has changed since
        QCOMPARE(tasksIn(backupOf(store, "2026-11-20")), QStringList{u"Møde"_s});
    }

    void shouldTryAgainWhenTheNextDayEnds()
    {
        // given a day whose end sees no backup
        TestStore store(m_clock, onlyWhenAsked);
        const fs::path directory = backupDirectory(pathOf(store.path()));
        write(directory, "not a directory");
        store.backups().begin();
        store.insertTask(u"Møde"_s);
        QVERIFY(store.context().save());
        const QString said = saidBy([&] { m_clock.set(u"2026-11-21T00:00:00"_s); });
        QVERIFY2(said.contains("could not be made"_L1), qPrintable(said));
        // and leaves nothing to go on with
        QTimer later;
        later.setSingleShot(true);
        later.start(0ms);
        QTRY_VERIFY(!later.isActive());

        // when there is nothing in the way any more
        QVERIFY(fs::remove(directory));
        m_clock.set(u"2026-11-22T00:00:00"_s);

        // then it is made
        QTRY_VERIFY(!store.backups().isMaking());
        QCOMPARE(daysWithBackup(store.path()), QStringList{u"2026-11-20"_s});
        QCOMPARE(tasksIn(backupOf(store, "2026-11-20")), QStringList{u"Møde"_s});
    }

    void shouldMakeOneBackupAfterTheOther()
    {
        // given one in the making, and changes of the day that has begun
        TestStore store(m_clock, onlyWhenAsked);
        letADayEnd(store);

        // when that day ends, too, before it is made
        m_clock.set(u"2026-11-22T00:00:00"_s);

        // then it is made
        QTRY_VERIFY(!store.backups().isMaking());
        QCOMPARE(daysWithBackup(store.path()), QStringList{u"2026-11-20"_s});

        // when the program ends
        store.backups().finish();

        // then so is that of the other day
        QCOMPARE(daysWithBackup(store.path()), (QStringList{u"2026-11-21"_s, u"2026-11-20"_s}));
        QCOMPARE(tasksIn(backupOf(store, "2026-11-21")), (QStringList{u"Fredag"_s, u"Lørdag"_s}));
    }

    void shouldBeginNoOtherAtTheEndWhileOneIsUnfinished()
    {
        // given one in the making, later changes, and a program's end that may take no time
        TestStore store(m_clock, SaveDelays{1h, 1h, 10s, 1h, 0ms});
        letADayEnd(store);
        const fs::path log = pathOf(store.path() + u"-wal"_s);
        QVERIFY(sizeOf(log) > 0);

        // when
        const QString said = saidBy([&] { store.backups().finish(); });

        // then there is none and no trace of one, and what begins one, the log's way into the
        // store, has been left out
        QCOMPARE(said, QString());
        QCOMPARE(filesBesideBackups(store.path()), QStringList());
        QVERIFY(sizeOf(log) > 0);
    }

    void shouldMakeOneOfTheNewestChangesWhereAnEarlierOneFailed()
    {
        // given one in the making that cannot have its name, and later changes
        TestStore store(m_clock, onlyWhenAsked);
        letADayEnd(store);
        fs::create_directory(backupOf(store, "2026-11-20"));
        const QString said = saidBy([&] { QTRY_VERIFY(!store.backups().isMaking()); });
        QVERIFY2(said.contains("could not be made"_L1), qPrintable(said));

        // when the program ends
        store.backups().finish();

        // then their day has one
        QCOMPARE(daysWithBackup(store.path()), QStringList{u"2026-11-21"_s});
        QCOMPARE(tasksIn(backupOf(store, "2026-11-21")), (QStringList{u"Fredag"_s, u"Lørdag"_s}));
    }

    void shouldCopyAStoreThatIsChangedMeanwhile()
    {
        // given a store that takes several slices
        TestStore store(m_clock, onlyWhenAsked);
        const QString text(100'000, u'x');
        for (int i = 0; i < 300; ++i)
            store.insertTask(text);
        QVERIFY(store.context().save());
        store.backups().begin();
        store.insertTask(u"I går"_s);
        QVERIFY(store.context().save());

        // when tasks are made while it is copied
        m_clock.set(u"2026-11-21T00:00:00"_s);
        QVERIFY(store.backups().isMaking());
        int changes = 0;
        QTimer user;
        connect(&user, &QTimer::timeout, this, [&] {
            if (!store.backups().isMaking())
                return;
            store.insertTask(u"I dag"_s);
            QVERIFY(store.context().save());
            ++changes;
        });
        user.start(0ms);
        QTRY_VERIFY_WITH_TIMEOUT(!store.backups().isMaking(), 60'000);
        user.stop();

        // then the copy is whole
        QVERIFY(changes > 0);
        const fs::path backup = backupOf(store, "2026-11-20");
        QCOMPARE(verdictOn(backup), u"ok"_s);
        QVERIFY(tasksIn(backup).contains(u"I går"_s));

        // when that day ends, too
        m_clock.set(u"2026-11-22T00:00:00"_s);
        QTRY_VERIFY_WITH_TIMEOUT(!store.backups().isMaking(), 60'000);

        // then it has a backup with all of them
        QCOMPARE(tasksIn(backupOf(store, "2026-11-21")).count(u"I dag"_s), changes);
    }

    void shouldBuildABrokenIndexAnew_data()
    {
        QTest::addColumn<QByteArray>("index");
        for (const char *const index : {"TaskByDate", "TaskByID", "RunningTask"})
            QTest::newRow(index) << QByteArray(index);
    }
    void shouldBuildABrokenIndexAnew()
    {
        QFETCH(QByteArray, index);

        // given a store, too large to be looked through at the start, whose index misses a task
        TestStore store(m_clock, onlyWhenAsked);
        store.insertTask(QString(1'100'000, u'x'));
        store.insertTask(u"Skjult"_s);
        store.close();
        breakIndex(store.path(), index.toStdString(), "Skjult");
        QVERIFY(verdictOn(pathOf(store.path())) != u"ok"_s);
        store.open();
        store.backups().begin();

        // when
        const QString said = saidBy([&] { store.backups().finish(); });

        // then
        QVERIFY2(said.contains(u"The index "_s + QString::fromLatin1(index) + u" of the store"_s),
                 qPrintable(said));
        QVERIFY2(said.contains("There is no good backup."_L1), qPrintable(said));
        const std::vector<BackupFile> backups = backupsOf(pathOf(store.path()));
        QCOMPARE(backups.size(), 1U);
        QCOMPARE(verdictOn(backups.front().path), u"ok"_s);
        store.close();
        QCOMPARE(verdictOn(pathOf(store.path())), u"ok"_s);
    }

    void shouldBuildAnIndexAnewOnlyOnce()
    {
        // given a store, too large to be looked through at the start, with a date that no index can
        // find
        TestStore store(m_clock, SaveDelays{1h, 1h, 10s, 1h, 1min});
        store.insertTask(QString(1'100'000, u'x'));
        store.insertTask(u"Skadet"_s);
        store.close();
        turnDateIntoText(store.path(), "Skadet");
        store.open();
        store.backups().begin();

        // when
        const QString said = saidBy([&] { store.backups().finish(); });

        // then
        QCOMPARE(said.count("built anew"_L1), 1);
        QVERIFY2(said.contains("the index TaskByDate does not find all rows, though it is new."_L1),
                 qPrintable(said));
        QCOMPARE(filesBesideBackups(store.path()), QStringList());
    }

    void shouldGiveNoNameToACopyOfAStoreWhosePagesRepeat()
    {
        // given a store of many pages, too large to be looked through at the start
        TestStore store(m_clock, onlyWhenAsked);
        const QString name(1000, u'x');
        for (int i = 0; i < 1500; ++i)
            store.insertTask(name);
        store.close();
        repeatPages(store.path());
        store.open();
        store.backups().begin();

        // when
        const QString said = saidBy([&] { store.backups().finish(); });

        // then
        QVERIFY2(said.contains("the store is damaged, rows of the table Task cannot be read (they "
                               "are not in order)"_L1),
                 qPrintable(said));
        QCOMPARE(filesBesideBackups(store.path()), QStringList());
    }

    void shouldGiveNoNameToACopyOfADamagedStore_data()
    {
        QTest::addColumn<bool>("isTask");
        QTest::newRow("a task") << true;
        QTest::newRow("a template, which no index has") << false;
    }
    void shouldGiveNoNameToACopyOfADamagedStore()
    {
        QFETCH(bool, isTask);

        // given a store with a backup
        TestStore store(m_clock, onlyWhenAsked);
        store.backups().begin();
        const QString name(1'200'000, u'x');
        if (isTask)
            store.insertTask(name);
        else
            store.insert<TaskTemplate>(name);
        QVERIFY(store.context().save());
        store.backups().finish();
        store.close();
        const fs::path good = backupOf(store, "2026-11-20");
        QVERIFY(fs::exists(good));
        // and damage that does not show at the start
        damagePage(pathOf(store.path()));
        m_clock.set(u"2026-11-21T12:00:00"_s);
        store.open();
        store.backups().begin();
        store.insertTask(u"Ny"_s);
        QVERIFY(store.context().save());

        // when
        const QString said = saidBy([&] { store.backups().finish(); });

        // then
        QVERIFY2(said.contains(u"the store is damaged, rows of the table "_s +
                               (isTask ? u"Task cannot"_s : u"TaskTemplate cannot"_s)),
                 qPrintable(said));
        QVERIFY2(said.contains(u"The newest good backup is \""_s + QFile::decodeName(good.c_str()) +
                               u"\".\n"_s),
                 qPrintable(said));
        QCOMPARE(filesBesideBackups(store.path()), QStringList{u"2026-11-20.sqlite"_s});
        QCOMPARE(verdictOn(good), u"ok"_s);
    }

    void shouldNotTakeADamagedBackupForAGoodOne_data()
    {
        QTest::addColumn<bool>("isStore");
        QTest::newRow("one with a damaged page") << true;
        QTest::newRow("another program's database") << false;
    }
    void shouldNotTakeADamagedBackupForAGoodOne()
    {
        QFETCH(bool, isStore);

        // given a good backup, too large to be looked through as a store is at the start
        TestStore store(m_clock, onlyWhenAsked);
        store.backups().begin();
        store.insertTask(QString(1'200'000, u'x'));
        QVERIFY(store.context().save());
        store.backups().finish();
        const fs::path good = backupOf(store, "2026-11-20");
        // and a newer one that is not
        const fs::path newer = backupOf(store, "2026-11-21");
        if (isStore) {
            fs::copy_file(good, newer);
            damagePage(newer);
        } else {
            SQLite::Database(newer.native(), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE)
                .exec("CREATE TABLE Other (name TEXT)");
        }

        // when
        const std::optional<BackupFile> newest = newestGoodBackup(pathOf(store.path()));

        // then
        QVERIFY(newest);
        QCOMPARE(QFile::decodeName(newest->path.c_str()), QFile::decodeName(good.c_str()));
    }

    void shouldTellHowToPutABackupBack_data()
    {
        QTest::addColumn<QByteArray>("store");
        QTest::addColumn<bool>("isThere");
        QTest::newRow("damaged") << QByteArray("SQLite format 3\0 and noise", 27) << true;
        QTest::newRow("another kind of file") << QByteArray("noise") << true;
        QTest::newRow("empty") << QByteArray() << true;
        QTest::newRow("missing beside its log") << QByteArray() << false;
    }
    void shouldTellHowToPutABackupBack()
    {
        QFETCH(QByteArray, store);
        QFETCH(bool, isThere);

        // given two backups, of which the newer one is damaged, in a place with an awkward name
        const QTemporaryDir directory;
        const QString path = directory.filePath(u"Bo's $HOME \"og\" æøå/store.sqlite"_s);
        {
            ModelContainer container(path, m_clock, onlyWhenAsked);
            container.mainContext().insert(
                std::make_unique<Task>(m_clock, u"Møde"_s, m_clock.now(), std::nullopt));
            QVERIFY(container.mainContext().save());
            container.backups().begin();
            container.backups().finish();
        }
        const std::vector<BackupFile> made = backupsOf(pathOf(path));
        QCOMPARE(made.size(), 1U);
        const fs::path good = backupPath(pathOf(path), QDate(2026, 11, 19));
        fs::rename(made.front().path, good);
        write(backupPath(pathOf(path), QDate(2026, 11, 20)), "noise");
        // and a store that is of no use, with a log and a place for such that is taken
        if (isThere)
            write(pathOf(path), store);
        else
            QVERIFY(QFile::remove(path));
        write(pathOf(path + u"-wal"_s), "the log of another store");
        QVERIFY(QDir(QFileInfo(path).path()).mkdir(u"damaged"_s));

        // when
        QString why;
        try {
            const ModelContainer container(path, m_clock);
        } catch (const StoreError &error) {
            why = QString::fromUtf8(error.what());
        }

        // then
        QVERIFY2(why.contains("The newest good backup is of 2026-11-19."_L1), qPrintable(why));
        const QStringList lines = why.split(u'\n');
        QCOMPARE(lines.size(), 4);

        // when both commands are run
        for (const QString &command : lines.mid(2))
            QCOMPARE(QProcess::execute(u"/bin/sh"_s, {u"-c"_s, command}), 0);

        // then the store is the backup's, and what lay there is kept
        ModelContainer container(path, m_clock);
        LiveQuery<Task> tasks(container.mainContext(), allRecords(), QueryOrder::Store);
        QCOMPARE(tasks.results().size(), 1);
        QVERIFY(QFile::exists(QFileInfo(path).path() + u"/damaged-2/store.sqlite-wal"_s));
    }
};

QTEST_GUILESS_MAIN(TestBackups)
#include "tst_backups.moc"
