#include "../support/fakeclock.h"
#include "faultvfs.h"
#include "model/livequery.h"
#include "model/projectcode.h"
#include "model/task.h"
#include "model/tasktemplate.h"
#include "storeimage.h"

#include <SQLiteCpp/Database.h>

#include <QDir>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <functional>
#include <optional>
#include <random>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

constexpr qsizetype pageSize = 4096;
constexpr double day = 86400;

/// What became of opening damaged files.
struct Outcome {
    /// Why they were refused; empty if they were not.
    QString refusal;
    /// What was in them, if they were opened.
    Contents contents;
};

/// How many of @p records are in @p contents just as they were.
qsizetype intactOf(const Contents &records, const Contents &contents)
{
    return std::count_if(records.keyValueBegin(), records.keyValueEnd(), [&](const auto &record) {
        return contents.value(record.first) == record.second;
    });
}

} // namespace

class TestDamagedStores : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_directory;
    int m_stores = 0;
    std::mt19937 m_random;

    /// A store that was closed, and one that the program was killed with; the second holds the
    /// first's records and others, in several transactions.
    StoreImage m_closed;
    Contents m_closedContents;
    StoreImage m_killed;
    QList<Contents> m_killedStates;

    int m_refused = 0;
    int m_opened = 0;

    QString newPath()
    {
        QDir(m_directory.filePath(QString::number(m_stores))).removeRecursively();
        return m_directory.filePath(QString::number(++m_stores) + u"/store.sqlite"_s);
    }

    qsizetype below(qsizetype limit)
    {
        return std::uniform_int_distribution<qsizetype>(0, limit - 1)(m_random);
    }

    /// Opens a store of these files, reads all of it and, if that goes well, works in it. Fails the
    /// test if anything is lost that was there, or if files that were refused have changed.
    Outcome open(const StoreImage &image)
    {
        Outcome outcome;
        [&] {
            const QString path = newPath();
            writeImage(path, image);
            const FakeClock clock;
            std::optional<ModelContainer> container;
            try {
                container.emplace(path, clock, SaveDelays{1h, 1h});
                outcome.contents = contentsOf(container->mainContext());
            } catch (const StoreError &error) {
                container.reset();
                ++m_refused;
                outcome.refusal = QString::fromUtf8(error.what());
                QVERIFY(outcome.refusal.contains(path));
                QVERIFY2(readImage(path) == image, qPrintable(outcome.refusal));
                return;
            }
            ++m_opened;
            Contents expected = outcome.contents;
            auto task = std::make_unique<Task>(clock, u"efter skaden"_s, clock.now(), std::nullopt);
            expected.insert(task->id(), describe(*task));
            container->mainContext().insert(std::move(task));
            QVERIFY(container->mainContext().save());
            container.reset();
            container.emplace(path, clock);
            QVERIFY(contentsOf(container->mainContext()) == expected);
        }();
        return outcome;
    }

    /// Opens copies of the closed store with bytes of its file changed by @p damage.
    void openDamaged(int times, const std::function<void(QByteArray &)> &damage)
    {
        for (int time = 0; time < times && !QTest::currentTestFailed(); ++time) {
            StoreImage image = m_closed;
            damage(image[QString()]);
            const Outcome outcome = open(image);
            // What the damage did not hit is there: what opens has all its records, and of these
            // but one or two are what they were.
            if (outcome.refusal.isEmpty()) {
                QCOMPARE(outcome.contents.size(), m_closedContents.size());
                QVERIFY(intactOf(m_closedContents, outcome.contents) >=
                        m_closedContents.size() - 2);
            }
        }
    }

    /// The closed store, with a task that makes it so large that it is not looked through when it
    /// is opened, and with a damaged page where @p index begins.
    StoreImage largeStoreWithout(const QString &index)
    {
        const QString path = newPath();
        writeImage(path, m_closed);
        {
            const FakeClock clock;
            ModelContainer container(path, clock);
            container.mainContext().insert(std::make_unique<Task>(
                clock, QString(9'000'000, u'x'), clock.now() - 100 * day, std::nullopt));
        }
        qsizetype root = 0;
        {
            SQLite::Database database(QFile::encodeName(path).constData(), SQLite::OPEN_READONLY);
            root = database
                       .execAndGet("SELECT rootpage FROM sqlite_schema WHERE name = '" +
                                   index.toStdString() + "'")
                       .getInt();
        }
        StoreImage image = readImage(path);
        std::fill_n(image[QString()].begin() + (root - 1) * pageSize, pageSize, '\xff');
        return image;
    }

    static void execute(const QString &path, const char *sql)
    {
        SQLite::Database(QFile::encodeName(path).constData(), SQLite::OPEN_READWRITE).exec(sql);
    }

