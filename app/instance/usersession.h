#pragma once

#include <QString>

/// Has the session bus looked for only where the environment promises one, from now on and by
/// everybody in this process: a search would end in one being started, and nobody else would be
/// on it. To be called before the application object is made, which already searches.
void neverStartABus();

/// The folder for what only the running processes of this user share, or empty if there is none
/// that is safe from other users. The same one for all of them, whatever their HOME.
QString userRuntimeFolder();

/// Whether @p path is a folder, not a link to one, that belongs to this user and in which nobody
/// else can write.
bool isPrivateFolder(const QString &path);
