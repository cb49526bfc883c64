#include "model/modelcontainer.h"

#include "model/fatalerror.h"
#include "model/recordtable.h"

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
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace
{

/// Marks a SQLite file as a store of this program: "TULO".
constexpr int applicationID = 0x54554C4F;
/// A holder that is just ending lets go within this time.
constexpr int busyMilliseconds = 500;
constexpr QFileDevice::Permissions ownerOnly = QFileDevice::ReadOwner | QFileDevice::WriteOwner;

const QString newStoreSuffix = QStringLiteral(".new");
const QString logSuffix = QStringLiteral("-wal");

std::string quoted(const QString &path)
{
    return "\"" + QDir::toNativeSeparators(path).toStdString() + "\"";
}

[[noreturn]] void fail(const QString &path, const std::string &what)
{
    throw StoreError("The store " + quoted(path) + " " + what);
}

/// SQLite's code in terms of what a person can do about it.
[[noreturn]] void fail(const QString &path, const SQLite::Exception &error)
{
    const std::string detail = std::string(" (") + error.what() + ").";
    switch (error.getErrorCode()) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        fail(path, "is in use by another process, probably a TULO Time Tracker that is already "
                   "running. End that one first" +
                       detail);
    case SQLITE_NOTADB:
        fail(path,
             "is not a store of TULO Time Tracker. It has been left as it is; move it away to "
             "start with an empty store" +
                 detail);
    case SQLITE_CORRUPT:
        fail(path, "is damaged. It has been left as it is; put a backup in its place, or move it "
                   "away to start with an empty store" +
                       detail);
    case SQLITE_FULL:
        fail(path, "has no room on its disk. Free some space" + detail);
    case SQLITE_PERM:
    case SQLITE_READONLY:
    case SQLITE_CANTOPEN:
    case SQLITE_AUTH:
        fail(path, "cannot be opened for reading and writing. Check the rights of the file and its "
                   "directory" +
                       detail);
    default:
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

void syncDirectory(const QString &directory)
{
    const int descriptor = ::open(QFile::encodeName(directory).constData(), O_RDONLY | O_DIRECTORY);
    if (descriptor < 0)
        return;
    ::fsync(descriptor);
    ::close(descriptor);
}

void makeDirectory(const QString &directory)
{
    if (QFileInfo(directory).isDir())
        return;
    if (!QDir().mkpath(directory))
        throw StoreError("The directory " + quoted(directory) +
                         " cannot be made. Check the rights of the directories above it.");
    QFile::setPermissions(directory, ownerOnly | QFileDevice::ExeOwner);
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
        fail(path, "is a database of another program. It has been left as it is; move it away to "
                   "start with an empty store.");
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

/// An empty store is made under another name and then renamed: under its own name there is never
/// anything but a whole store, even if the machine stops in the middle.
void create(const QString &path)
{
    const QString newPath = path + newStoreSuffix;
    const QByteArray newName = QFile::encodeName(newPath);
    const QString parts[] = {newPath, newPath + QStringLiteral("-journal"), newPath + logSuffix};
    const auto clear = [&] {
        for (const QString &part : parts)
            QFile::remove(part);
    };
    try {
        clear();
        const int descriptor =
            ::open(newName.constData(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR);
        if (descriptor < 0)
            fail(path, std::string("cannot be made: ") + std::strerror(errno) + ".");
        ::fchmod(descriptor, S_IRUSR | S_IWUSR);
        ::close(descriptor);
        makeStore(newPath);
        check(newPath);
    } catch (const SQLite::Exception &error) {
        clear();
        fail(path, error);
    }
    // QFile does not replace an existing file: another process may have been faster.
    if (!QFile::rename(newPath, path) && !QFileInfo::exists(path))
        fail(path, "cannot be made: its new file cannot be renamed.");
    syncDirectory(QFileInfo(path).path());
}

std::unique_ptr<SQLite::Database> open(const QString &path)
{
    auto database = std::make_unique<SQLite::Database>(
        QFile::encodeName(path).constData(), SQLite::OPEN_READWRITE | SQLite::OPEN_NOFOLLOW,
        busyMilliseconds);
    // Held from here on, so that a second writer is refused; and no index of the log is shared.
    database->exec("PRAGMA locking_mode = EXCLUSIVE; PRAGMA synchronous = FULL; "
                   "PRAGMA journal_mode = WAL; BEGIN IMMEDIATE; COMMIT");
    return database;
}

} // namespace

QString ModelContainer::defaultPath()
{
    return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) +
           QStringLiteral("/store.sqlite");
}

ModelContainer::ModelContainer(const QString &path, const Clock &clock, SaveDelays delays)
{
    makeDirectory(QFileInfo(path).path());
    // Links in the directories above are the user's own affair; the file itself must be a file.
    const QFileInfo given(path);
    const QString realPath = QFileInfo(given.path()).canonicalFilePath() + u'/' + given.fileName();
    const QFileInfo file(realPath);
    if (file.isSymLink() || (file.exists() && !file.isFile()))
        fail(path, "is not a plain file. It has been left as it is; move it away to start with an "
                   "empty store.");
    if (!file.exists())
        create(realPath);
    else if (file.size() == 0)
        fail(path, "is empty, which a store never is. It has been left as it is; put a backup in "
                   "its place, or move it away to start with an empty store.");
    try {
        check(realPath);
        m_database = open(realPath);
    } catch (const SQLite::Exception &error) {
        fail(path, error);
    }
    m_mainContext = std::make_unique<ModelContext>(*m_database, clock, delays);
    setFatalErrorRescue([context = m_mainContext.get()] { context->save(); });
}

ModelContainer::~ModelContainer()
{
    setFatalErrorRescue({});
}
