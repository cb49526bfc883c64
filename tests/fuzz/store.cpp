#include "../faults/storeimage.h"
#include "../support/fakeclock.h"
#include "fuzz.h"
#include "model/projectcode.h"
#include "model/recordtable.h"
#include "model/task.h"
#include "model/tasklist.h"
#include "model/tasktemplate.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Statement.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QtEndian>

#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <memory>
#include <optional>
#include <utility>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

// An input says how one of two stores is changed before it is opened, or is a store itself.

constexpr double day = 86400;
/// No change is written by itself while an input runs.
constexpr SaveDelays delays{1h, 1h, 0ms};

/// A log begins with a header and has another before each page; both hold salts and sums.
constexpr qsizetype logHeader = 32;
constexpr qsizetype pageHeader = 24;
constexpr qsizetype saltsInHeader = 16;
constexpr qsizetype saltsInPageHeader = 8;
constexpr qsizetype saltsSize = 8;

/// Puts right the sums in a log, and the salts that tell its pages from older ones: SQLite would
/// not look at a page with others.
void correctSums(QByteArray &log)
{
    if (log.size() < logHeader)
        return;
    const auto pageSize = static_cast<qsizetype>(qFromBigEndian<quint32>(log.constData() + 8));
    if (pageSize < 512 || pageSize > 65536 || pageSize % 8 != 0)
        return;
    const bool isBigEndian = (log[3] & 1) != 0;
    quint32 first = 0;
    quint32 second = 0;
    const auto number = [&](qsizetype at) {
        const char *const bytes = log.constData() + at;
        return isBigEndian ? qFromBigEndian<quint32>(bytes) : qFromLittleEndian<quint32>(bytes);
    };
    const auto add = [&](qsizetype begin, qsizetype end) {
        for (qsizetype at = begin; at < end; at += 8) {
            first += number(at) + second;
            second += number(at + 4) + first;
        }
    };
    const auto put = [&](qsizetype at) {
        qToBigEndian(first, log.data() + at);
        qToBigEndian(second, log.data() + at + 4);
    };
    add(0, logHeader - 8);
    put(logHeader - 8);
    const QByteArray salts = log.mid(saltsInHeader, saltsSize);
    for (qsizetype at = logHeader; at + pageHeader + pageSize <= log.size();
         at += pageHeader + pageSize) {
        log.replace(at + saltsInPageHeader, saltsSize, salts);
        add(at, at + 8);
        add(at + pageHeader, at + pageHeader + pageSize);
        put(at + pageHeader - 8);
    }
}

/// The stores that inputs change. They are the same in every run, as an input would mean something
/// else otherwise.
class Stores
{
public:
    Stores()
    {
        const QTemporaryDir directory;
        const QString path = directory.filePath(u"store.sqlite"_s);
        {
            ModelContainer container(path, m_clock, delays);
            ModelContext &context = container.mainContext();
            for (int number = 1; number <= 24; ++number) {
                // One of them on several pages, one that runs.
                const QString name = u"Opgave nr. %1"_s.arg(number);
                insertTask(context, number, number == 7 ? name.repeated(700) : name);
            }
            for (int number = 101; number <= 103; ++number) {
                context.insert(std::make_unique<TaskTemplate>(
                    TaskTemplate::Values{base(number), u"Skabelon"_s}));
                context.insert(std::make_unique<ProjectCode>(
                    ProjectCode::Values{base(number), u"4711"_s, u"Støtte"_s}));
            }
            expect(context.save(), "a store can be made");
        }
        m_closed = readImage(path);

        ModelContainer container(path, m_clock, delays);
        ModelContext &context = container.mainContext();
        for (int number = 201; number <= 204; ++number) {
            insertTask(context, number, u"Senere"_s);
            context.remove(context.fetch(RecordType::Task, allRecords()).at(number % 10));
            expect(context.save(), "a store can be changed");
        }
        m_killed = readImage(path);
        QByteArray &log = m_killed[u"-wal"_s];
        log.replace(saltsInHeader, saltsSize, "the salt");
        correctSums(log);
    }

    /// One that was closed.
    const StoreImage &closed() const { return m_closed; }
    /// The same, with later changes in its log.
    const StoreImage &killed() const { return m_killed; }

private:
    Record::Values base(int number) const
    {
        return {QUuid(static_cast<uint>(number), 0, 0, 0, 0, 0, 0, 0, 0, 0, 1), number,
                m_clock.now()};
    }
    void insertTask(ModelContext &context, int number, const QString &name) const
    {
        const Instant date = m_clock.calendar().startOfDay(m_clock.now() - number / 5 * day);
        Task::Values values{base(number), name, date, number * 60, {}, {}};
        if (number == 5)
            values.lastStartTime = m_clock.now() - 60;
        if (number % 3 == 0)
            values.projectCode = u"4711"_s;
        context.insert(std::make_unique<Task>(m_clock, values));
    }

