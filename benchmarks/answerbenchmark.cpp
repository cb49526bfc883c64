// What the program answers over the bus, out of a million tasks, and how long that keeps its event
// loop from everything else at a time. Needs a session bus: dbus-run-session -- answerbenchmark

#include "app/instance/tasksinterface.h"
#include "benchmarks/madestore.h"
#include "model/modelcontainer.h"
#include "model/systemclock.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDBusPendingCallWatcher>

#include <time.h>

#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;

namespace
{

constexpr int64_t tasks = 1'000'000;

/// What this thread has worked, on a machine that may be busy with other things, in milliseconds.
double worked()
{
    timespec time{};
    ::clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return static_cast<double>(time.tv_sec) * 1e3 + static_cast<double>(time.tv_nsec) / 1e6;
}

/// The answer to a question for so many days.
void answer(benchmark::State &state)
{
    using std::chrono::steady_clock;
    const SystemClock clock;
    ModelContainer container(madeStore(tasks), clock);
    QDBusConnection program = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"p"_s);
    QDBusConnection caller = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"c"_s);
    QObject object;
    TasksInterface answers(program, &object);
    answers.answerFrom(container.mainContext());
    program.registerObject(u"/dk/tulo/TimeTracker"_s, &object, QDBusConnection::ExportAdaptors);
    const QDate today = clock.calendar().dayOf(clock.now());
    QDBusMessage question = QDBusMessage::createMethodCall(
        program.baseService(), u"/dk/tulo/TimeTracker"_s, u"dk.tulo.TimeTracker1"_s, u"Tasks"_s);
    question.setArguments(
        {today.addDays(1 - state.range(0)).toString(Qt::ISODate), today.toString(Qt::ISODate)});

    steady_clock::duration longest{0};
    double longestWork = 0;
    QString error;
    for (auto _ : state) {
        const QDBusPendingCallWatcher watcher(caller.asyncCall(question));
        while (!watcher.isFinished()) {
            const auto start = steady_clock::now();
            const double before = worked();
            QCoreApplication::processEvents();
            longestWork = std::max(longestWork, worked() - before);
            longest = std::max(longest, steady_clock::now() - start);
        }
        error = watcher.reply().errorName();
    }
    state.SetLabel(error.toStdString());
    state.counters["longest_ms"] = std::chrono::duration<double, std::milli>(longest).count();
    state.counters["longest_cpu_ms"] = longestWork;
    QDBusConnection::disconnectFromBus(u"p"_s);
    QDBusConnection::disconnectFromBus(u"c"_s);
}

BENCHMARK(answer)
    ->Arg(31)
    ->Arg(365)
    ->Arg(1800)
    ->Arg(50'000)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return EXIT_SUCCESS;
}