private Q_SLOTS:
    void initTestCase()
    {
        const QString path = newPath();
        const FakeClock clock;
        {
            ModelContainer container(path, clock, {1h, 1h});
            ModelContext &context = container.mainContext();
            for (int number = 0; number < 300; ++number) {
                // A few of them on several pages.
                const QString name =
                    u"Opgave nr. %1"_s.arg(number).repeated(number % 50 == 7 ? 900 : 1);
                const int daysAgo = number / 10;
                auto task = std::make_unique<Task>(
                    clock, name, clock.now() - daysAgo * day,
                    number % 3 == 0 ? std::optional(u"4711"_s) : std::nullopt, number % 10);
                if (number == 5)
                    task->start();
                context.insert(std::move(task));
            }
            for (int number = 0; number < 10; ++number) {
                context.insert(std::make_unique<TaskTemplate>(clock, u"Skabelon"_s, number));
                context.insert(
                    std::make_unique<ProjectCode>(clock, u"4711"_s, u"Støtte"_s, number));
            }
            QVERIFY(context.save());
            m_closedContents = contentsOf(context);
        }
        m_closed = readImage(path);
        QCOMPARE(m_closed.size(), 1);
        QVERIFY(m_closed[QString()].size() > 20 * pageSize);

        ModelContainer container(path, clock, {1h, 1h});
        ModelContext &context = container.mainContext();
        m_killedStates.append(m_closedContents);
        for (qsizetype number = 0; number < 8; ++number) {
            context.insert(std::make_unique<Task>(clock, u"Senere"_s, clock.now(), std::nullopt));
            if (number % 2 == 0)
                context.remove(context.fetch(RecordType::Task, allRecords()).at(number * 20));
            QVERIFY(context.save());
            m_killedStates.append(contentsOf(context));
        }
        m_killed = readImage(path);
        QVERIFY(m_killed[u"-wal"_s].size() > 8 * pageSize);
    }
    // Every run is to be the same.
    void init() { m_random.seed(20261121); }
    void cleanupTestCase() { qInfo("%d opened, %d refused", m_opened, m_refused); }

    void shouldOpenWhatIsWhole()
    {
        QVERIFY(open(m_closed).contents == m_closedContents);
        QVERIFY(open(m_killed).contents == m_killedStates.constLast());
    }

    void shouldRefuseATruncatedStore()
    {
        // given
        const qsizetype size = m_closed[QString()].size();
        QList<qsizetype> sizes{0, 1, 15, 16, 17, 99, 100, 101, 511, 512, 513};
        for (qsizetype at = pageSize; at < size; at += pageSize)
            sizes << at - 1 << at << at + 1;
        sizes << size - 1;

        for (const qsizetype truncated : std::as_const(sizes)) {
            // when
            StoreImage image = m_closed;
            image[QString()].truncate(truncated);
            const Outcome outcome = open(image);

            // then
            QVERIFY2(!outcome.refusal.isEmpty(), qPrintable(QString::number(truncated)));
            if (QTest::currentTestFailed())
                return;
        }
    }

    void shouldLeaveTheLogOfATruncatedStore()
    {
        for (const qsizetype truncated : {0, 1, 2, 15, 16, 99, 100, 511, 512, 4095, 4096}) {
            // when
            StoreImage image = m_killed;
            image[QString()].truncate(truncated);
            const Outcome outcome = open(image);

            // then
            QVERIFY2(!outcome.refusal.isEmpty(), qPrintable(QString::number(truncated)));
            if (QTest::currentTestFailed())
                return;
        }
    }

    void shouldOpenOrRefuseAStoreWithABitFlipped()
    {
        // given
        const auto flip = [this](QByteArray &file) {
            const qsizetype at = below(file.size());
            file[at] = static_cast<char>(file[at] ^ (1 << below(8)));
        };

        // then
        openDamaged(1500, flip);
    }

    void shouldOpenOrRefuseAStoreWithABitFlippedInItsHeader()
    {
        // The format's own 100 bytes, and where the tables are.
        for (qsizetype at = 0; at < 120; ++at) {
            for (int bit = 0; bit < 8; ++bit) {
                // given
                const auto flip = [&](QByteArray &file) {
                    file[at] = static_cast<char>(file[at] ^ (1 << bit));
                };

                // then
                openDamaged(1, flip);
            }
        }
    }

    void shouldOpenOrRefuseAStoreWithRandomBytes()
    {
        // given
        const auto scribble = [this](QByteArray &file) {
            const qsizetype at = below(file.size());
            const qsizetype end = std::min(file.size(), at + 1 + below(16));
            std::generate(file.begin() + at, file.begin() + end,
                          [this] { return static_cast<char>(m_random()); });
        };

        // then
        openDamaged(300, scribble);
    }

    void shouldRefuseAStoreWithAPageOfAnother_data()
    {
        QTest::addColumn<bool>("isZero");
        QTest::newRow("of zeros") << true;
        QTest::newRow("of noise") << false;
    }
    void shouldRefuseAStoreWithAPageOfAnother()
    {
        QFETCH(bool, isZero);

        // given
        int opened = m_opened;
        for (qsizetype at = 0; at < m_closed[QString()].size(); at += pageSize) {
            StoreImage image = m_closed;
            for (qsizetype byte = at; byte < at + pageSize; ++byte)
                image[QString()][byte] = isZero ? '\0' : static_cast<char>(m_random());

            // when
            const Outcome outcome = open(image);

            // then
            if (QTest::currentTestFailed())
                return;
            // A page that only continues a long text may hold anything.
            if (outcome.refusal.isEmpty()) {
                QCOMPARE(outcome.contents.size(), m_closedContents.size());
                QVERIFY(intactOf(m_closedContents, outcome.contents) >=
                        m_closedContents.size() - 1);
            }
        }

        QVERIFY(m_opened - opened < m_closed[QString()].size() / pageSize / 2);
    }

    void shouldOpenWithWhatIsIntactOfADamagedLog()
    {
        const auto openWithLog = [this](const QByteArray &log) {
            // given
            StoreImage image = m_killed;
            image[u"-wal"_s] = log;

            // when
            const Outcome outcome = open(image);

            // then
            QVERIFY2(outcome.refusal.isEmpty(), qPrintable(outcome.refusal));
            QVERIFY(m_killedStates.contains(outcome.contents));
        };

        const QByteArray log = m_killed[u"-wal"_s];
        for (int time = 0; time < 300; ++time) {
            QByteArray damaged = log;
            const qsizetype at = below(log.size());
            damaged[at] = static_cast<char>(damaged[at] ^ (1 << below(8)));
            openWithLog(damaged);
        }
        for (int time = 0; time < 100; ++time)
            openWithLog(log.first(below(log.size())));
        openWithLog(QByteArray(log.size(), '\0'));
        openWithLog({});
    }

    void shouldNotMakeANewStoreBesideTheLogOfAMissingOne_data()
    {
        QTest::addColumn<QString>("suffix");
        QTest::newRow("log") << u"-wal"_s;
        QTest::newRow("journal") << u"-journal"_s;
    }
    void shouldNotMakeANewStoreBesideTheLogOfAMissingOne()
    {
        QFETCH(QString, suffix);

        // when
        const Outcome outcome = open({{suffix, m_killed[u"-wal"_s]}});

        // then
        QVERIFY2(outcome.refusal.contains("is missing"_L1), qPrintable(outcome.refusal));

        // when it is empty, with nothing to lose
        const Outcome empty = open({{suffix, {}}});

        // then
        QVERIFY(empty.refusal.isEmpty());
    }

    void shouldReplaceWhatIsLeftOfAnUnfinishedStore()
    {
        // when
        const Outcome outcome = open({{u".new"_s, m_closed[QString()].first(5000)},
                                      {u".new-wal"_s, m_killed[u"-wal"_s]},
                                      {u".new-journal"_s, m_closed[QString()]}});

        // then
        QCOMPARE(outcome.refusal, QString());
        QVERIFY(outcome.contents.isEmpty());
    }

    void shouldRefuseAForeignStoreWithAJournalOfItsOwn()
    {
        // given another program's database, with a transaction that a crash has cut short
        const QString path = newPath();
        QDir().mkpath(QFileInfo(path).path());
        StoreImage image;
        {
            SQLite::Database other(QFile::encodeName(path).constData(),
                                   SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
            other.exec("PRAGMA cache_size = 1; CREATE TABLE t (x); "
                       "INSERT INTO t VALUES (zeroblob(100000)); "
                       "BEGIN; UPDATE t SET x = randomblob(200000);");
            image = readImage(path);
            other.exec("ROLLBACK");
        }
        QVERIFY(image.contains(u"-journal"_s));

        // when
        const Outcome outcome = open(image);

        // then
        QVERIFY(!outcome.refusal.isEmpty());
    }

    void shouldGoOnWithWhatIsIntactOfALargeStore_data()
    {
        QTest::addColumn<QString>("index");
        QTest::addColumn<bool>("isTaskLost");
        QTest::newRow("without the index by id") << u"TaskByID"_s << true;
        QTest::newRow("without the index by day") << u"TaskByDate"_s << true;
        QTest::newRow("without the index of running tasks") << u"RunningTask"_s << false;
    }
    void shouldGoOnWithWhatIsIntactOfALargeStore()
    {
        QFETCH(QString, index);
        QFETCH(bool, isTaskLost);

        // given
        const QString path = newPath();
        writeImage(path, largeStoreWithout(index));
        const FakeClock clock;
        QUuid task;
        QUuid made;
        {
            // when
            ModelContainer container(path, clock, {1h, 1h});
            ModelContext &context = container.mainContext();
            LiveQuery<Task> today(context, tasksOnDay(clock.calendar().dayInterval(clock.now())),
                                  QueryOrder::Store);

            // then
            QCOMPARE(today.isAnswered(), index != "TaskByDate"_L1);
            QCOMPARE(today.results().size(), today.isAnswered() ? 10 : 0);

            // when
            auto newTask = std::make_unique<Task>(clock, u"ny"_s, clock.now(), std::nullopt);
            task = newTask->id();
            context.insert(std::move(newTask));
            auto newTemplate = std::make_unique<TaskTemplate>(clock, u"ny"_s);
            made = newTemplate->id();
            context.insert(std::move(newTemplate));

            // then a change that cannot be written keeps none of the others from it
            QCOMPARE(context.save(), !isTaskLost);
            QCOMPARE(context.hasChanges(), isTaskLost);
            // What could not be written is still shown.
            QCOMPARE(today.results().size(), today.isAnswered() ? 11 : 1);
        }

        // when
        ModelContainer container(path, clock);
        const Contents contents = contentsOf(container.mainContext());

        // then
        QCOMPARE(contents.contains(task), !isTaskLost);
        QVERIFY(contents.contains(made));
        QCOMPARE(intactOf(m_closedContents, contents), m_closedContents.size());
    }

    void shouldWriteNothingTwiceWhereTheDiskFailsAroundADamagedPage()
    {
        const StoreImage image = largeStoreWithout(u"TaskByID"_s);
        const QStringList names{u"ny 1"_s, u"ny 2"_s, u"ny 3"_s};
        int failures = 0;
        bool hasFailed = true;
        for (int position = 1; hasFailed && !QTest::currentTestFailed(); ++position) {
            // given a change that hits the page, and others that do not
            const QString path = newPath();
            writeImage(path, image);
            FaultVfs vfs;
            const FakeClock clock;
            {
                ModelContainer container(path, clock, {1h, 1h});
                ModelContext &context = container.mainContext();
                context.insert(std::make_unique<Task>(clock, u"ny"_s, clock.now(), std::nullopt));
                for (const QString &name : names)
                    context.insert(std::make_unique<TaskTemplate>(clock, name));

                // when the disk fails before these are written, or between two of them
                vfs.failAt(FileOperation::Write, position, SQLITE_IOERR_WRITE,
                           FaultVfs::Duration::ForGood);
                const bool isSaved = context.save();
                hasFailed = vfs.hasFailed();
                failures += hasFailed ? 1 : 0;

                // then
                QVERIFY(!isSaved);

                // when it no longer does
                vfs.heal();
                context.save();
            }

            // then each of them has been written once
            ModelContainer container(path, clock);
            LiveQuery<TaskTemplate> templates(container.mainContext(), allRecords(),
                                              QueryOrder::Store);
            QStringList written;
            for (const TaskTemplate *made : templates.results())
                written << made->name();
            QCOMPARE(written.filter(u"ny"_s), names);
        }
        QVERIFY(failures > names.size());
    }

    void shouldRefuseAStoreThatAnotherProcessHolds()
    {
        // given
        const QString path = newPath();
        writeImage(path, m_closed);
        QProcess holder;
        holder.start(QStringLiteral(STOREPROBE), {path});
        QTRY_VERIFY_WITH_TIMEOUT(holder.canReadLine(), 30'000);
        QCOMPARE(holder.readLine(), "open\n");

        // when
        const FakeClock clock;
        QString why;
        try {
            const ModelContainer container(path, clock);
        } catch (const StoreError &error) {
            why = QString::fromUtf8(error.what());
        }

        // then
        QVERIFY2(why.contains("in use by another process"_L1), qPrintable(why));

        // when
        holder.kill();
        QVERIFY(holder.waitForFinished());
        ModelContainer container(path, clock);

        // then
        QVERIFY(contentsOf(container.mainContext()) == m_closedContents);
    }

    void shouldEndTheProgramWithAMessage_data()
    {
        QTest::addColumn<QByteArray>("file");
        QTest::addColumn<QByteArray>("why");
        const QByteArray whole = m_closed.value(QString());
        QByteArray flipped = whole;
        flipped[3 * pageSize] = '\x7f';
        QTest::newRow("empty") << QByteArray() << QByteArray("is empty");
        QTest::newRow("truncated") << whole.first(3 * pageSize) << QByteArray("is damaged");
        QTest::newRow("with a damaged page") << flipped << QByteArray("is damaged");
        QTest::newRow("a text") << QByteArray("Kære dagbog").repeated(100)
                                << QByteArray("is not a store");
    }
    void shouldEndTheProgramWithAMessage()
    {
        QFETCH(QByteArray, file);
        QFETCH(QByteArray, why);

        // given the real program and its directories
        const QTemporaryDir home;
        const QString path = home.filePath(u"dk.tulo.TimeTracker/store.sqlite"_s);
        writeImage(path, {{QString(), file}});
        QProcess program;
        QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
        environment.insert(u"HOME"_s, home.path());
        environment.insert(u"XDG_DATA_HOME"_s, home.path());
        environment.insert(u"XDG_RUNTIME_DIR"_s, home.path());
        environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s,
                           u"unix:path="_s + home.path() + u"/bus"_s);
        environment.insert(u"QT_QPA_PLATFORM"_s, u"offscreen"_s);
        program.setProcessEnvironment(environment);

        // when
        program.start(QStringLiteral(PROGRAM), {});
        QVERIFY(program.waitForFinished());

        // then
        QCOMPARE(program.exitStatus(), QProcess::NormalExit);
        QCOMPARE(program.exitCode(), 1);
        const QByteArray said = program.readAllStandardError();
        QVERIFY2(said.contains("Could not create ModelContainer: "), said.constData());
        QVERIFY2(said.contains(why), said.constData());
        QCOMPARE(readImage(path).value(QString()), file);
    }

    void shouldMakeOneStoreForManyProcessesThatStartAtOnce()
    {
        for (int time = 0; time < 3; ++time) {
            // given
            const QString path = newPath();
            std::vector<std::unique_ptr<QProcess>> processes(6);

            // when
            for (auto &process : processes) {
                process = std::make_unique<QProcess>();
                process->start(QStringLiteral(STOREPROBE), {path});
            }

            // then
            QStringList holders;
            for (const auto &process : processes) {
                QTRY_VERIFY_WITH_TIMEOUT(process->canReadLine(), 30'000);
                const QString said = QString::fromUtf8(process->readLine());
                if (said != "open\n"_L1)
                    QVERIFY2(said.contains("in use by another process"_L1), qPrintable(said));
                else
                    holders << said;
            }
            QCOMPARE(holders.size(), 1);

            // when they have ended
            for (const auto &process : processes) {
                process->closeWriteChannel();
                QTRY_COMPARE_WITH_TIMEOUT(process->state(), QProcess::NotRunning, 30'000);
            }

            // then
            QVERIFY(contentsOf(readImage(path)).isEmpty());
        }
    }

    void shouldRefuseAStoreWithoutRights_data()
    {
        QTest::addColumn<int>("fileMode");
        QTest::addColumn<int>("directoryMode");
        QTest::newRow("not to be read") << 0 << 0700;
        QTest::newRow("not to be written") << 0400 << 0700;
        QTest::newRow("in a directory not to be entered") << 0600 << 0;
        QTest::newRow("in a directory not to be written") << 0600 << 0500;
    }
    void shouldRefuseAStoreWithoutRights()
    {
        QFETCH(int, fileMode);
        QFETCH(int, directoryMode);

        // given
        const QTemporaryDir directory;
        const QString path = directory.filePath(u"data/store.sqlite"_s);
        writeImage(path, m_closed);
        const QByteArray file = QFile::encodeName(path);
        const QByteArray folder = QFile::encodeName(directory.filePath(u"data"_s));
        // To the superuser rights mean nothing.
        constexpr uid_t nobody = 65534;
        const uid_t user = ::geteuid();
        if (user == 0) {
            for (const QByteArray &each : {file, folder, QFile::encodeName(directory.path())})
                QCOMPARE(::chown(each.constData(), nobody, nobody), 0);
        }
        QCOMPARE(::chmod(file.constData(), static_cast<mode_t>(fileMode)), 0);
        QCOMPARE(::chmod(folder.constData(), static_cast<mode_t>(directoryMode)), 0);

        // when
        QString why;
        if (user == 0)
            QCOMPARE(::seteuid(nobody), 0);
        try {
            const FakeClock clock;
            const ModelContainer container(path, clock);
        } catch (const StoreError &error) {
            why = QString::fromUtf8(error.what());
        }
        QCOMPARE(::seteuid(user), 0);

        QCOMPARE(::chmod(folder.constData(), 0700), 0);
        QCOMPARE(::chmod(file.constData(), 0600), 0);

        // then
        QVERIFY(!why.isEmpty());
        QVERIFY(readImage(path) == m_closed);
    }
};

QTEST_GUILESS_MAIN(TestDamagedStores)
#include "tst_damagedstores.moc"
