// What the main window costs. A long day: a tick, a scrolled frame, a list that changes. A long
// history: what the user does, until what changed is painted. To be run with
// QT_QPA_PLATFORM=offscreen.

#include "app/windows/mainwindow.h"
#include "benchmarks/madestore.h"
#include "model/modelcontainer.h"
#include "model/systemclock.h"
#include "model/task.h"
#include "views/controls/objectlistmodel.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <QQmlEngine>
#include <QQuickItem>
#include <QTemporaryDir>

#include <vector>

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace
{

/// A store, which is made if it is not there, and the main window, once it is history.
struct Program {
    explicit Program(const QString &store, std::chrono::milliseconds beat = 1h)
        : container(store, clock)
        , timer(clock, beat)
    {
        engine.addImportPath(u"qrc:/qt/qml"_s);
    }

    void open()
    {
        main.open();
        paint();
    }

    QQuickItem *item(const QString &name) const
    {
        return main.window()->findChild<QQuickItem *>(name);
    }

    void paint()
    {
        QCoreApplication::processEvents();
        benchmark::DoNotOptimize(main.window()->grabWindow());
    }

    SystemClock clock;
    ModelContainer container;
    ModelContext &context = container.mainContext();
    TimerManager timer;
    QQmlEngine engine;
    MainWindow main{engine, timer, context};
};

/// A day of that many tasks, of which the first runs.
struct Day : QTemporaryDir, Program {
    explicit Day(int64_t tasks, std::chrono::milliseconds beat = 1h)
        : Program(filePath(u"store.sqlite"_s), beat)
    {
        for (int64_t i = 0; i < tasks; ++i) {
            auto task =
                std::make_unique<Task>(clock, u"Opgave %1"_s.arg(i), clock.now(), std::nullopt, i);
            if (i == 0)
                task->start();
            context.insert(std::move(task));
        }
        context.save();
        open();
    }
};

/// A day of 20 tasks, with so many in the past.
struct History : Program {
    explicit History(int64_t tasks)
        : Program(madeStore(tasks))
    {
        open();
    }
};

/// All that follows from a tick: the visible rows' texts and the sum of the day.
void tick(benchmark::State &state)
{
    Day day(state.range(0), 0ms);
    for (auto _ : state) {
        const qint64 before = day.timer.tick();
        while (day.timer.tick() == before)
            QCoreApplication::processEvents();
    }
}

/// The list moves by a row and is painted, the whole window with it.
void scroll(benchmark::State &state)
{
    Day day(state.range(0));
    QQuickItem *const list = day.item(u"taskList"_s);
    const double end = list->property("contentHeight").toDouble() - list->height();
    double place = 0;
    for (auto _ : state) {
        place = place + 47 < end ? place + 47 : 0;
        list->setProperty("contentY", place);
        day.paint();
    }
}

/// A task goes and comes back in the middle of the list's model.
void change(benchmark::State &state)
{
    std::vector<std::unique_ptr<QObject>> objects(static_cast<std::size_t>(state.range(0)));
    QList<QObject *> list;
    for (auto &object : objects) {
        object = std::make_unique<QObject>();
        list.append(object.get());
    }
    QList<QObject *> shorter = list;
    shorter.removeAt(shorter.size() / 2);
    ObjectListModel model;
    model.setObjects(list);
    for (auto _ : state) {
        model.setObjects(shorter);
        model.setObjects(list);
    }
}

/// Painting while nothing has changed, for comparison.
void paint(benchmark::State &state)
{
    History history(state.range(0));
    for (auto _ : state)
        history.paint();
}

/// The header's button: the day's first task starts, or the one that runs stops.
void startOrStop(benchmark::State &state)
{
    History history(state.range(0));
    QQuickItem *const button = history.item(u"startPauseButton"_s);
    for (auto _ : state) {
        QMetaObject::invokeMethod(button, "clicked");
        history.paint();
    }
}

/// "Ny opgave".
void newTask(benchmark::State &state)
{
    History history(state.range(0));
    QQuickItem *const button = history.item(u"addTaskButton"_s);
    for (auto _ : state) {
        QMetaObject::invokeMethod(button, "clicked");
        history.paint();
    }
}

/// To the day before and back, each painted: two days with their rows.
void dayBeforeAndBack(benchmark::State &state)
{
    History history(state.range(0));
    for (auto _ : state) {
        history.timer.goToPreviousDay();
        history.paint();
        history.timer.goToNextDay();
        history.paint();
    }
}

void days(benchmark::internal::Benchmark *each)
{
    each->Arg(20)->Arg(5'000)->Unit(benchmark::kMicrosecond);
}

void histories(benchmark::internal::Benchmark *each)
{
    each->Arg(10'000)->Arg(1'000'000)->Unit(benchmark::kMillisecond);
}

BENCHMARK(tick)->Apply(days);
BENCHMARK(scroll)->Apply(days);
BENCHMARK(change)->Apply(days);
BENCHMARK(paint)->Apply(histories);
BENCHMARK(startOrStop)->Apply(histories)->Iterations(200);
BENCHMARK(dayBeforeAndBack)->Apply(histories);
BENCHMARK(newTask)->Apply(histories)->Iterations(100);

} // namespace

int main(int argc, char *argv[])
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return EXIT_SUCCESS;
}
