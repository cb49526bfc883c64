#include "hours/csv.h"
#include "hours/json.h"
#include "hours/options.h"
#include "hours/report.h"
#include "hours/runningprogram.h"
#include "hours/storedtasks.h"
#include "hours/table.h"
#include "hours/textwriter.h"
#include "model/modelcontainer.h"
#include "model/storefiles.h"

#include <QCoreApplication>
#include <QElapsedTimer>

#include <langinfo.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <chrono>
#include <clocale>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <thread>

using namespace Qt::StringLiterals;

namespace
{

constexpr int misused = 2;

/// Has texts written and read as UTF-8 where the environment names no such locale, as under cron,
/// before Qt does the same with a warning.
void useUnicode()
{
    std::setlocale(LC_ALL, "");
    if (std::strcmp(::nl_langinfo(CODESET), "UTF-8") != 0)
        ::setenv("LC_ALL", "C.UTF-8", 1);
}

/// Has the C library look for the system's zone once, and not again at each use: a report of many
/// years asks for it a million times.
void keepTheZone()
{
    constexpr int leaveIfSet = 0;
    ::setenv("TZ", ":/etc/localtime", leaveIfSet);
}

Instant currentMoment()
{
    return std::chrono::duration<double>(std::chrono::system_clock::now().time_since_epoch())
        .count();
}

/// What standard output is to a table.
Screen screen()
{
    Screen screen;
    if (::isatty(STDOUT_FILENO) == 0)
        return screen;
    winsize size{};
    if (::ioctl(STDOUT_FILENO, TIOCGWINSZ, &size) == 0 && size.ws_col > 0)
        screen.width = size.ws_col;
    screen.hasBold = qgetenv("NO_COLOR").isEmpty() && qgetenv("TERM") != "dumb";
    return screen;
}

/// The hours that are wanted: from the program that holds the store or, without one, from the store
/// itself. What changes meanwhile is asked for again.
Report reportOf(const Options &options, const Calendar &calendar)
{
    constexpr std::chrono::milliseconds pause{20};
    constexpr int mostChanges = 100;
    const std::filesystem::path path = ModelContainer::defaultPath();
    QElapsedTimer inUse;
    for (int changes = 0; changes < mostChanges;) {
        try {
            Report report(options.keys);
            const auto receive = [&report](const RecordedTask &task) { report.add(task); };
            if (!RunningProgram(path).deliver(options.period, receive))
                readStoredTasks(path, options.period, calendar, currentMoment(), receive);
            return report;
        } catch (const TasksChanged &) {
            // Whoever has changed it may hold it now, which the next turn tells.
            ++changes;
            inUse.invalidate();
        } catch (const StoreInUseError &) {
            // A program that is just starting or ending cannot be asked.
            if (!inUse.isValid())
                inUse.start();
            else if (inUse.hasExpired(busyMilliseconds))
                throw;
        }
        std::this_thread::sleep_for(pause);
    }
    throw StoreError("The tasks change all the time. Try again later.");
}

void write(const Report &report, const Options &options, TextWriter &writer)
{
    switch (options.format) {
    case Format::Table:
        writeTable(report, screen(), writer);
        break;
    case Format::Csv:
        writeCsv(report, writer);
        break;
    case Format::Json:
        writeJson(report, options.period, writer);
        break;
    }
}

/// The whole program; returns its status.
int run(int argc, char *argv[])
{
    const QCoreApplication application(argc, argv);
    // The name of the directory with the store.
    QCoreApplication::setApplicationName(u"dk.tulo.TimeTracker"_s);
    const Calendar calendar;
    TextWriter writer(STDOUT_FILENO);
    try {
        const Options options =
            optionsFrom(QCoreApplication::arguments().sliced(1), calendar.dayOf(currentMoment()));
        if (options.wantsHelp)
            writer.write(helpText());
        else
            write(reportOf(options, calendar), options, writer);
        writer.finish();
        return EXIT_SUCCESS;
    } catch (const UsageError &error) {
        std::fprintf(stderr, "tulo-hours: %s\n%s", error.what(), usageLine().toUtf8().constData());
        return misused;
    } catch (const StoreError &error) {
        std::fprintf(stderr, "%s\n", error.what());
    } catch (const WriteError &error) {
        if (!error.isForWantOfAReader())
            std::fprintf(stderr, "%s\n", error.what());
    }
    return EXIT_FAILURE;
}

} // namespace

int main(int argc, char *argv[])
{
    // A reader that has gone shows as a failed write, and so does a file that may not grow.
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    useUnicode();
    keepTheZone();
    // Qt's bus thread may still get a message, and would complain about the types of what is in it
    // if exit() destroyed them before it.
    std::_Exit(run(argc, argv));
}
