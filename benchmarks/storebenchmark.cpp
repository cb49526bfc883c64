// What the program does with its store, at stores of several sizes: all on the thread that draws,
// so each has to fit into a frame. "CPU" is what that thread works; "Time" also waits for the disk.

#include "benchmarks/madestore.h"
#include "model/backupfiles.h"
#include "model/modelcontainer.h"
#include "model/systemclock.h"
#include "model/task.h"
#include "model/tasklist.h"
#include "timer/timermanager.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QFile>

#include <algorithm>
#include <chrono>

using namespace Qt::StringLiterals;

namespace
{

/// An opened store with what the program keeps of it.
struct Opened {
    explicit Opened(int64_t tasks)
        : container(madeStore(tasks), clock)
    {
    }

    SystemClock clock;
    ModelContainer container;
    ModelContext &context = container.mainContext();
    TimerManager timer{clock};
    AllTasks allTasks{context};
    DayTasks today{context, clock.calendar().dayInterval(clock.now())};
};

void open(benchmark::State &state)
{
    const SystemClock clock;
    const QString path = madeStore(state.range(0));
    for (auto _ : state)
        ModelContainer(path, clock);
}

void startAndStop(benchmark::State &state)
{
    Opened opened(state.range(0));
    Task *const task = opened.today.sortedTasks().constFirst();
    for (auto _ : state) {
        opened.timer.startTask(task, opened.allTasks, opened.context);
        opened.timer.stopTask(task, opened.context);
    }
}

void newTask(benchmark::State &state)
{
    Opened opened(state.range(0));
    for (auto _ : state) {
        auto task = std::make_unique<Task>(opened.clock, QString(), opened.clock.now(),
                                           std::nullopt, opened.today.tasks().size());
        Task *const inserted = task.get();
        opened.context.insert(std::move(task));
        opened.context.save();
        state.PauseTiming();
        opened.context.remove(inserted);
        opened.context.save();
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        state.ResumeTiming();
    }
}

void anotherDay(benchmark::State &state)
{
    Opened opened(state.range(0));
    const Calendar &calendar = opened.clock.calendar();
    // Each day is new: what has been shown stays in memory.
    Instant day = opened.clock.today();
    for (auto _ : state) {
        day = calendar.addingDays(day, -1).value_or(day);
        opened.today.setDay(calendar.dayInterval(day));
        benchmark::DoNotOptimize(opened.today.sortedTasks().size());
    }
}

void runningTask(benchmark::State &state)
{
    const SystemClock clock;
    ModelContainer container(madeStore(state.range(0)), clock);
    for (auto _ : state) {
        const AllTasks tasks(container.mainContext());
        benchmark::DoNotOptimize(tasks.running().size());
    }
}

/// The day after today.
class Tomorrow : public Clock
{
public:
    Instant now() const override { return m_clock.now() + 24.0 * 3600; }

private:
    SystemClock m_clock;
};

/// The backup of a day that has ended, and how long it keeps everything else waiting at a time.
void backUp(benchmark::State &state)
{
    using std::chrono::steady_clock;
    const Tomorrow clock;
    SaveDelays delays;
    delays.backup = std::chrono::milliseconds(0);
    const std::filesystem::path path = QFile::encodeName(madeStore(state.range(0))).toStdString();
    steady_clock::duration longest{0};
    for (auto _ : state) {
        std::filesystem::remove_all(backupDirectory(path));
        ModelContainer container(path, clock, delays);
        container.backups().begin();
        while (backupsOf(path).empty() || container.backups().isMaking()) {
            const auto start = steady_clock::now();
            QCoreApplication::processEvents();
            longest = std::max(longest, steady_clock::now() - start);
        }
    }
    std::filesystem::remove_all(backupDirectory(path));
    state.counters["longest_ms"] = std::chrono::duration<double, std::milli>(longest).count();
}

void sizes(benchmark::internal::Benchmark *each)
{
    each->Arg(20)->Arg(10'000)->Arg(100'000)->Arg(1'000'000)->Unit(benchmark::kMicrosecond);
}

BENCHMARK(open)->Apply(sizes);
BENCHMARK(startAndStop)->Apply(sizes);
BENCHMARK(newTask)->Apply(sizes);
BENCHMARK(anotherDay)->Apply(sizes)->Iterations(500);
BENCHMARK(runningTask)->Apply(sizes);
BENCHMARK(backUp)->Apply(sizes)->Iterations(3);

} // namespace

int main(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return EXIT_SUCCESS;
}
