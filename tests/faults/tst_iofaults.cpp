#include "../support/fakeclock.h"
#include "../support/standarderror.h"
#include "faultvfs.h"
#include "model/backupfiles.h"
#include "model/projectcode.h"
#include "model/reserve.h"
#include "model/task.h"
#include "model/tasklist.h"
#include "model/tasktemplate.h"
#include "storeimage.h"
#include "storeuser.h"

#include <QDir>
#include <QTemporaryDir>
#include <QTest>

#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>

#include <csignal>
#include <functional>
#include <optional>
#include <random>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

struct Fault {
    FileOperation operation;
    int code;
    const char *name;
};

constexpr Fault faults[] = {
    {FileOperation::Open, SQLITE_CANTOPEN, "open"},
    {FileOperation::Access, SQLITE_IOERR_ACCESS, "access"},
    {FileOperation::Delete, SQLITE_IOERR_DELETE, "delete"},
    {FileOperation::Read, SQLITE_IOERR_READ, "read"},
    {FileOperation::Write, SQLITE_FULL, "write: disk full"},
    {FileOperation::Write, SQLITE_IOERR_WRITE, "write: error"},
    {FileOperation::Write, SQLITE_READONLY, "write: read-only"},
    {FileOperation::Truncate, SQLITE_IOERR_TRUNCATE, "truncate"},
    {FileOperation::Sync, SQLITE_IOERR_FSYNC, "sync: error"},
    {FileOperation::Sync, SQLITE_FULL, "sync: disk full"},
    {FileOperation::FileSize, SQLITE_IOERR_FSTAT, "file size"},
    {FileOperation::Lock, SQLITE_IOERR_LOCK, "lock: error"},
    {FileOperation::Lock, SQLITE_BUSY, "lock: held"},
    {FileOperation::SharedMemory, SQLITE_IOERR_SHMMAP, "shared memory: error"},
    {FileOperation::SharedMemory, SQLITE_BUSY, "shared memory: held"},
};

/// The file as the store that it becomes once it is put back.
StoreImage imageOf(const BackupFile &backup)
{
    QFile file(QFile::decodeName(backup.path.c_str()));
    return file.open(QIODevice::ReadOnly) ? StoreImage{{u""_s, file.readAll()}} : StoreImage();
}

/// A disk that is small enough to be filled. The namespace that it is mounted in goes with this
/// process.
class SmallDisk
{
public:
    /// @p options are tmpfs's own.
    explicit SmallDisk(const char *options)
        : m_isMounted(::unshare(CLONE_NEWNS) == 0 &&
                      ::mount(nullptr, "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
                      ::mount("tmpfs", name().constData(), "tmpfs", 0, options) == 0)
    {
    }
    ~SmallDisk()
    {
        if (m_isMounted)
            ::umount2(name().constData(), MNT_DETACH);
    }
    Q_DISABLE_COPY_MOVE(SmallDisk)

    /// Whether this process has the right to mount one.
    bool isMounted() const { return m_isMounted; }
    QString path() const { return m_directory.path(); }

    /// Takes up all of its room.
    void fill() const
    {
        QFile file(m_directory.filePath(u"filler"_s));
        QVERIFY(file.open(QIODevice::WriteOnly | QIODevice::Unbuffered));
        while (file.write(QByteArray(4096, 'x')) == 4096) {
        }
    }
    /// Takes up all of its inodes.
    void fillWithFiles() const
    {
        bool isFull = false;
        for (int number = 0; !isFull; ++number) {
            QFile file(m_directory.filePath(QString::number(number)));
            isFull = !file.open(QIODevice::WriteOnly);
        }
    }
    /// Gives back what fill() took.
    void clear() const { QVERIFY(QFile::remove(m_directory.filePath(u"filler"_s))); }
    void makeReadOnly() const
    {
        QCOMPARE(::mount(nullptr, name().constData(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr), 0);
    }

private:
    QByteArray name() const { return QFile::encodeName(m_directory.path()); }

    QTemporaryDir m_directory;
    bool m_isMounted;
};

} // namespace

class TestIoFaults : public QObject
{
    Q_OBJECT

private:
    /// A store in use that the program was killed with: its log is not empty.
    StoreImage m_used;
    Contents m_usedContents;

