// Ends fatally in the way that the command line names.

#include "../support/fakeclock.h"
#include "model/arithmetic.h"
#include "model/livequery.h"
#include "model/modelcontainer.h"
#include "model/task.h"

#include <QCoreApplication>

#include <sys/resource.h>

#include <csignal>
#include <limits>

using namespace Qt::StringLiterals;

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const QString way = arguments.value(1);
    constexpr qint64 most = std::numeric_limits<qint64>::max();

    if (way == "not-a-number"_L1)
        (void)truncatedToInt(std::numeric_limits<double>::quiet_NaN());
    else if (way == "infinite"_L1)
        (void)truncatedToInt(-std::numeric_limits<double>::infinity());
    else if (way == "below"_L1)
        (void)truncatedToInt(-0x1.0000000000001p63);
    else if (way == "above"_L1)
        (void)truncatedToInt(0x1p63);
    else if (way == "sum"_L1)
        (void)checkedSum(most, 1);
    else if (way == "product"_L1)
        (void)checkedProduct(most, 2);
    else if (way == "run"_L1 || way == "stop"_L1 || way == "full-disk"_L1) {
        // A store with a task whose time overflows, and another one, both unsaved.
        FakeClock clock;
        ModelContainer container(arguments.value(2), clock);
        if (way == "full-disk"_L1) {
            std::signal(SIGXFSZ, SIG_IGN);
            const rlimit nothing{};
            ::setrlimit(RLIMIT_FSIZE, &nothing);
        }
        auto made = std::make_unique<Task>(clock, u"For lang"_s, clock.now(), std::nullopt);
        Task *const task = made.get();
        container.mainContext().insert(std::move(made));
        task->setAccumulatedSeconds(most);
        task->start();
        container.mainContext().insert(
            std::make_unique<Task>(clock, u"Ikke gemt"_s, clock.now(), std::nullopt));
        clock.advance(1);
        if (way == "stop"_L1)
            task->stop();
        else
            (void)task->currentTotalSeconds();
    } else if (way == "infinite-start"_L1) {
        // A store with a task that has been running since ever.
        const FakeClock clock;
        ModelContainer container(arguments.value(2), clock);
        Task::Values values;
        values.id = QUuid::createUuid();
        values.name = u"Uden begyndelse"_s;
        values.date = clock.today();
        values.lastStartTime = -std::numeric_limits<double>::infinity();
        container.mainContext().insert(std::make_unique<Task>(clock, values));
        container.mainContext().save();
        LiveQuery<Task> tasks(container.mainContext(), allRecords(), QueryOrder::Store);
        (void)tasks.results().constFirst()->formattedTime();
    }
    return 0;
}
