#include "faultvfs.h"

#include <QFile>

#include <algorithm>
#include <utility>

namespace
{
constexpr int sectorSize = 512;
}

/// An open file: SQLite allocates it, and the machine's own handle behind it.
struct FaultVfs::Handle {
    sqlite3_file base;
    FaultVfs *vfs;
    QString *path;

    sqlite3_file *machine() { return reinterpret_cast<sqlite3_file *>(this + 1); }
};

struct FaultVfs::Methods {
    static FaultVfs &self(sqlite3_vfs *vfs) { return *static_cast<FaultVfs *>(vfs->pAppData); }
    static Handle &handle(sqlite3_file *file) { return *reinterpret_cast<Handle *>(file); }
    static sqlite3_file *machine(sqlite3_file *file) { return handle(file).machine(); }

    // Of the file system

    static int open(sqlite3_vfs *vfs, const char *name, sqlite3_file *file, int flags, int *given)
    {
        FaultVfs &faults = self(vfs);
        auto *const opened = new (file) Handle{{nullptr}, &faults, nullptr};
        if (const int code = faults.fault(FileOperation::Open); code != SQLITE_OK)
            return code;
        const QString path = QString::fromUtf8(name);
        faults.track(path);
        const int code =
            faults.m_machine->xOpen(faults.m_machine, name, opened->machine(), flags, given);
        if (code == SQLITE_OK) {
            opened->base.pMethods = &ofFiles;
            opened->path = new QString(path);
        }
        return code;
    }
    static int remove(sqlite3_vfs *vfs, const char *name, int syncDirectory)
    {
        FaultVfs &faults = self(vfs);
        if (const int code = faults.fault(FileOperation::Delete); code != SQLITE_OK)
            return code;
        faults.beforeChange();
        faults.m_files.remove(QString::fromUtf8(name));
        return faults.m_machine->xDelete(faults.m_machine, name, syncDirectory);
    }
    static int access(sqlite3_vfs *vfs, const char *name, int flags, int *result)
    {
        FaultVfs &faults = self(vfs);
        if (const int code = faults.fault(FileOperation::Access); code != SQLITE_OK)
            return code;
        return faults.m_machine->xAccess(faults.m_machine, name, flags, result);
    }
    static int fullPathname(sqlite3_vfs *vfs, const char *name, int size, char *path)
    {
        sqlite3_vfs *const machine = self(vfs).m_machine;
        return machine->xFullPathname(machine, name, size, path);
    }
    static int randomness(sqlite3_vfs *vfs, int size, char *bytes)
    {
        sqlite3_vfs *const machine = self(vfs).m_machine;
        return machine->xRandomness(machine, size, bytes);
    }
    // Whoever waits for a lock need not wait here.
    static int sleep(sqlite3_vfs *, int microseconds) { return microseconds; }
    static int currentTime(sqlite3_vfs *vfs, double *now)
    {
        sqlite3_vfs *const machine = self(vfs).m_machine;
        return machine->xCurrentTime(machine, now);
    }
    static int lastError(sqlite3_vfs *vfs, int size, char *text)
    {
        sqlite3_vfs *const machine = self(vfs).m_machine;
        return machine->xGetLastError(machine, size, text);
    }

    // Of open files

