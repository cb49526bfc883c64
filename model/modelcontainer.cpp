#include "model/modelcontainer.h"

#include "model/fatalerror.h"
#include "model/recordtable.h"
#include "model/reserve.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>
#include <sqlite3.h>

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QStandardPaths>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstring>
#include <thread>

using namespace Qt::StringLiterals;

namespace
{

/// Marks a SQLite file as a store of this program: "TULO".
constexpr int applicationID = 0x54554C4F;
/// A holder that is just ending lets go within this time.
constexpr int busyMilliseconds = 500;
/// A store up to this size, some 8,000 tasks, is looked through as a whole before it is opened,
/// which takes a few milliseconds. Damage in a larger one shows where it is read.
constexpr qint64 sizeLookedThrough = 1'000'000;
constexpr QFileDevice::Permissions ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

const QString newStoreSuffix = u".new"_s;
const QString logSuffix = u"-wal"_s;
const QString journalSuffix = u"-journal"_s;
const QString sharedIndexSuffix = u"-shm"_s;

/// The advice on a refused file. A log that stays would be taken for that of the next file of that
/// name.
const std::string leftAsItIs =
    " It has been left as it is. To start with an empty store, move it away, together with the "
    "files beside it whose names begin with its own";

std::string quoted(const QString &path)
{
    return QString(u'"' + QDir::toNativeSeparators(path) + u'"').toStdString();
}

[[noreturn]] void fail(const QString &path, const std::string &what)
{
    throw StoreError("The store " + quoted(path) + " " + what);
}

[[noreturn]] void failAsDamaged(const QString &path, const std::string &detail)
{
    fail(path, "is damaged." + leftAsItIs + "; or put a backup in the place of all these" + detail);
}

[[noreturn]] void failAsUnwritable(const QString &path, const std::string &detail)
{
    fail(path, "cannot be opened for reading and writing. Check the rights of the file and its "
               "directory" +
                   detail);
}

/// What to do about @p error in using @p path, where chmod gives the @p rights that it takes.
std::string remedy(int error, const QString &path, const std::string &rights)
{
    if (error == EPERM)
        return " (it is marked as immutable). This takes the mark away: chattr -i " + quoted(path);
    struct stat status {
    };
    ::stat(QFile::encodeName(path).constData(), &status);
    const QString mode = QString::asprintf("%04o", static_cast<unsigned>(status.st_mode & 07777));
    return " (mode " + mode.toStdString() + "). If it is yours, this gives them to you: chmod u+" +
           rights + ' ' + quoted(path);
}

/// What @p error in making or writing files in @p directory means, and what to do about it.
std::string explained(int error, const QString &directory)
{
    struct statvfs disk {
    };
    switch (error) {
    case ENOSPC:
    case EDQUOT:
        ::statvfs(QFile::encodeName(directory).constData(), &disk);
        if (disk.f_files > 0 && disk.f_favail == 0)
            return "the disk of the directory " + quoted(directory) +
                   " takes no more files, however small (it has no free inode). Delete some there";
        return "the disk of the directory " + quoted(directory) + " is full. Free some space on it";
    case EROFS:
        return "the disk of the directory " + quoted(directory) +
               " is mounted read-only. Mount it for writing";
    case EACCES:
    case EPERM:
        return "you lack the rights to make files in the directory " + quoted(directory) +
               remedy(error, directory, "rwx");
    default:
        return std::string(std::strerror(error)) + ". Check what lies in " + quoted(directory);
    }
}

/// Why the user may not do @p access, as access(2) takes it, to @p path: an errno, or 0.
int denial(const QString &path, int access)
{
    const QByteArray name = QFile::encodeName(path);
    return ::faccessat(AT_FDCWD, name.constData(), access, AT_EACCESS) == 0 ? 0 : errno;
}

/// Why no files can be made and written in @p directory: an errno, or 0.
int obstacle(const QString &directory)
{
    // The index of the log, and the first changes in it.
    constexpr unsigned long roomToOpen = 64 * 1024;
    if (const int error = denial(directory, W_OK | X_OK))
        return error;
    struct statvfs disk {
    };
    if (::statvfs(QFile::encodeName(directory).constData(), &disk) != 0)
        return 0;
    const bool hasNoInode = disk.f_files > 0 && disk.f_favail == 0;
    return hasNoInode || disk.f_bavail * disk.f_frsize < roomToOpen ? ENOSPC : 0;
}

/// Refuses a store that the user may not use, before anything is locked or made beside it.
void checkRights(const QString &path)
{
    const QString directory = QFileInfo(path).path();
    if (const int error = denial(directory, W_OK | X_OK))
        fail(path, "cannot be used: " + explained(error, directory) + ".");
    for (const QString &part : {path, path + logSuffix, path + journalSuffix}) {
        const int error = denial(part, R_OK | W_OK);
        if (error != 0 && error != ENOENT)
            fail(path, "cannot be used: you lack the rights to read and write the file " +
                           quoted(part) + remedy(error, part, "rw") + ".");
    }
}

/// Refuses anything but files in the store's places: SQLite would wait at a pipe for ever, and
/// follow a link.
void checkKinds(const QString &path)
{
    for (const QString &suffix : {QString(), logSuffix, journalSuffix, sharedIndexSuffix}) {
        const QString part = path + suffix;
        struct stat status {
        };
        if (::lstat(QFile::encodeName(part).constData(), &status) != 0 || S_ISREG(status.st_mode))
            continue;
        if (suffix.isEmpty())
            fail(path, "is not a plain file." + leftAsItIs + ".");
        fail(path, "cannot be used: " + quoted(part) + " is not a plain file. Move that one away.");
    }
}

/// SQLite's code in terms of what a person can do about it.
[[noreturn]] void fail(const QString &path, const SQLite::Exception &error)
{
    const std::string detail = std::string(" (") + error.what() + ").";
    const QString directory = QFileInfo(path).path();
    const auto failForTheDirectory = [&] {
        if (const int reason = obstacle(directory))
            fail(path, "cannot be used: " + explained(reason, directory) + detail);
    };
    switch (error.getErrorCode()) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        fail(path, "is in use by another process, probably a TULO Time Tracker that is already "
                   "running. End that one first" +
                       detail);
    case SQLITE_NOTADB:
        fail(path, "is not a store of TULO Time Tracker." + leftAsItIs + detail);
    case SQLITE_CORRUPT:
        failAsDamaged(path, detail);
    case SQLITE_FULL:
        fail(path, "cannot be used: " + explained(ENOSPC, directory) + detail);
    case SQLITE_PERM:
    case SQLITE_READONLY:
    case SQLITE_CANTOPEN:
    case SQLITE_AUTH:
        failForTheDirectory();
        failAsUnwritable(path, detail);
    default:
        failForTheDirectory();
        fail(path, "cannot be read" + detail);
    }
}

