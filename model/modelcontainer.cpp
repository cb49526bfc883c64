#include "model/modelcontainer.h"

#include "model/fatalerror.h"
#include "model/recordtable.h"
#include "model/reserve.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>
#include <sqlite3.h>

#include <QCoreApplication>
#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <thread>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

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
constexpr mode_t ownerOnly = S_IRUSR | S_IWUSR;

constexpr const char *newStoreSuffix = ".new";
constexpr const char *logSuffix = "-wal";
constexpr const char *journalSuffix = "-journal";
constexpr const char *sharedIndexSuffix = "-shm";

/// The advice on a refused file. A log that stays would be taken for that of the next file of that
/// name.
const std::string leftAsItIs =
    " It has been left as it is. To start with an empty store, move it away, together with the "
    "files beside it whose names begin with its own";

/// The file whose name has @p suffix at its end.
fs::path beside(fs::path path, const char *suffix)
{
    path += suffix;
    return path;
}

/// 0 if there is no such file.
qint64 sizeOf(const fs::path &path)
{
    std::error_code error;
    const std::uintmax_t size = fs::file_size(path, error);
    return error ? 0 : static_cast<qint64>(size);
}

bool isDirectory(const fs::path &path)
{
    std::error_code error;
    return fs::is_directory(path, error);
}

void removeFile(const fs::path &path)
{
    ::unlink(path.c_str());
}

std::string quoted(const fs::path &path)
{
    return '"' + path.native() + '"';
}

std::string modeOf(const struct stat &status)
{
    return QString::asprintf("mode %04o", static_cast<unsigned>(status.st_mode & 07777))
        .toStdString();
}

[[noreturn]] void fail(const fs::path &path, const std::string &what)
{
    throw StoreError("The store " + quoted(path) + " " + what);
}

[[noreturn]] void failAsDamaged(const fs::path &path, const std::string &detail)
{
    fail(path, "is damaged." + leftAsItIs + "; or put a backup in the place of all these" + detail);
}

[[noreturn]] void failAsUnwritable(const fs::path &path, const std::string &detail)
{
    fail(path, "cannot be opened for reading and writing. Check the rights of the file and its "
               "directory" +
                   detail);
}

/// What to do about @p error in using @p path, where chmod gives the @p rights that it takes.
std::string remedy(int error, const fs::path &path, const std::string &rights)
{
    if (error == EPERM)
        return " (it is marked as immutable). This takes the mark away: chattr -i " + quoted(path);
    struct stat status {
    };
    ::stat(path.c_str(), &status);
    return " (" + modeOf(status) + "). If it is yours, this gives them to you: chmod u+" + rights +
           ' ' + quoted(path);
}

