#pragma once

#include <QTemporaryFile>

#include <unistd.h>

#include <functional>

/// What @p action writes to standard error.
inline QString saidBy(const std::function<void()> &action)
{
    QTemporaryFile said;
    if (!said.open())
        return QStringLiteral("The test's file cannot be opened.");
    const int standardError = ::dup(STDERR_FILENO);
    ::dup2(said.handle(), STDERR_FILENO);
    action();
    ::dup2(standardError, STDERR_FILENO);
    ::close(standardError);
    said.seek(0);
    return QString::fromUtf8(said.readAll());
}