int integer(SQLite::Database &database, const char *pragma)
{
    return database.execAndGet(std::string("PRAGMA ") + pragma).getInt();
}

std::string versionText(int version)
{
    return std::to_string(version / 10000) + "." + std::to_string(version / 100 % 100) + "." +
           std::to_string(version % 100);
}

/// Puts the names that @p directory holds on the disk.
void syncDirectory(const QString &directory)
{
    const int descriptor =
        ::open(QFile::encodeName(directory).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    ::fsync(descriptor);
    ::close(descriptor);
}

/// Makes @p directory and those above it that are missing, for the owner alone whatever the umask.
void makeDirectory(const QString &directory)
{
    if (QFileInfo(directory).isDir())
        return;
    const QString above = QFileInfo(directory).path();
    if (above != directory)
        makeDirectory(above);
    const QByteArray name = QFile::encodeName(directory);
    if (::mkdir(name.constData(), S_IRWXU) == 0) {
        ::chmod(name.constData(), S_IRWXU); // The umask may have taken even the owner's rights.
        syncDirectory(above);
        return;
    }
    const int error = errno;
    if (!QFileInfo(directory).isDir())
        throw StoreError("The directory " + quoted(directory) +
                         " cannot be made: " + explained(error, above) + ".");
}

/// Takes away what others may do with the store: a backup may have come back with other rights.
void keepFromOthers(const QString &path)
{
    const auto restrict = [](const QString &name, QFileDevice::Permissions allowed) {
        const QFileDevice::Permissions now = QFileInfo(name).permissions();
        // What QFileInfo says of the user is about the one who asks, not the owner.
        constexpr QFileDevice::Permissions others =
            QFileDevice::ReadGroup | QFileDevice::WriteGroup | QFileDevice::ExeGroup |
            QFileDevice::ReadOther | QFileDevice::WriteOther | QFileDevice::ExeOther;
        if ((now & others) != 0)
            QFile::setPermissions(name, allowed);
    };
    for (const QString &part : {path, path + logSuffix}) {
        if (QFileInfo::exists(part))
            restrict(part, ownerOnly);
    }
    // The program only takes care of its own directory.
    const QString directory = QFileInfo(path).path();
    const QString own = QFileInfo(ModelContainer::defaultPath()).path();
    if (directory == QFileInfo(own).canonicalFilePath())
        restrict(directory, ownerOnly | QFileDevice::ExeOwner);
}

/// Looks at the store through a connection that cannot write: a read-write one would already fold
/// a leftover log into a file that is not ours to touch.
void check(const QString &path)
{
    SQLite::Database database(QFile::encodeName(path).constData(),
                              SQLite::OPEN_READONLY | SQLite::OPEN_NOFOLLOW, busyMilliseconds);
    const int application = integer(database, "application_id");
    const int version = integer(database, "user_version");
    if (application != applicationID)
        fail(path, "is a database of another program." + leftAsItIs + ".");
    if (version > ModelContainer::schemaVersion)
        fail(path, "was written by a newer version of TULO Time Tracker (schema " +
                       versionText(version) + ", this one reads " +
                       versionText(ModelContainer::schemaVersion) +
                       "). It has been left as it is; install that version.");
    if (version != ModelContainer::schemaVersion)
        fail(path, "has the schema version " + versionText(version) + ", and this program reads " +
                       versionText(ModelContainer::schemaVersion) +
                       " only. It has been left as it is.");
    for (const RecordType type : recordTypes) {
        try {
            const SQLite::Statement statement(database, recordTable(type).select);
        } catch (const SQLite::Exception &error) {
            if (error.getErrorCode() != SQLITE_ERROR)
                throw;
            fail(path, std::string("has other tables than this program's (") + error.what() +
                           "). It has been left as it is.");
        }
    }
    const qint64 size = qint64{integer(database, "page_count")} * integer(database, "page_size");
    // The log may hold more than what has come into the file yet.
    if (QFileInfo(path).size() < size && QFileInfo(path + logSuffix).size() == 0)
        failAsDamaged(path, " (its end is missing).");
    if (size <= sizeLookedThrough) {
        std::string verdict = database.execAndGet("PRAGMA integrity_check(1)").getString();
        std::replace(verdict.begin(), verdict.end(), '\n', ' ');
        if (verdict != "ok")
            failAsDamaged(path, " (" + verdict + ").");
    }
}

/// Makes an empty store in the empty file at @p path. All of it is in that file when this returns,
/// and nothing in a log: closing a log may fail, and nobody would be told.
void makeStore(const QString &path)
{
    SQLite::Database database(QFile::encodeName(path).constData(), SQLite::OPEN_READWRITE);
    database.exec("PRAGMA synchronous = FULL");
    SQLite::Transaction transaction(database);
    for (const RecordType type : recordTypes)
        database.exec(recordTable(type).create);
    database.exec("PRAGMA application_id = " + std::to_string(applicationID) +
                  "; PRAGMA user_version = " + std::to_string(ModelContainer::schemaVersion));
    transaction.commit();
    database.exec("PRAGMA journal_mode = WAL");
}

/// A process's turn in the store's directory. Processes that make or open a store at once would
/// rename each other's unfinished files, and by looking at the store keep each other from the lock
/// that one of them is to have.
class Turn
{
public:
    /// Waits for it, but not longer than @p patience. A directory that cannot be read has no turns.
    Turn(const QString &directory, std::chrono::milliseconds patience)
        : m_directory(
              ::open(QFile::encodeName(directory).constData(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
        , m_error(errno)
    {
        // The lock has no waiting that ends by itself.
        constexpr std::chrono::milliseconds pause{20};
        const auto end = std::chrono::steady_clock::now() + patience;
        while (m_directory >= 0 && ::flock(m_directory, LOCK_EX | LOCK_NB) != 0) {
            m_error = errno;
            if (m_error != EWOULDBLOCK || std::chrono::steady_clock::now() >= end) {
                ::close(m_directory);
                m_directory = -1;
            } else {
                std::this_thread::sleep_for(pause);
            }
        }
    }
    ~Turn()
    {
        if (m_directory >= 0)
            ::close(m_directory);
    }
    Q_DISABLE_COPY_MOVE(Turn)

    bool isTaken() const { return m_directory >= 0; }
    /// Whether another process has kept it for too long.
    bool isKeptByAnother() const { return !isTaken() && m_error == EWOULDBLOCK; }
    /// Why it is not taken.
    int error() const { return m_error; }
    /// Puts the directory's entries on the disk.
    void sync() const { ::fsync(m_directory); }

private:
    int m_directory;
    int m_error;
};

[[noreturn]] void failToMake(const QString &path, int error)
{
    fail(path, "cannot be made: " + explained(error, QFileInfo(path).path()) + ".");
}

/// An empty store is made under another name and then renamed: under its own name there is never
/// anything but a whole store, even if the machine stops in the middle.
void create(const QString &path, const Turn &turn)
{
    if (!turn.isTaken())
        failToMake(path, turn.error());
    const QString newPath = path + newStoreSuffix;
    const QByteArray newName = QFile::encodeName(newPath);
    const auto clear = [&newPath] {
        for (const char *const suffix : {"", "-journal", "-wal", "-shm"})
            QFile::remove(newPath + QLatin1StringView(suffix));
    };
    clear();
    const int descriptor =
        ::open(newName.constData(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR);
    if (descriptor < 0)
        failToMake(path, errno);
    ::fchmod(descriptor, S_IRUSR | S_IWUSR);
    ::close(descriptor);
    try {
        makeStore(newPath);
        check(newPath);
    } catch (const SQLite::Exception &error) {
        clear();
        fail(path, error);
    }
    if (!QFile::rename(newPath, path))
        fail(path, "cannot be made: its new file cannot be renamed.");
    clear();
    turn.sync();
}

std::unique_ptr<SQLite::Database> open(const QString &path)
{
    auto database = std::make_unique<SQLite::Database>(
        QFile::encodeName(path).constData(), SQLite::OPEN_READWRITE | SQLite::OPEN_NOFOLLOW,
        busyMilliseconds);
    // The lock is held from here on. So a second writer is refused, and no index of the log is
    // shared.
    database->exec(
        "PRAGMA cell_size_check = ON; PRAGMA locking_mode = EXCLUSIVE; PRAGMA synchronous = FULL; "
        "PRAGMA journal_mode = WAL; BEGIN IMMEDIATE; COMMIT");
    // SQLite begins a transaction even if the file cannot be written.
    if (sqlite3_db_readonly(database->getHandle(), "main") != 0)
        failAsUnwritable(path, ".");
    // The check before this left its index of the log behind. Nobody can use it any more.
    QFile::remove(path + sharedIndexSuffix);
    return database;
}

} // namespace

QString ModelContainer::defaultPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + u"/store.sqlite"_s;
}

ModelContainer::ModelContainer(const QString &path, const Clock &clock, SaveDelays delays)
{
    makeDirectory(QFileInfo(path).path());
    // Users may link the directories above as they like, but the file itself must be a file.
    const QFileInfo given(path);
    const QString realPath = QFileInfo(given.path()).canonicalFilePath() + u'/' + given.fileName();
    checkKinds(realPath);
    checkRights(realPath);
    const QString directory = QFileInfo(realPath).path();
    const Turn turn(directory, delays.turn);
    if (turn.isKeptByAnother())
        fail(path, "cannot be opened: its directory " + quoted(directory) +
                       " is locked by another process, probably a TULO Time Tracker that hangs. "
                       "End that one first.");
    const QFileInfo file(realPath);
    if (!file.exists()) {
        for (const QString &suffix : {logSuffix, journalSuffix}) {
            if (QFileInfo(realPath + suffix).size() > 0)
                fail(path, "is missing, but its log " + quoted(realPath + suffix) +
                               " is there, with changes that are nowhere else. Put the store back "
                               "beside it; or move the log away, too, to start with an empty "
                               "store.");
        }
        create(realPath, turn);
    } else if (file.size() == 0)
        fail(path, "is empty, which a store never is." + leftAsItIs +
                       "; or put a backup in the place of all these.");
    const auto openStore = [&] {
        check(realPath);
        keepFromOthers(realPath);
        m_database = open(realPath);
    };
    try {
        try {
            openStore();
        } catch (const SQLite::Exception &) {
            // The files that SQLite makes beside the store take room, too.
            if (obstacle(directory) != ENOSPC || !Reserve(realPath).giveUp())
                throw;
            openStore();
        }
    } catch (const SQLite::Exception &error) {
        fail(path, error);
    }
    m_mainContext = std::make_unique<ModelContext>(*m_database, clock, delays);
    setFatalErrorRescue([context = m_mainContext.get()] { context->saveOrTell(); });
}

ModelContainer::~ModelContainer()
{
    setFatalErrorRescue({});
}
