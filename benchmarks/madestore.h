#pragma once

#include <QProcess>
#include <QString>
#include <QTemporaryDir>

#include <map>

/// The path of a store of that many tasks, as makestore makes it: once, and worked in by all.
inline QString madeStore(int64_t tasks)
{
    static const QTemporaryDir directory;
    static std::map<int64_t, QString> made;
    const auto [entry, isNew] = made.try_emplace(tasks);
    if (isNew) {
        entry->second = directory.filePath(QStringLiteral("%1/store.sqlite").arg(tasks));
        QProcess::execute(QStringLiteral(MAKESTORE), {entry->second, QString::number(tasks)});
    }
    return entry->second;
}
