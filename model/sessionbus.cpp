#include "model/sessionbus.h"

#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

bool isOwnSocket(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    struct stat status {
    };
    return ::lstat(name.constData(), &status) == 0 && S_ISSOCK(status.st_mode) &&
           status.st_uid == ::geteuid();
}

} // namespace

void neverStartABus()
{
    const QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    if (!address.isEmpty() && !address.contains("autolaunch:"_L1))
        return;
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    const QString socket = folder + "/bus"_L1;
    if (!folder.isEmpty() && isOwnSocket(socket))
        // Without an address, libdbus looks for the bus in that folder first.
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    else
        // There is no such transport, so connecting fails.
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
}
