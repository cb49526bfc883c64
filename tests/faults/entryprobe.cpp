// Someone names a task and enters the time given on the command line for it, in the store given
// before that; prints the seconds that come of it.

#include "../support/fakeclock.h"
#include "model/modelcontainer.h"
#include "model/task.h"
#include "timer/timermanager.h"
#include "views/row/taskrowviewmodel.h"

#include <QCoreApplication>

#include <cstdio>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    FakeClock clock;
    // Nothing is written by itself.
    ModelContainer container(arguments.value(1), clock, {1h, 1h});
    auto made = std::make_unique<Task>(clock, u""_s, clock.now(), std::nullopt);
    Task *const task = made.get();
    container.mainContext().insert(std::move(made));

    TimerManager timer(clock, 1h);
    ProjectCodeMenuModel codeMenu(container.mainContext());
    TaskRowViewModel row(*task, timer, codeMenu);
    row.startNameEditing();
    row.setEditedName(u"Netop navngivet"_s);
    row.commitNameEdit();
    task->start();
    clock.advance(90);
    row.startTimeEditing();
    row.setEditedTime(arguments.value(2));
    row.commitTimeEdit();
    std::printf("%lld\n", static_cast<long long>(task->accumulatedSeconds()));
    return 0;
}
