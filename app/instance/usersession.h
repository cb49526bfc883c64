#pragma once

#include <QDBusConnection>
#include <QString>

/// The user's session bus, or a connection that is not connected. Never has one started: that
/// would be a bus that nobody else is on.
QDBusConnection userSessionBus();

/// The folder for what only the running processes of this user share, or empty if there is none
/// that is safe from other users. The same one for all of them, whatever their HOME.
QString userRuntimeFolder();

/// Whether @p path is a folder, not a link to one, that belongs to this user and in which nobody
/// else can write.
bool isPrivateFolder(const QString &path);
