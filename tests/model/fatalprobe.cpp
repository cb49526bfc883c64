// Ends fatally in the way that the command line names.

#include "../support/fakeclock.h"
#include "model/arithmetic.h"
#include "model/modelcontainer.h"
#include "model/task.h"

#include <QCoreApplication>

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
    else if (way == "run"_L1 || way == "stop"_L1) {
        // A store with an unsaved task, and another one whose time overflows.
        FakeClock clock;
        ModelContainer container(arguments.value(2), clock);
        container.mainContext().insert(
            std::make_unique<Task>(clock, u"Ikke gemt"_s, clock.now(), std::nullopt));
        Task task(clock, u"For lang"_s, clock.now(), std::nullopt);
        task.setAccumulatedSeconds(most);
        task.start();
        clock.advance(1);
        if (way == "stop"_L1)
            task.stop();
        else
            (void)task.currentTotalSeconds();
    }
    return 0;
}