/// What @p error in making or writing files in @p directory means, and what to do about it.
std::string explained(int error, const fs::path &directory)
{
    struct statvfs disk {
    };
    switch (error) {
    case ENOSPC:
    case EDQUOT:
        ::statvfs(directory.c_str(), &disk);
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
int denial(const fs::path &path, int access)
{
    return ::faccessat(AT_FDCWD, path.c_str(), access, AT_EACCESS) == 0 ? 0 : errno;
}

/// Why no files can be made and written in @p directory: an errno, or 0.
int obstacle(const fs::path &directory)
{
    // The index of the log, and the first changes in it.
    constexpr unsigned long roomToOpen = 64 * 1024;
    if (const int error = denial(directory, W_OK | X_OK))
        return error;
    struct statvfs disk {
    };
    if (::statvfs(directory.c_str(), &disk) != 0)
        return 0;
    const bool hasNoInode = disk.f_files > 0 && disk.f_favail == 0;
    return hasNoInode || disk.f_bavail * disk.f_frsize < roomToOpen ? ENOSPC : 0;
}

/// Refuses a store that the user may not use, before anything is locked or made beside it.
void checkRights(const fs::path &path)
{
    const fs::path directory = path.parent_path();
    if (const int error = denial(directory, W_OK | X_OK))
        fail(path, "cannot be used: " + explained(error, directory) + ".");
    for (const char *const suffix : {"", logSuffix, journalSuffix}) {
        const fs::path part = beside(path, suffix);
        const int error = denial(part, R_OK | W_OK);
        if (error != 0 && error != ENOENT)
            fail(path, "cannot be used: you lack the rights to read and write the file " +
                           quoted(part) + remedy(error, part, "rw") + ".");
    }
}

/// Refuses anything but files in the store's places, as SQLite would wait at a pipe for ever and
/// follow a link; and files that somebody else owns or may have changed, by whatever name.
void checkFiles(const fs::path &path)
{
    for (const char *const suffix : {"", logSuffix, journalSuffix, sharedIndexSuffix}) {
        const fs::path part = beside(path, suffix);
        const std::string name = quoted(part);
        struct stat status {
        };
        if (::lstat(part.c_str(), &status) != 0)
            continue;
        if (!S_ISREG(status.st_mode) && part == path)
            fail(path, "is not a plain file." + leftAsItIs + ".");
        if (!S_ISREG(status.st_mode))
            fail(path, "cannot be used: " + name + " is not a plain file. Move that one away.");
        if (status.st_uid != ::geteuid())
            fail(path, "cannot be used: the file " + name +
                           " belongs to another user. If you trust what is in it, this makes it "
                           "yours: sudo chown " +
                           std::to_string(::geteuid()) + ' ' + name + '.');
        if (status.st_nlink > 1)
            fail(path, "cannot be used: the file " + name +
                           " is hard-linked, and would be changed under its other name, too. This "
                           "gives it a file of its own: cp " +
                           name + ' ' + quoted(beside(part, ".copy")) + " && mv -f " +
                           quoted(beside(part, ".copy")) + ' ' + name + '.');
        if ((status.st_mode & (S_IWGRP | S_IWOTH)) != 0)
            fail(path,
                 "cannot be used: the file " + name + " may have been changed by others, as " +
                     "others may write it (" + modeOf(status) +
                     "). If you trust what is in it, this takes that right away: chmod go-w " +
                     name + '.');
    }
}

/// SQLite's code in terms of what a person can do about it.
[[noreturn]] void fail(const fs::path &path, const SQLite::Exception &error)
{
    const std::string detail = std::string(" (") + error.what() + ").";
    const fs::path directory = path.parent_path();
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
void syncDirectory(const fs::path &directory)
{
    const int descriptor = ::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    if (descriptor < 0)
        return;
    ::fsync(descriptor);
    ::close(descriptor);
}

/// Makes @p directory and those above it that are missing, for the owner alone whatever the umask.
void makeDirectory(const fs::path &directory)
{
    if (isDirectory(directory))
        return;
    const fs::path above = directory.parent_path();
    if (above != directory)
        makeDirectory(above);
    if (::mkdir(directory.c_str(), S_IRWXU) == 0) {
        ::chmod(directory.c_str(), S_IRWXU); // The umask may have taken even the owner's rights.
        syncDirectory(above);
        return;
    }
    const int error = errno;
    if (!isDirectory(directory))
        throw StoreError("The directory " + quoted(directory) +
                         " cannot be made: " + explained(error, above) + ".");
}

/// Takes away what others may do with the store: a backup may have come back with other rights.
void keepFromOthers(const fs::path &path)
{
    const auto restrict = [](const fs::path &name, mode_t allowed) {
        struct stat status {
        };
        if (::stat(name.c_str(), &status) == 0 && (status.st_mode & (S_IRWXG | S_IRWXO)) != 0)
            ::chmod(name.c_str(), allowed);
    };
    for (const char *const suffix : {"", logSuffix})
        restrict(beside(path, suffix), ownerOnly);
    // The program only takes care of its own directory.
    const fs::path directory = path.parent_path();
    std::error_code error;
    if (fs::equivalent(directory, ModelContainer::defaultPath().parent_path(), error))
        restrict(directory, S_IRWXU);
}

/// A table, index, trigger or view by kind and name, and by the SQL that makes it.
using SchemaPart = std::pair<std::string, std::string>;

/// All of them, in order.
std::vector<SchemaPart> schemaOf(SQLite::Database &database)
{
    std::vector<SchemaPart> parts;
    SQLite::Statement query(database, "SELECT type || ' \"' || name || '\"', tbl_name || ': ' || "
                                      "coalesce(sql, '') FROM sqlite_schema");
    while (query.executeStep())
        parts.emplace_back(query.getColumn(0).getString(), query.getColumn(1).getString());
    std::sort(parts.begin(), parts.end());
    return parts;
}

void makeTables(SQLite::Database &database)
{
    for (const RecordType type : recordTypes)
        database.exec(recordTable(type).create);
}

/// Refuses a store with anything more, less or other than this program's tables and indexes: a
/// trigger could change records behind its back.
void checkSchema(SQLite::Database &database, const fs::path &path)
{
    SQLite::Database own(":memory:", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    makeTables(own);
    const std::vector<SchemaPart> expected = schemaOf(own);
    const std::vector<SchemaPart> found = schemaOf(database);
    std::vector<SchemaPart> differing;
    std::set_symmetric_difference(found.begin(), found.end(), expected.begin(), expected.end(),
                                  std::back_inserter(differing));
    if (differing.empty())
        return;
    std::string part = differing.front().first;
    std::replace_if(
        part.begin(), part.end(), [](unsigned char letter) { return std::iscntrl(letter) != 0; },
        '?');
    fail(path,
         "has another schema than this program's: the " + part + " differs." + leftAsItIs + ".");
}

/// Looks at the store through a connection that cannot write: a read-write one would already fold
/// a leftover log into a file that is not ours to touch.
void check(const fs::path &path)
{
    SQLite::Database database(path.native(), SQLite::OPEN_READONLY | SQLite::OPEN_NOFOLLOW,
                              busyMilliseconds);
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
    checkSchema(database, path);
    const qint64 size = qint64{integer(database, "page_count")} * integer(database, "page_size");
    // The log may hold more than what has come into the file yet.
    if (sizeOf(path) < size && sizeOf(beside(path, logSuffix)) == 0)
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
void makeStore(const fs::path &path)
{
    SQLite::Database database(path.native(), SQLite::OPEN_READWRITE);
    database.exec("PRAGMA synchronous = FULL");
    SQLite::Transaction transaction(database);
    makeTables(database);
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
    Turn(const fs::path &directory, std::chrono::milliseconds patience)
        : m_directory(::open(directory.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC))
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

[[noreturn]] void failToMake(const fs::path &path, int error)
{
    fail(path, "cannot be made: " + explained(error, path.parent_path()) + ".");
}

/// An empty store is made under another name and then renamed: under its own name there is never
/// anything but a whole store, even if the machine stops in the middle.
void create(const fs::path &path, const Turn &turn)
{
    if (!turn.isTaken())
        failToMake(path, turn.error());
    const fs::path newPath = beside(path, newStoreSuffix);
    const auto clear = [&newPath] {
        for (const char *const suffix : {"", journalSuffix, logSuffix, sharedIndexSuffix})
            removeFile(beside(newPath, suffix));
    };
    clear();
    const int descriptor =
        ::open(newPath.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, ownerOnly);
    if (descriptor < 0)
        failToMake(path, errno);
    ::fchmod(descriptor, ownerOnly);
    ::close(descriptor);
    try {
        makeStore(newPath);
        check(newPath);
    } catch (const SQLite::Exception &error) {
        clear();
        fail(path, error);
    }
    // Some file systems cannot say no to a name that is taken. Nobody else has the turn to take it.
    if (::renameat2(AT_FDCWD, newPath.c_str(), AT_FDCWD, path.c_str(), RENAME_NOREPLACE) != 0 &&
        (errno != EINVAL || ::rename(newPath.c_str(), path.c_str()) != 0))
        failToMake(path, errno);
    clear();
    turn.sync();
}

std::unique_ptr<SQLite::Database> open(const fs::path &path)
{
    auto database = std::make_unique<SQLite::Database>(
        path.native(), SQLite::OPEN_READWRITE | SQLite::OPEN_NOFOLLOW, busyMilliseconds);
    // The lock is held from here on. So a second writer is refused, and no index of the log is
    // shared.
    database->exec(
        "PRAGMA cell_size_check = ON; PRAGMA locking_mode = EXCLUSIVE; PRAGMA synchronous = FULL; "
        "PRAGMA journal_mode = WAL; BEGIN IMMEDIATE; COMMIT");
    // SQLite begins a transaction even if the file cannot be written.
    if (sqlite3_db_readonly(database->getHandle(), "main") != 0)
        failAsUnwritable(path, ".");
    // The check before this left its index of the log behind. Nobody can use it any more.
    removeFile(beside(path, sharedIndexSuffix));
    return database;
}

} // namespace

fs::path ModelContainer::defaultPath()
{
    // QStandardPaths gives a text, and a name that is no UTF-8 would become another one in it.
    fs::path dataHome = qgetenv("XDG_DATA_HOME").toStdString();
    if (!dataHome.is_absolute())
        dataHome = fs::path("/") / qgetenv("HOME").toStdString() / ".local/share";
    return dataHome / QCoreApplication::applicationName().toStdString() / "store.sqlite";
}

ModelContainer::ModelContainer(const QString &path, const Clock &clock, SaveDelays delays)
    : ModelContainer(fs::path(QFile::encodeName(path).toStdString()), clock, delays)
{
}

ModelContainer::ModelContainer(const fs::path &path, const Clock &clock, SaveDelays delays)
{
    const fs::path parent = fs::absolute(path).parent_path();
    makeDirectory(parent);
    // Users may link the directories above as they like, but the file itself must be a file.
    std::error_code error;
    const fs::path canonical = fs::canonical(parent, error);
    const fs::path directory = error ? parent : canonical;
    const fs::path realPath = directory / path.filename();
    checkFiles(realPath);
    checkRights(realPath);
    const Turn turn(directory, delays.turn);
    if (turn.isKeptByAnother())
        fail(path, "cannot be opened: its directory " + quoted(directory) +
                       " is locked by another process, probably a TULO Time Tracker that hangs. "
                       "End that one first.");
    if (!fs::exists(realPath, error)) {
        for (const char *const suffix : {logSuffix, journalSuffix}) {
            const fs::path log = beside(realPath, suffix);
            if (sizeOf(log) > 0)
                fail(path, "is missing, but its log " + quoted(log) +
                               " is there, with changes that are nowhere else. Put the store back "
                               "beside it; or move the log away, too, to start with an empty "
                               "store.");
        }
        create(realPath, turn);
    } else if (sizeOf(realPath) == 0)
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
