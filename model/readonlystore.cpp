#include "model/readonlystore.h"

#include "model/backupfiles.h"
#include "model/storechecks.h"
#include "model/storeerror.h"
#include "model/storefiles.h"
#include "model/storeschema.h"

#include <SQLiteCpp/Exception.h>
#include <sqlite3.h>

#include <sys/stat.h>

#include <cctype>

namespace fs = std::filesystem;

namespace
{

/// The address by which SQLite opens the file at @p path, with @p options.
std::string address(const fs::path &path, const char *options)
{
    constexpr const char *digits = "0123456789ABCDEF";
    std::string text = "file:";
    for (const char character : path.native()) {
        const auto byte = static_cast<unsigned char>(character);
        if (byte < 0x80 && (std::isalnum(byte) != 0 || character == '/')) {
            text += character;
        } else {
            text += '%';
            text += digits[byte >> 4U];
            text += digits[byte & 0xFU];
        }
    }
    return text + options;
}

} // namespace

ReadOnlyStore::ReadOnlyStore(const fs::path &path)
    : m_path(realStorePath(path))
    , m_marks(marks())
{
    std::error_code error;
    if (!fs::exists(m_path.parent_path(), error))
        return;
    try {
        checkFiles(m_path);
        checkRights(m_path);
        if (!isStoreThere(m_path))
            return;
        try {
            open();
        } catch (const SQLite::Exception &failure) {
            refuseFor(failure, m_path);
        }
    } catch (const UnusableStoreError &failure) {
        throw UnusableStoreError(failure.what() + restoreAdvice(m_path));
    }
}

void ReadOnlyStore::open()
{
    // SQLite's own words for it, and the program's.
    if (holderOf(m_path))
        throw SQLite::Exception("database is locked", SQLITE_BUSY);
    // Without locks, and with the store to itself, SQLite keeps the index of a log in memory. But
    // where there is no log, it would make an empty one, unless it takes the store for one that
    // never changes.
    const fs::path log = beside(m_path, logSuffix);
    const fs::path journal = beside(m_path, journalSuffix);
    const bool hasLog = sizeOf(log) > 0 || sizeOf(journal) > 0;
    m_database.emplace(address(m_path, hasLog ? "?mode=ro&vfs=unix-none" : "?mode=ro&immutable=1"),
                       SQLite::OPEN_READONLY | SQLite::OPEN_URI | SQLite::OPEN_NOFOLLOW);
    sqlite3_db_config(m_database->getHandle(), SQLITE_DBCONFIG_NO_CKPT_ON_CLOSE, 1, nullptr);
    m_database->exec("PRAGMA cell_size_check = ON; PRAGMA locking_mode = EXCLUSIVE");
    checkStore(*m_database, m_path);
}

bool ReadOnlyStore::hasChanged() const
{
    return holderOf(m_path).has_value() || marks() != m_marks;
}

ReadOnlyStore::Mark ReadOnlyStore::markOf(const fs::path &file)
{
    struct stat status {
    };
    if (::lstat(file.c_str(), &status) != 0)
        return {};
    return {static_cast<std::int64_t>(status.st_ino), status.st_size, status.st_mtim.tv_sec,
            status.st_mtim.tv_nsec, static_cast<std::int64_t>(status.st_dev)};
}

std::array<ReadOnlyStore::Mark, 3> ReadOnlyStore::marks() const
{
    return {markOf(m_path), markOf(beside(m_path, logSuffix)),
            markOf(beside(m_path, journalSuffix))};
}
