#pragma once

#include <QByteArray>
#include <QHash>
#include <QList>
#include <QString>

#include <sqlite3.h>

#include <array>
#include <functional>
#include <random>

/// What SQLite asks of the file system.
enum class FileOperation {
    Open,
    Access,
    Delete,
    Read,
    Write,
    Truncate,
    Sync,
    FileSize,
    Lock,
    SharedMemory,
};

/// SQLite's file system while it lives: that of the machine, with faults. It does not wait for the
/// disk, but knows what the disk would have lost without power.
class FaultVfs
{
public:
    enum class Duration { Once, ForGood };

    FaultVfs();
    ~FaultVfs();
    Q_DISABLE_COPY_MOVE(FaultVfs)

    /// Lets the call of @p operation at @p position, counted from 1 and from now on, fail with
    /// SQLite's @p code, and with Duration::ForGood all that follow. A write that fails has
    /// written its first half.
    void failAt(FileOperation operation, int position, int code, Duration duration);
    /// From now on nothing fails.
    void heal();
    /// Whether anything has failed since failAt().
    bool hasFailed() const { return m_hasFailed; }

    /// Calls @p cut before the call at @p position, counted from 1 and from now on, that changes a
    /// file.
    void cutPowerAt(int position, std::function<void()> cut);
    /// The files as the disk has them if the power goes now: what was written after a file's last
    /// sync is there or not, sector by sector.
    QHash<QString, QByteArray> filesAfterPowerCut(std::mt19937 &random) const;
    /// Whether nothing was written to the file at @p path since its last sync.
    bool isSynced(const QString &path) const { return m_files.value(path).unsynced.isEmpty(); }

private:
    struct Change {
        qint64 offset;
        QByteArray data;
        bool isTruncation;
    };
    struct FileOnDisk {
        QByteArray synced;
        QList<Change> unsynced;
    };
    struct Handle;
    struct Methods;

    /// The code that this call fails with, or SQLITE_OK.
    int fault(FileOperation operation);
    void beforeChange();
    void track(const QString &path);
    static void apply(QByteArray &contents, const Change &change);

    sqlite3_vfs *m_machine;
    sqlite3_vfs m_vfs{};
    FileOperation m_operation = FileOperation::Open;
    int m_callsToFault = 0;
    int m_code = SQLITE_OK;
    Duration m_duration = Duration::Once;
    bool m_hasFailed = false;
    int m_changesToCut = 0;
    std::function<void()> m_cut;
    QHash<QString, FileOnDisk> m_files;
};
