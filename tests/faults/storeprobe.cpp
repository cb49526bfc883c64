// Opens the store named on the command line, says whether it could, and holds it until its
// standard input ends.

#include "../support/fakeclock.h"
#include "model/modelcontainer.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    try {
        const FakeClock clock;
        const ModelContainer container(QCoreApplication::arguments().value(1), clock);
        std::puts("open");
        std::fflush(stdout);
        while (std::getchar() != EOF) {
        }
    } catch (const StoreError &error) {
        std::puts(error.what());
        return 1;
    }
    return 0;
}
