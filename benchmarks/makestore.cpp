// makestore <path> <tasks>: makes a store of that many tasks, 20 a day, back from today. Today has
// its 20 even in the smallest store, none of them running.

#include "model/modelcontainer.h"
#include "model/recordtable.h"
#include "model/systemclock.h"
#include "model/task.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>

#include <QCoreApplication>
#include <QFile>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace
{

constexpr int tasksPerDay = 20;

void fill(const QString &path, const Clock &clock, qint64 count)
{
    // Past the context, which would make an object of every task.
    SQLite::Database database(QFile::encodeName(path).constData(), SQLite::OPEN_READWRITE);
    database.exec("PRAGMA synchronous = OFF");
    SQLite::Transaction transaction(database);
    const RecordTable &table = recordTable(RecordType::Task);
    SQLite::Statement insertion(database, table.insert);
    const QDate today = clock.calendar().dayOf(clock.now());
    // From the first day on: the store's order is that of insertion.
    for (qint64 left = count; left > 0; --left) {
        const qint64 daysAgo = (left - 1) / tasksPerDay;
        const Instant day =
            clock.calendar().startOfDay(today.addDays(-daysAgo)).value_or(clock.today());
        Task::Values values;
        values.id = QUuid::createUuid();
        values.name = u"Opgave %1"_s.arg(count - left + 1);
        values.date = day;
        values.accumulatedSeconds = (left * 977) % 7200;
        values.sortOrder = (count - left) % tasksPerDay;
        values.createdAt = day + 8 * 3600;
        table.bind(insertion, Task(clock, values));
        insertion.exec();
        insertion.reset();
    }
    transaction.commit();
}

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    bool isNumber = false;
    const qint64 count = arguments.value(2).toLongLong(&isNumber);
    if (arguments.size() != 3 || !isNumber || count < 0) {
        std::fprintf(stderr, "usage: makestore <path> <tasks>\n");
        return 2;
    }
    const SystemClock clock;
    try {
        // Made and closed by the program's own code.
        (void)ModelContainer(arguments.at(1), clock);
    } catch (const StoreError &error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
    fill(arguments.at(1), clock, count);
    return 0;
}
