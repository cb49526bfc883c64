#include "app/unixsignals.h"

#include <QCoreApplication>
#include <QSocketNotifier>

#include <fcntl.h>
#include <unistd.h>

#include <csignal>

namespace
{

int wakeUpPipe[2];

void wakeUp(int)
{
    // A signal handler is allowed nothing more than this; the event loop does the rest.
    const char byte = 0;
    [[maybe_unused]] const ssize_t written = ::write(wakeUpPipe[1], &byte, 1);
}

} // namespace

void quitOnUnixSignals(QObject *parent)
{
    if (::pipe(wakeUpPipe) != 0)
        return;
    for (const int end : wakeUpPipe) {
        ::fcntl(end, F_SETFD, FD_CLOEXEC);
        ::fcntl(end, F_SETFL, O_NONBLOCK);
    }
    auto *const notifier = new QSocketNotifier(wakeUpPipe[0], QSocketNotifier::Read, parent);
    QObject::connect(notifier, &QSocketNotifier::activated, qApp, [notifier] {
        notifier->setEnabled(false);
        QCoreApplication::quit();
    });
    for (const int signal : {SIGTERM, SIGINT, SIGHUP}) {
        struct sigaction action {
        };
        action.sa_handler = wakeUp;
        action.sa_flags = SA_RESTART;
        ::sigaction(signal, &action, nullptr);
    }
}