    static int close(sqlite3_file *file)
    {
        delete handle(file).path;
        return machine(file)->pMethods->xClose(machine(file));
    }
    static int read(sqlite3_file *file, void *bytes, int size, sqlite3_int64 offset)
    {
        if (const int code = handle(file).vfs->fault(FileOperation::Read); code != SQLITE_OK)
            return code;
        return machine(file)->pMethods->xRead(machine(file), bytes, size, offset);
    }
    static int write(sqlite3_file *file, const void *bytes, int size, sqlite3_int64 offset)
    {
        FaultVfs &faults = *handle(file).vfs;
        const int fault = faults.fault(FileOperation::Write);
        if (fault != SQLITE_OK)
            size /= 2;
        else
            faults.beforeChange();
        const int code = machine(file)->pMethods->xWrite(machine(file), bytes, size, offset);
        if (code == SQLITE_OK)
            faults.m_files[*handle(file).path].unsynced.append(
                {offset, QByteArray(static_cast<const char *>(bytes), size), false});
        return fault != SQLITE_OK ? fault : code;
    }
    static int truncate(sqlite3_file *file, sqlite3_int64 size)
    {
        FaultVfs &faults = *handle(file).vfs;
        if (const int code = faults.fault(FileOperation::Truncate); code != SQLITE_OK)
            return code;
        faults.beforeChange();
        const int code = machine(file)->pMethods->xTruncate(machine(file), size);
        if (code == SQLITE_OK)
            faults.m_files[*handle(file).path].unsynced.append({size, {}, true});
        return code;
    }
    static int sync(sqlite3_file *file, int)
    {
        FaultVfs &faults = *handle(file).vfs;
        if (const int code = faults.fault(FileOperation::Sync); code != SQLITE_OK)
            return code;
        faults.beforeChange();
        FileOnDisk &onDisk = faults.m_files[*handle(file).path];
        for (const Change &change : std::as_const(onDisk.unsynced))
            apply(onDisk.synced, change);
        onDisk.unsynced.clear();
        return SQLITE_OK;
    }
    static int fileSize(sqlite3_file *file, sqlite3_int64 *size)
    {
        if (const int code = handle(file).vfs->fault(FileOperation::FileSize); code != SQLITE_OK)
            return code;
        return machine(file)->pMethods->xFileSize(machine(file), size);
    }
    static int lock(sqlite3_file *file, int kind)
    {
        if (const int code = handle(file).vfs->fault(FileOperation::Lock); code != SQLITE_OK)
            return code;
        return machine(file)->pMethods->xLock(machine(file), kind);
    }
    static int unlock(sqlite3_file *file, int kind)
    {
        return machine(file)->pMethods->xUnlock(machine(file), kind);
    }
    static int checkReservedLock(sqlite3_file *file, int *result)
    {
        if (const int code = handle(file).vfs->fault(FileOperation::Lock); code != SQLITE_OK)
            return code;
        return machine(file)->pMethods->xCheckReservedLock(machine(file), result);
    }
    static int fileControl(sqlite3_file *file, int control, void *argument)
    {
        return machine(file)->pMethods->xFileControl(machine(file), control, argument);
    }
    static int sectorSize(sqlite3_file *file)
    {
        return machine(file)->pMethods->xSectorSize(machine(file));
    }
    static int deviceCharacteristics(sqlite3_file *file)
    {
        // Nothing may be taken for granted of a disk.
        return machine(file)->pMethods->xDeviceCharacteristics(machine(file)) &
               SQLITE_IOCAP_UNDELETABLE_WHEN_OPEN;
    }
    static int shmMap(sqlite3_file *file, int region, int size, int extend, void volatile **memory)
    {
        if (const int code = handle(file).vfs->fault(FileOperation::SharedMemory);
            code != SQLITE_OK)
            return code;
        return machine(file)->pMethods->xShmMap(machine(file), region, size, extend, memory);
    }
    static int shmLock(sqlite3_file *file, int offset, int count, int flags)
    {
        if (const int code = (flags & SQLITE_SHM_LOCK) != 0
                                 ? handle(file).vfs->fault(FileOperation::SharedMemory)
                                 : SQLITE_OK;
            code != SQLITE_OK)
            return code;
        return machine(file)->pMethods->xShmLock(machine(file), offset, count, flags);
    }
    static void shmBarrier(sqlite3_file *file)
    {
        machine(file)->pMethods->xShmBarrier(machine(file));
    }
    static int shmUnmap(sqlite3_file *file, int isDeleted)
    {
        return machine(file)->pMethods->xShmUnmap(machine(file), isDeleted);
    }

    static const sqlite3_io_methods ofFiles;
};

