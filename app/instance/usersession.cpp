#include "app/instance/usersession.h"

#include <QDir>
#include <QFile>

#include <sys/stat.h>
#include <unistd.h>

using namespace Qt::StringLiterals;

namespace
{

bool isOwnSocket(const QString &path)
{
    struct stat status {
    };
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0 && S_ISSOCK(status.st_mode) &&
           status.st_uid == ::geteuid();
}

} // namespace

void neverStartABus()
{
    const QString address = qEnvironmentVariable("DBUS_SESSION_BUS_ADDRESS");
    if (!address.isEmpty() && !address.contains("autolaunch:"_L1))
        return;
    const QString folder = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (!folder.isEmpty() && isOwnSocket(folder + "/bus"_L1))
        // This is where it is looked for first.
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
    else
        // No kind of bus that anybody knows.
        qputenv("DBUS_SESSION_BUS_ADDRESS", "disabled:");
}

bool isPrivateFolder(const QString &path)
{
    struct stat status {
    };
    return ::lstat(QFile::encodeName(path).constData(), &status) == 0 && S_ISDIR(status.st_mode) &&
           status.st_uid == ::geteuid() && (status.st_mode & (S_IWGRP | S_IWOTH)) == 0;
}

QString userRuntimeFolder()
{
    // Not QStandardPaths: where the variable is missing, as in some jobs and remote logins, it
    // complains and leads to another folder than it does in the user's session.
    QString given = qEnvironmentVariable("XDG_RUNTIME_DIR");
    if (QDir::isAbsolutePath(given) && isPrivateFolder(given))
        return given;
    const QString user = QString::number(::geteuid());
    if (QString usual = u"/run/user/"_s + user; isPrivateFolder(usual))
        return usual;
    QString own = QDir::tempPath() + "/dk.tulo.TimeTracker-"_L1 + user;
    ::mkdir(QFile::encodeName(own).constData(), S_IRWXU);
    return isPrivateFolder(own) ? own : QString();
}
