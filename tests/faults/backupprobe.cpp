// Works in the store named on the command line from the day that is named there, day after day, and
// says of each that it has ended. Goes on until it is killed.

#include "../support/fakeclock.h"
#include "model/modelcontainer.h"
#include "model/task.h"

#include <QCoreApplication>

#include <cstdio>

using namespace std::chrono_literals;

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    FakeClock clock(arguments.value(2) + QStringLiteral("T08:00:00"));
    ModelContainer container(arguments.value(1), clock, {1h, 1h, 10s, 0ms, 1h});
    ModelContext &context = container.mainContext();
    container.backups().begin();
    for (;;) {
        for (int i = 0; i < 10; ++i)
            context.insert(std::make_unique<Task>(clock, QString(1000, QLatin1Char('x')),
                                                  clock.now(), std::nullopt));
        context.save();
        clock.advance(24 * 3600);
        while (container.backups().isMaking())
            QCoreApplication::processEvents();
        std::puts("A day has ended.");
        std::fflush(stdout);
    }
}