const sqlite3_io_methods FaultVfs::Methods::ofFiles = {
    2,
    close,
    read,
    write,
    truncate,
    sync,
    fileSize,
    lock,
    unlock,
    checkReservedLock,
    fileControl,
    sectorSize,
    deviceCharacteristics,
    shmMap,
    shmLock,
    shmBarrier,
    shmUnmap,
    nullptr,
    nullptr,
};

FaultVfs::FaultVfs()
    : m_machine(sqlite3_vfs_find(nullptr))
{
    m_vfs.iVersion = 1;
    m_vfs.szOsFile = static_cast<int>(sizeof(Handle)) + m_machine->szOsFile;
    m_vfs.mxPathname = m_machine->mxPathname;
    m_vfs.zName = "faults";
    m_vfs.pAppData = this;
    m_vfs.xOpen = &Methods::open;
    m_vfs.xDelete = &Methods::remove;
    m_vfs.xAccess = &Methods::access;
    m_vfs.xFullPathname = &Methods::fullPathname;
    m_vfs.xRandomness = &Methods::randomness;
    m_vfs.xSleep = &Methods::sleep;
    m_vfs.xCurrentTime = &Methods::currentTime;
    m_vfs.xGetLastError = &Methods::lastError;
    sqlite3_vfs_register(&m_vfs, 1);
}

FaultVfs::~FaultVfs()
{
    sqlite3_vfs_unregister(&m_vfs);
    sqlite3_vfs_register(m_machine, 1);
}

void FaultVfs::failAt(FileOperation operation, int position, int code, Duration duration)
{
    m_operation = operation;
    m_callsToFault = position;
    m_code = code;
    m_duration = duration;
    m_hasFailed = false;
}

void FaultVfs::heal()
{
    m_callsToFault = 0;
}

void FaultVfs::cutPowerAt(int position, std::function<void()> cut)
{
    m_changesToCut = position;
    m_cut = std::move(cut);
}

QHash<QString, QByteArray> FaultVfs::filesAfterPowerCut(std::mt19937 &random) const
{
    QHash<QString, QByteArray> files;
    for (auto file = m_files.cbegin(); file != m_files.cend(); ++file) {
        if (file.key().isEmpty())
            continue; // A temporary file: it is gone.
        QByteArray contents = file->synced;
        for (const Change &change : file->unsynced) {
            if (change.isTruncation) {
                if (random() % 2 == 0)
                    apply(contents, change);
                continue;
            }
            for (qsizetype at = 0; at < change.data.size(); at += sectorSize) {
                if (random() % 2 == 0)
                    apply(contents, {change.offset + at, change.data.mid(at, sectorSize), false});
            }
        }
        files.insert(file.key(), contents);
    }
    return files;
}

int FaultVfs::fault(FileOperation operation)
{
    if (operation != m_operation || m_callsToFault == 0)
        return SQLITE_OK;
    if (m_callsToFault > 1) {
        --m_callsToFault;
        return SQLITE_OK;
    }
    if (m_duration == Duration::Once)
        m_callsToFault = 0;
    m_hasFailed = true;
    return m_code;
}

void FaultVfs::beforeChange()
{
    if (m_changesToCut > 0 && --m_changesToCut == 0)
        m_cut();
}

void FaultVfs::track(const QString &path)
{
    if (path.isEmpty() || m_files.contains(path))
        return;
    FileOnDisk &onDisk = m_files[path];
    QFile file(path);
    if (file.open(QIODevice::ReadOnly))
        onDisk.synced = file.readAll();
}

void FaultVfs::apply(QByteArray &contents, const Change &change)
{
    if (change.isTruncation) {
        contents.resize(change.offset);
        return;
    }
    const qsizetype end = change.offset + change.data.size();
    if (contents.size() < end)
        contents.append(end - contents.size(), '\0');
    std::copy(change.data.cbegin(), change.data.cend(), contents.begin() + change.offset);
}
