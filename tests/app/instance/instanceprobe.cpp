// Starts as the program does: instanceprobe SERVICE PATIENCE_MS [held]. Says "first" if it is to
// run, and what it is then asked for; held, it waits for a line of input before its event loop.

#include "app/instance/singleinstance.h"
#include "model/sessionbus.h"

#include <QCoreApplication>

#include <cstdio>

using namespace Qt::StringLiterals;

namespace
{

void say(const QString &line)
{
    std::puts(qUtf8Printable(line));
    std::fflush(stdout);
}

} // namespace

int main(int argc, char *argv[])
{
    const StartTokens tokens = StartTokens::fromEnvironment();
    neverStartABus();
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();

    SingleInstance instance(QDBusConnection::sessionBus(), arguments.at(1));
    const auto claim =
        instance.claim(tokens, std::chrono::milliseconds(arguments.at(2).toLongLong()));
    if (claim != SingleInstance::Claim::First)
        return claim == SingleInstance::Claim::HandedOver ? 0 : 1;
    say(u"first"_s);
    if (arguments.size() > 3)
        (void)std::getchar();

    QObject::connect(&instance, &SingleInstance::activated, &application,
                     [](const QString &token) { say(u"activated:"_s + token); });
    QObject::connect(&instance, &SingleInstance::quitRequested, &application,
                     &QCoreApplication::quit);
    return QCoreApplication::exec();
}
