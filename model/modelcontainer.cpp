#include "model/modelcontainer.h"

#include "model/backupfiles.h"
#include "model/fatalerror.h"
#include "model/reserve.h"
#include "model/storechecks.h"
#include "model/storefiles.h"
#include "model/storeschema.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>
#include <sqlite3.h>

#include <QCoreApplication>
#include <QFile>

#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdio>
#include <thread>

namespace fs = std::filesystem;

namespace
{

constexpr const char *newStoreSuffix = ".new";
constexpr mode_t ownerOnly = S_IRUSR | S_IWUSR;

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

[[noreturn]] void refuseToMake(const fs::path &path, int error)
{
    refuse(path, "cannot be made: " + explained(error, path.parent_path()) + ".");
}

/// An empty store is made under another name and then renamed: under its own name there is never
/// anything but a whole store, even if the machine stops in the middle.
void create(const fs::path &path, const Turn &turn)
{
    if (!turn.isTaken())
        refuseToMake(path, turn.error());
    const fs::path newPath = beside(path, newStoreSuffix);
    const auto clear = [&newPath] {
        for (const char *const suffix : {"", journalSuffix, logSuffix, sharedIndexSuffix})
            removeFile(beside(newPath, suffix));
    };
    clear();
    const int descriptor =
        ::open(newPath.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, ownerOnly);
    if (descriptor < 0)
        refuseToMake(path, errno);
    ::fchmod(descriptor, ownerOnly);
    ::close(descriptor);
    try {
        makeStore(newPath);
        checkStore(newPath);
    } catch (const SQLite::Exception &error) {
        clear();
        refuseFor(error, path);
    }
    // Some file systems cannot say no to a name that is taken. Nobody else has the turn to take it.
    if (::renameat2(AT_FDCWD, newPath.c_str(), AT_FDCWD, path.c_str(), RENAME_NOREPLACE) != 0 &&
        (errno != EINVAL || ::rename(newPath.c_str(), path.c_str()) != 0))
        refuseToMake(path, errno);
    clear();
    turn.sync();
}

std::unique_ptr<SQLite::Database> open(const fs::path &path)
{
    checkStore(path);
    keepFromOthers(path);
    auto database = std::make_unique<SQLite::Database>(
        path.native(), SQLite::OPEN_READWRITE | SQLite::OPEN_NOFOLLOW, busyMilliseconds);
    // The lock is held from here on. So a second writer is refused, and no index of the log is
    // shared.
    database->exec(
        "PRAGMA cell_size_check = ON; PRAGMA locking_mode = EXCLUSIVE; PRAGMA synchronous = FULL; "
        "PRAGMA journal_mode = WAL; BEGIN IMMEDIATE; COMMIT");
    // SQLite begins a transaction even if the file cannot be written.
    if (sqlite3_db_readonly(database->getHandle(), "main") != 0)
        refuseAsUnwritable(path, ".");
    // The check before this left its index of the log behind. Nobody can use it any more.
    removeFile(beside(path, sharedIndexSuffix));
    return database;
}

/// Opens the store at @p path, or makes an empty one where there is no file, when it is this
/// process's turn, which is waited for for @p patience.
std::unique_ptr<SQLite::Database> openOrMake(const fs::path &path,
                                             std::chrono::milliseconds patience)
{
    const fs::path directory = path.parent_path();
    checkFiles(path);
    checkRights(path);
    const Turn turn(directory, patience);
    if (turn.isKeptByAnother())
        refuse(path, "cannot be opened: its directory " + quoted(directory) +
                         " is locked by another process, probably a TULO Time Tracker that hangs. "
                         "End that one first.");
    if (!isStoreThere(path))
        create(path, turn);
    try {
        try {
            return open(path);
        } catch (const SQLite::Exception &) {
            // The files that SQLite makes beside the store take room, too.
            if (obstacle(directory) != ENOSPC || !Reserve(path).giveUp())
                throw;
            return open(path);
        }
    } catch (const SQLite::Exception &error) {
        refuseFor(error, path);
    }
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
    makeDirectory(fs::absolute(path).parent_path());
    const fs::path realPath = realStorePath(path);
    try {
        m_database = openOrMake(realPath, delays.turn);
    } catch (const UnusableStoreError &error) {
        throw UnusableStoreError(error.what() + restoreAdvice(realPath));
    }
    m_mainContext = std::make_unique<ModelContext>(*m_database, clock, delays);
    m_backups = std::make_unique<Backups>(*m_database, *m_mainContext);
    setFatalErrorRescue([context = m_mainContext.get()] { context->saveOrTell(); });
}

ModelContainer::~ModelContainer()
{
    setFatalErrorRescue({});
}