    FakeClock m_clock;
    StoreImage m_closed;
    StoreImage m_killed;
};

const Stores &stores()
{
    static const Stores stores;
    return stores;
}

qsizetype below(FuzzedDataProvider &input, qsizetype limit)
{
    return input.ConsumeIntegralInRange<qsizetype>(0, std::max<qsizetype>(limit, 1) - 1);
}

/// Sets a value as another program could, which leaves the store a whole one.
void setValue(FuzzedDataProvider &input, SQLite::Database &database)
{
    static constexpr const char *columns[] = {"Task SET id",
                                              "Task SET name",
                                              "Task SET date",
                                              "Task SET accumulatedSeconds",
                                              "Task SET lastStartTime",
                                              "Task SET sortOrder",
                                              "Task SET createdAt",
                                              "Task SET projectCode",
                                              "TaskTemplate SET id",
                                              "TaskTemplate SET name",
                                              "TaskTemplate SET sortOrder",
                                              "ProjectCode SET code",
                                              "ProjectCode SET name",
                                              "ProjectCode SET createdAt"};
    const std::string sql =
        std::string("UPDATE ") + input.PickValueInArray(columns) + " = ? WHERE rowid = ?";
    SQLite::Statement update(database, sql);
    switch (input.ConsumeIntegralInRange(0, 4)) {
    case 0:
        update.bind(1, input.ConsumeIntegral<int64_t>());
        break;
    case 1:
        update.bind(1, input.ConsumeFloatingPoint<double>());
        break;
    case 2:
        update.bind(1, input.ConsumeRandomLengthString());
        break;
    case 3: {
        const std::string bytes = input.ConsumeRandomLengthString();
        update.bind(1, bytes.data(), static_cast<int>(bytes.size()));
        break;
    }
    default:
        update.bind(1);
    }
    update.bind(2, input.ConsumeIntegralInRange(1, 24));
    update.tryExecuteStep(); // A value of another type than the column's is not taken.
}

/// The closed store with other values in it.
StoreImage withOtherValues(FuzzedDataProvider &input, const QString &path)
{
    writeImage(path, stores().closed());
    {
        SQLite::Database database(QFile::encodeName(path).toStdString(), SQLite::OPEN_READWRITE);
        database.exec("PRAGMA synchronous = OFF");
        for (int times = input.ConsumeIntegralInRange(1, 4); times > 0; --times)
            setValue(input, database);
    }
    return readImage(path);
}

/// Changes some bytes of @p image.
void damage(FuzzedDataProvider &input, StoreImage &image)
{
    constexpr qsizetype pageSize = 4096;
    while (input.remaining_bytes() > 0) {
        QByteArray &file = image[image.size() > 1 && input.ConsumeBool() ? u"-wal"_s : QString()];
        switch (input.ConsumeIntegralInRange(0, 3)) {
        case 0:
            file.truncate(below(input, file.size()));
            break;
        case 1: {
            const QByteArray page =
                file.mid(below(input, file.size() / pageSize) * pageSize, pageSize);
            file.replace(below(input, file.size() / pageSize) * pageSize, page.size(), page);
            break;
        }
        default: {
            const QByteArray bytes = QByteArray::fromStdString(input.ConsumeRandomLengthString(64));
            const qsizetype at = below(input, file.size());
            file.replace(at, bytes.size(), bytes);
        }
        }
    }
}

StoreImage imageOf(FuzzedDataProvider &input, const QString &path)
{
    switch (input.ConsumeIntegralInRange(0, 4)) {
    case 0: {
        const auto bytes = input.ConsumeRemainingBytes<char>();
        return {{QString(), QByteArray(bytes.data(), static_cast<qsizetype>(bytes.size()))}};
    }
    case 1:
        return withOtherValues(input, path);
    case 2: {
        StoreImage image = stores().closed();
        damage(input, image);
        return image;
    }
    case 3: {
        StoreImage image = stores().killed();
        damage(input, image);
        return image;
    }
    default: {
        StoreImage image = stores().killed();
        damage(input, image);
        correctSums(image[u"-wal"_s]);
        return image;
    }
    }
}

/// All that @p context shows, in words, in the store's order.
QStringList textsOf(ModelContext &context)
{
    QStringList texts;
    for (const RecordType type : recordTypes) {
        const QList<Record *> records = context.fetch(type, allRecords());
        for (const Record *record : records) {
            // The file has one zero, whichever there was.
            const QString text = describe(*record).replace("|-0|"_L1, "|0|"_L1);
            texts << record->id().toString() + u' ' + text;
        }
    }
    return texts;
}

QList<Task *> tasksOf(ModelContext &context)
{
    return LiveQuery<Task>(context, allRecords(), QueryOrder::Store).results();
}

/// A task's time; nothing if the program would end.
std::optional<qint64> timeOf(const Task &task)
{
    try {
        return task.currentTotalSeconds();
    } catch (const FatalError &) {
        return std::nullopt;
    }
}