    QTemporaryDir m_directory;
    int m_runs = 0;
    int m_refusals = 0;

    /// A path for another store; the last one goes.
    QString newPath()
    {
        QDir(m_directory.filePath(QString::number(m_runs))).removeRecursively();
        return m_directory.filePath(QString::number(++m_runs) + u"/store.sqlite"_s);
    }

    static void addFaults()
    {
        QTest::addColumn<int>("fault");
        for (int i = 0; i < static_cast<int>(std::size(faults)); ++i)
            QTest::newRow(faults[i].name) << i;
    }

    enum class Work { Little, Much };
    enum class Heals { BeforeClosing, AfterClosing };
    /// What goes wrong, and when.
    struct Trouble {
        Fault fault;
        int position;
        FaultVfs::Duration duration;
        Heals heals;
    };

    /// A user works in a store while something goes wrong. Whether it did; a failed test, too,
    /// counts as if it had not.
    bool workInTrouble(const StoreImage &before, const Contents &contents, Work work,
                       const Trouble &trouble)
    {
        bool hasFailed = false;
        [&] {
            const QString path = newPath();
            writeImage(path, before);
            FaultVfs vfs;
            vfs.failAt(trouble.fault.operation, trouble.position, trouble.fault.code,
                       trouble.duration);

            std::optional<StoreUser> user;
            try {
                user.emplace(path, contents);
            } catch (const StoreError &) {
                // Refused; then nothing has happened to it.
                QVERIFY(vfs.hasFailed());
                vfs.heal();
                QVERIFY(isOneOf(readImage(path), {contents}));
                hasFailed = true;
                ++m_refusals;
                return;
            }
            if (work == Work::Little)
                user->work();
            else
                user->workALot();

            if (trouble.heals == Heals::AfterClosing) {
                // What could be written holds.
                QList<Contents> possible = user->possible();
                possible.append(user->contents());
                user.reset();
                vfs.heal();
                QVERIFY(isOneOf(readImage(path), possible));
                hasFailed = vfs.hasFailed();
                return;
            }
            const StoreImage killed = readImage(path);
            vfs.heal();
            // Were the program killed now, then what could be written would hold.
            QVERIFY(isOneOf(killed, user->possible()));
            // All is written as soon as it can be, without being asked, and everything is shown.
            QTRY_VERIFY(!user->context().hasChanges());
            QTRY_VERIFY(user->seesAllTasks());
            const Contents expected = user->contents();
            user.reset();
            QVERIFY(isOneOf(readImage(path), {expected}));
            hasFailed = vfs.hasFailed();
        }();
        return hasFailed && !QTest::currentTestFailed();
    }

    /// Lets the fault set in at each position in turn; returns at how many there was one. The
    /// further on, the larger are the steps, by @p growth.
    int workInEveryTrouble(const StoreImage &before, const Contents &contents, Work work,
                           double growth = 1)
    {
        int runs = 0;
        const auto run = [&](const Fault &fault, FaultVfs::Duration duration, Heals heals) {
            double position = 1;
            while (workInTrouble(before, contents, work,
                                 {fault, static_cast<int>(position), duration, heals})) {
                ++runs;
                position = std::max(position + 1, position * growth);
            }
        };
        QFETCH(int, fault);
        for (const auto duration : {FaultVfs::Duration::Once, FaultVfs::Duration::ForGood}) {
            for (const Heals heals : {Heals::BeforeClosing, Heals::AfterClosing})
                run(faults[fault], duration, heals);
        }
        return runs;
    }

