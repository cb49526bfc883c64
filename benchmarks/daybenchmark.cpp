// What a long day costs on the screen: a tick, a scrolled frame, a list that changes. To be run
// with QT_QPA_PLATFORM=offscreen.

#include "app/windows/mainwindow.h"
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

/// The main window with a day of that many tasks, of which the first runs.
struct Day {
    explicit Day(int64_t tasks, std::chrono::milliseconds beat = 1h)
        : timer(clock, beat)
    {
        ModelContext &context = container.mainContext();
        for (int64_t i = 0; i < tasks; ++i) {
            auto task =
                std::make_unique<Task>(clock, u"Opgave %1"_s.arg(i), clock.now(), std::nullopt, i);
            if (i == 0)
                task->start();
            context.insert(std::move(task));
        }
        context.save();
        engine.addImportPath(u"qrc:/qt/qml"_s);
        main.open();
        list = main.window()->findChild<QQuickItem *>(u"taskList"_s);
        paint();
    }

    void paint()
    {
        QCoreApplication::processEvents();
        benchmark::DoNotOptimize(main.window()->grabWindow());
    }

    QTemporaryDir directory;
    SystemClock clock;
    ModelContainer container{directory.filePath(u"store.sqlite"_s), clock};
    TimerManager timer;
    QQmlEngine engine;
    MainWindow main{engine, clock, timer, container.mainContext()};
    QQuickItem *list = nullptr;
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
    const double end = day.list->property("contentHeight").toDouble() - day.list->height();
    double place = 0;
    for (auto _ : state) {
        place = place + 47 < end ? place + 47 : 0;
        day.list->setProperty("contentY", place);
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

void sizes(benchmark::internal::Benchmark *each)
{
    each->Arg(20)->Arg(5'000)->Unit(benchmark::kMicrosecond);
}

BENCHMARK(tick)->Apply(sizes);
BENCHMARK(scroll)->Apply(sizes);
BENCHMARK(change)->Apply(sizes);

} // namespace

int main(int argc, char *argv[])
{
    QQuickWindow::setGraphicsApi(QSGRendererInterface::Software);
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return EXIT_SUCCESS;
}