void lookAt(ModelContext &context)
{
    const Calendar &calendar = context.clock().calendar();
    const AllTasks all(context);
    for (Task *task : tasksOf(context)) {
        expect(!task->description().isEmpty(), "a task can be told");
        if (!task->isRunning())
            expect(timeOf(*task) == task->accumulatedSeconds(), "a task that stands has its time");
        if (timeOf(*task))
            expect(!task->formattedTime().isEmpty() && task->roundedDecimalHours() >= 0,
                   "a time can be shown");
        else
            expect(!task->repairAdvice().empty(), "a time that cannot be added up is told");
        const DayInterval interval = calendar.dayInterval(task->date());
        const DayTasks tasks(context, interval);
        expect(tasks.isKnown(), "a day can be read");
        expect(tasks.tasks().contains(task) == interval.contains(task->date()),
               "a day has its tasks");
        expect(task->isRunning() == all.running().contains(task), "what runs is known to run");
        // An id that is none is read as the null one.
        if (!task->id().isNull())
            expect(all.withID(task->id()), "a task is found by its id");
    }
}

void change(FuzzedDataProvider &input, ModelContext &context)
{
    const Clock &clock = context.clock();
    const QString name = QString::fromStdString(input.ConsumeRandomLengthString(32));
    const QList<Task *> tasks = tasksOf(context);
    for (Task *task : tasks) {
        switch (task->sortOrder() % 5) {
        case 0:
            task->setName(name);
            break;
        case 1:
            task->setAccumulatedSeconds(90);
            break;
        case 2:
            task->start();
            break;
        case 3:
            if (timeOf(*task))
                task->stop();
            break;
        default:
            task->setDate(clock.now());
        }
    }
    for (const RecordType type : recordTypes) {
        const QList<Record *> records = context.fetch(type, allRecords());
        if (!records.isEmpty())
            context.remove(records.constLast());
    }
    context.insert(std::make_unique<Task>(clock, name, clock.now(), name));
    context.insert(std::make_unique<TaskTemplate>(clock, name));
    context.insert(std::make_unique<ProjectCode>(clock, name, name));
}

/// Whether the store at @p path says that it is so large that it is not looked through when it is
/// opened. What is damaged in it shows later.
bool isOneOfTheLarge(const QString &path)
{
    // SQLite deletes the log of an empty file, for which it takes a single byte, too.
    if (QFileInfo(path).size() <= 1)
        return false;
    try {
        SQLite::Database database(QFile::encodeName(path).toStdString(), SQLite::OPEN_READONLY);
        const qint64 pages = database.execAndGet("PRAGMA page_count").getInt();
        return pages * database.execAndGet("PRAGMA page_size").getInt() > 1'000'000;
    } catch (const SQLite::Exception &) {
        return false;
    }
}

/// Works in a store that may be damaged. Nothing is known of what comes of it.
void workInALargeStore(FuzzedDataProvider &input, ModelContext &context)
{
    try {
        change(input, context);
        context.save();
        textsOf(context);
    } catch (const StoreError &) {
        return; // Not all of it can be read.
    }
}

/// Works in the store at @p path and opens it again.
void workInAWholeStore(FuzzedDataProvider &input, std::unique_ptr<ModelContainer> container,
                       const QString &path)
{
    const Clock &clock = container->mainContext().clock();
    lookAt(container->mainContext());
    change(input, container->mainContext());
    expect(container->mainContext().save(), "changes are written");
    const QStringList expected = textsOf(container->mainContext());
    lookAt(container->mainContext());
    container.reset();
    ModelContainer again(path, clock, delays);
    expect(textsOf(again.mainContext()) == expected, "what was written is there");
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *argc, char ***argv)
{
    static const QCoreApplication application(*argc, *argv);
    QHashSeed::setDeterministicGlobalSeed();
    stores();
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    static const QTemporaryDir directory;
    FuzzedDataProvider input(data, size);
    const QString folder = directory.filePath(u"data"_s);
    QDir(folder).removeRecursively();
    const StoreImage image = imageOf(input, directory.filePath(u"data/made.sqlite"_s));
    const QString path = directory.filePath(u"data/store.sqlite"_s);
    writeImage(path, image);
    const StoreImage before = readImage(path);
    const bool isLarge = isOneOfTheLarge(path);
    const FakeClock clock;
    std::unique_ptr<ModelContainer> container;
    try {
        container = std::make_unique<ModelContainer>(path, clock, delays);
    } catch (const StoreError &error) {
        expect(QByteArray(error.what()).contains(QFile::encodeName(path)),
               "a refusal names the store");
        expect(readImage(path) == before, "a store that is refused stays what it is");
        return 0;
    }
    if (isLarge)
        workInALargeStore(input, container->mainContext());
    else
        workInAWholeStore(input, std::move(container), path);
    return 0;
}