    /// Fills the room at @p directory, lets tasks be made there that do not fit, and calls
    /// @p makeRoom: then they are written.
    void workOnAFullDisk(const QString &directory, const std::function<void()> &fill,
                         const std::function<void()> &makeRoom)
    {
        const FakeClock clock;
        const QString path = directory + u"/data/store.sqlite"_s;
        Contents expected;
        {
            ModelContainer container(path, clock, {1h, 1ms});
            ModelContext &context = container.mainContext();
            const auto insert = [&](const QString &name) {
                auto task = std::make_unique<Task>(clock, name, clock.now(), std::nullopt);
                expected.insert(task->id(), describe(*task));
                context.insert(std::move(task));
            };
            insert(u"mens der er plads"_s);
            QVERIFY(context.save());
            fill();
            // more than the reserve holds
            insert(u"når disken er fuld"_s.repeated(30'000));
            QVERIFY(!context.save());
            insert(u"og mere"_s);
            QVERIFY(!context.save());
            QVERIFY(contentsOf(context) == expected);

            makeRoom();
            QTRY_VERIFY(!context.hasChanges());
        }
        QVERIFY(isOneOf(readImage(path), {expected}));
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
        context.insert(std::make_unique<TaskTemplate>(clock, u"skabelon"_s));
        context.insert(std::make_unique<ProjectCode>(clock, u"4711"_s, u"Støtte"_s));
        QVERIFY(context.save());
        m_used = readImage(path);
        m_usedContents = contentsOf(context);
        QCOMPARE(m_usedContents.size(), 5);
        QVERIFY(!m_used.value(u"-wal"_s).isEmpty());
    }

    void cleanupTestCase() { qInfo("%d runs, %d of them refused the store", m_runs, m_refusals); }

    void shouldLoseNothingWhenAnOperationFails_data() { addFaults(); }
    void shouldLoseNothingWhenAnOperationFails()
    {
        const int runs = workInEveryTrouble(m_used, m_usedContents, Work::Little);
        QVERIFY(runs > 0);
    }

    void shouldLoseNothingWhenAnOperationFailsWithMuchToWrite_data() { addFaults(); }
    void shouldLoseNothingWhenAnOperationFailsWithMuchToWrite()
    {
        const int runs = workInEveryTrouble(m_used, m_usedContents, Work::Much, 3);
        QVERIFY(runs > 0);
    }

    void shouldMakeAWholeStoreOrNoneWhenAnOperationFails_data() { addFaults(); }
    void shouldMakeAWholeStoreOrNoneWhenAnOperationFails()
    {
        const int runs = workInEveryTrouble({}, {}, Work::Little);
        QVERIFY(runs > 0);
    }

    void shouldNameABackupOnlyWhenItIsWhole_data() { addFaults(); }
    void shouldNameABackupOnlyWhenItIsWhole()
    {
        QFETCH(int, fault);
        int runs = 0;
        for (const auto duration : {FaultVfs::Duration::Once, FaultVfs::Duration::ForGood}) {
            bool hasFailed = true;
            for (int position = 1; hasFailed && !QTest::currentTestFailed(); ++position) {
                // given
                const QString path = newPath();
                writeImage(path, m_used);
                FaultVfs vfs;
                const FakeClock clock;
                ModelContainer container(path, clock, {1h, 1h, 10s, 1h, 1h});
                Backups &backups = container.backups();
                const auto made = [&] { return backupsOf(QFile::encodeName(path).toStdString()); };
                backups.begin();

                // when an operation fails while it is made
                vfs.failAt(faults[fault].operation, position, faults[fault].code, duration);
                const QString said = saidBy([&] { backups.finish(); });
                hasFailed = vfs.hasFailed();
                runs += hasFailed ? 1 : 0;
                vfs.heal();

                // then it is whole or has no name, and the store has lost nothing
                QVERIFY2(!said.contains("damaged"_L1), qPrintable(said));
                for (const BackupFile &backup : made())
                    QVERIFY(isOneOf(imageOf(backup), {m_usedContents}));
                QVERIFY(contentsOf(container.mainContext()) == m_usedContents);

                // when nothing fails any more
                backups.finish();

                // then there is one
                QCOMPARE(made().size(), 1U);
                QVERIFY(isOneOf(imageOf(made().front()), {m_usedContents}));
            }
        }
        if (runs == 0)
            QSKIP("This takes no such operation");
    }

    void shouldHaveWhatWasSavedAfterAPowerCut_data()
    {
        QTest::addColumn<bool>("isNew");
        QTest::addColumn<bool>("isMuch");
        QTest::newRow("in a new store") << true << false;
        QTest::newRow("in a store with a log") << false << false;
        QTest::newRow("when the log is moved into the store") << false << true;
    }
    void shouldHaveWhatWasSavedAfterAPowerCut()
    {
        QFETCH(bool, isNew);
        QFETCH(bool, isMuch);

        // given
        const FakeClock clock;
        std::mt19937 random(20261121); // NOLINT(cert-msc51-cpp): every run is to be the same
        int cuts = 0;
        bool wasCut = true;
        for (double position = 1; wasCut && !QTest::currentTestFailed();
             position = isMuch ? position * 1.2 + 1 : position + 1) {
            wasCut = false;
            const QString path = newPath();
            if (isNew)
                const ModelContainer made(path, clock);
            else
                writeImage(path, m_used);
            FaultVfs vfs;
            // Several futures for each moment: of what was not synced, other sectors are there.
            QList<StoreImage> images;
            const Contents before = isNew ? Contents() : m_usedContents;
            QList<Contents> possible{before};
            QList<Contents> possibleAtTheEnd;
            std::optional<StoreUser> user;
            vfs.cutPowerAt(static_cast<int>(position), [&] {
                wasCut = true;
                if (user)
                    possible = user->possible();
                else if (!possibleAtTheEnd.isEmpty())
                    possible = possibleAtTheEnd;
                for (int future = 0; future < (isMuch ? 2 : 10); ++future) {
                    StoreImage image;
                    const auto files = vfs.filesAfterPowerCut(random);
                    for (auto file = files.cbegin(); file != files.cend(); ++file)
                        image.insert(file.key().mid(path.size()), *file);
                    images.append(image);
                }
            });

            // when
            user.emplace(path, before);
            if (!wasCut) {
                if (isMuch)
                    user->workALot();
                else
                    user->work();
            }
            possibleAtTheEnd = user->possible();
            user.reset();

            // then
            for (const StoreImage &image : std::as_const(images)) {
                QVERIFY(isOneOf(image, possible));
                ++cuts;
            }
        }

        QVERIFY(cuts > 0);
        qInfo("%d power cuts", cuts);
    }

    void shouldGiveANewStoreItsNameOnlyWhenItIsOnTheDisk()
    {
        // given
        const QString path = newPath();
        const FaultVfs vfs;
        const FakeClock clock;

        // when
        const ModelContainer container(path, clock);

        // then
        QVERIFY(vfs.isSynced(path + u".new"_s));
    }

    void shouldGiveItsReserveWhereAQuotaKeepsItFromWriting()
    {
        // given
        const QString path = newPath();
        writeImage(path, m_used);
        FaultVfs vfs;
        const FakeClock clock;
        ModelContainer container(path, clock, {1h, 1h});
        ModelContext &context = container.mainContext();
        const QString reserve = path + u"-reserve"_s;
        QVERIFY(QFile::exists(reserve));
        context.insert(std::make_unique<Task>(clock, u"ny"_s, clock.now(), std::nullopt));

        // when nothing can be written, for which SQLite knows no reason
        vfs.failAt(FileOperation::Write, 1, SQLITE_IOERR_WRITE, FaultVfs::Duration::ForGood);
        const bool isSaved = context.save();

        // then it has tried with the reserve's room
        QVERIFY(!isSaved);
        QVERIFY(!QFile::exists(reserve));

        // when there is room
        vfs.heal();
        const bool isSavedThen = context.save();

        // then there is a reserve again
        QVERIFY(isSavedThen);
        QVERIFY(QFile::exists(reserve));
    }

    void shouldNameABackupOnlyWhenItIsOnTheDisk()
    {
        // given
        const QString path = newPath();
        writeImage(path, m_used);
        const FaultVfs vfs;
        const FakeClock clock;
        ModelContainer container(path, clock, {1h, 1h, 10s, 1h, 1h});
        container.backups().begin();

        // when
        container.backups().finish();

        // then
        const std::filesystem::path store = QFile::encodeName(path).toStdString();
        QCOMPARE(backupsOf(store).size(), 1U);
        const std::filesystem::path unfinished = backupDirectory(store) / "unfinished";
        QVERIFY(vfs.isSynced(QFile::decodeName(unfinished.c_str())));
    }

    void shouldNotTakeADayThatCannotBeReadForAnEmptyOne()
    {
        // given
        const QString path = newPath();
        writeImage(path, m_used);
        FaultVfs vfs;
        const FakeClock clock;
        ModelContainer container(path, clock, {1h, 1ms});

        // when
        vfs.failAt(FileOperation::Read, 1, SQLITE_IOERR_READ, FaultVfs::Duration::ForGood);
        const DayTasks day(container.mainContext(), clock.calendar().dayInterval(clock.now()));

        // then
        QVERIFY(vfs.hasFailed());
        QVERIFY(day.tasks().isEmpty());
        QVERIFY(!day.isEmpty());

        // when it can be read
        vfs.heal();

        // then it shows by itself
        QTRY_COMPARE(day.tasks().size(), 3);
    }

    void shouldWriteEverythingOnceAFullDiskHasRoom()
    {
        // given
        const SmallDisk disk("size=3m");
        if (!disk.isMounted())
            QSKIP("There is no right to mount a small disk here");

        // then
        workOnAFullDisk(
            disk.path(), [&] { disk.fill(); }, [&] { disk.clear(); });
    }

    void shouldWriteADaysChangesOnAFullDisk()
    {
        // given a store on a disk that is full but for the reserve
        const SmallDisk disk("size=1m");
        if (!disk.isMounted())
            QSKIP("There is no right to mount a small disk here");
        const FakeClock clock;
        const QString path = disk.path() + u"/data/store.sqlite"_s;
        const QString reserve = path + u"-reserve"_s;
        QList<Task *> tasks;
        ModelContainer container(path, clock, {1h, 1h});
        ModelContext &context = container.mainContext();
        const auto newTask = [&](int number) {
            auto task = std::make_unique<Task>(clock, u"Opgave nr. %1"_s.arg(number), clock.now(),
                                               std::nullopt);
            tasks.append(task.get());
            context.insert(std::move(task));
        };
        newTask(0);
        QVERIFY(context.save());
        QVERIFY(QFile::exists(reserve));
        disk.fill();

        for (int change = 1; change < 600; ++change) {
            // when a task is made now and then, and each change is written by itself
            if (change % 10 == 0) {
                newTask(change);
            } else {
                Task *const task = tasks.at(change % tasks.size());
                if (task->isRunning())
                    task->stop();
                else
                    task->start();
            }
            const bool isSaved = context.save();

            // then
            QVERIFY2(isSaved, qPrintable(QString::number(change)));
        }

        // then that has taken the reserve
        QVERIFY(!QFile::exists(reserve));
        QVERIFY(isOneOf(readImage(path), {contentsOf(context)}));

        // when there is room again
        disk.clear();
        newTask(600);
        const bool isSavedWithRoom = context.save();

        // then there is a reserve again
        QVERIFY(isSavedWithRoom);
        QCOMPARE(QFileInfo(reserve).size(), Reserve::size);

        // when the disk is full once more
        disk.fill();
        newTask(601);
        const bool isSavedAgain = context.save();

        // then
        QVERIFY(isSavedAgain);
        QVERIFY(isOneOf(readImage(path), {contentsOf(context)}));
    }

    void shouldOpenOnAFullDiskByItsReserve()
    {
        // given
        const SmallDisk disk("size=1m");
        if (!disk.isMounted())
            QSKIP("There is no right to mount a small disk here");
        const QString path = disk.path() + u"/data/store.sqlite"_s;
        writeImage(path, m_used);
        const FakeClock clock;
        {
            const ModelContainer made(path, clock);
        }
        disk.fill();

        // when
        ModelContainer container(path, clock);

        // then
        QVERIFY(contentsOf(container.mainContext()) == m_usedContents);
    }

    void shouldSayWhatIsWrongWithTheDisk_data()
    {
        QTest::addColumn<QByteArray>("options");
        QTest::addColumn<bool>("isNew");
        QTest::addColumn<QString>("words");
        const auto add = [](const char *name, const char *options, const QString &words) {
            QTest::addRow("%s", name) << QByteArray(options) << false << words;
            QTest::addRow("%s, and no store", name) << QByteArray(options) << true << words;
        };
        add("full", "size=512k", u"is full. Free some space on it"_s);
        add("full, on one that counts no inodes", "size=512k,nr_inodes=0",
            u"is full. Free some space on it"_s);
        add("without inodes", "nr_inodes=20", u"takes no more files"_s);
        add("read-only", "", u"is mounted read-only. Mount it for writing"_s);
    }
    void shouldSayWhatIsWrongWithTheDisk()
    {
        QFETCH(QByteArray, options);
        QFETCH(bool, isNew);
        QFETCH(QString, words);

        // given
        const SmallDisk disk(options.constData());
        if (!disk.isMounted())
            QSKIP("There is no right to mount a small disk here");
        const QString directory = disk.path() + u"/data"_s;
        const QString path = directory + u"/store.sqlite"_s;
        if (isNew)
            QVERIFY(QDir().mkpath(directory));
        else
            writeImage(path, m_used);
        if (options.startsWith("size"))
            disk.fill();
        else if (options.startsWith("nr_inodes"))
            disk.fillWithFiles();
        else
            disk.makeReadOnly();

        // when
        QString why;
        try {
            const FakeClock clock;
            const ModelContainer container(path, clock);
        } catch (const StoreError &error) {
            why = QString::fromUtf8(error.what());
        }

        // then
        QVERIFY2(why.contains(words), qPrintable(why));
        QVERIFY2(why.contains(u'"' + directory + u'"'), qPrintable(why));
        QVERIFY2(why.contains(u'"' + path + u'"'), qPrintable(why));
        QVERIFY(readImage(path) == (isNew ? StoreImage() : m_used));
    }

    void shouldWriteEverythingOnceItsFilesMayGrow()
    {
        // given
        struct rlimit before {
        };
        QCOMPARE(::getrlimit(RLIMIT_FSIZE, &before), 0);
        const auto handler = std::signal(SIGXFSZ, SIG_IGN);
        const QTemporaryDir directory;

        // then
        workOnAFullDisk(
            directory.path(),
            [&] {
                const rlimit small{100'000, before.rlim_max};
                QCOMPARE(::setrlimit(RLIMIT_FSIZE, &small), 0);
            },
            [&] { QCOMPARE(::setrlimit(RLIMIT_FSIZE, &before), 0); });

        ::setrlimit(RLIMIT_FSIZE, &before);
        std::signal(SIGXFSZ, handler);
    }
};

QTEST_GUILESS_MAIN(TestIoFaults)
#include "tst_iofaults.moc"
