#include "model/backups.h"

#include "model/backupfiles.h"
#include "model/clock.h"
#include "model/modelcontext.h"
#include "model/storefiles.h"
#include "model/storeinspection.h"

#include <SQLiteCpp/Backup.h>
#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>
#include <sqlite3.h>

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <cstdio>
#include <set>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace
{

using std::chrono::steady_clock;

void say(const std::string &what)
{
    std::fprintf(stderr, "%s\n", what.c_str());
}

std::string newestGoodInWords(const fs::path &store)
{
    const std::optional<BackupFile> backup = newestGoodBackup(store);
    if (!backup)
        return "There is no good backup.";
    return "The newest good backup is " + quoted(backup->path) + ".";
}

} // namespace

/// A backup that has no name yet: a file that goes with this object, unless it is given one.
class Backups::Copy
{
public:
    /// Of @p store, in a file at @p path. Throws StoreError or SQLite::Exception.
    Copy(SQLite::Database &store, fs::path path)
        : m_path(std::move(path))
    {
        removeFiles();
        const int descriptor =
            ::open(m_path.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, S_IRUSR | S_IWUSR);
        if (descriptor < 0)
            throw StoreError(explained(errno, m_path.parent_path()) + ".");
        ::fchmod(descriptor, S_IRUSR | S_IWUSR);
        ::close(descriptor);
        try {
            m_database = std::make_unique<SQLite::Database>(
                m_path.native(), SQLite::OPEN_READWRITE | SQLite::OPEN_NOFOLLOW);
            // A copy that is not finished is thrown away, so it needs no journal. The small cache
            // has its pages written as they come.
            m_database->exec("PRAGMA locking_mode = EXCLUSIVE; PRAGMA journal_mode = OFF; "
                             "PRAGMA synchronous = OFF; PRAGMA cache_size = 16");
            m_backup = std::make_unique<SQLite::Backup>(*m_database, store);
        } catch (const SQLite::Exception &) {
            m_database.reset();
            removeFiles();
            throw;
        }
    }
    ~Copy()
    {
        m_inspection.reset();
        m_backup.reset();
        m_database.reset();
        removeFiles();
    }
    Q_DISABLE_COPY_MOVE(Copy)

    /// Goes on for about @p time. True once the copy is on the disk and has been looked through.
    /// Throws SQLite::Exception.
    bool goOn(std::chrono::milliseconds time)
    {
        if (m_inspection)
            return m_inspection->goOn(time);
        const auto start = steady_clock::now();
        const int result = m_backup->executeStep(m_pages);
        if (result != SQLITE_OK && result != SQLITE_DONE)
            throw SQLite::Exception(m_database->getHandle(), result);
        // What is written is put on the disk at once, as all of it at the end would take too long.
        // How long that takes is the disk's affair, so the next part is as large as this one
        // allows.
        sync();
        const auto taken = steady_clock::now() - start;
        if (taken > time)
            m_pages = std::max(m_pages / 2, fewestPages);
        else if (taken < time / 2)
            m_pages = std::min(m_pages * 2, mostPages);
        if (result == SQLITE_DONE)
            close();
        return false;
    }

    /// Of the finished copy.
    const StoreInspection &inspection() const { return *m_inspection; }

    /// Gives the finished copy the name @p path, in place of the file that has it. Throws
    /// StoreError.
    void rename(const fs::path &path)
    {
        m_inspection.reset();
        m_database.reset();
        if (::rename(m_path.c_str(), path.c_str()) != 0)
            throw StoreError(explained(errno, path.parent_path()) + ".");
        syncDirectory(path.parent_path());
    }

private:
    void removeFiles() const
    {
        for (const char *const suffix : {"", journalSuffix, logSuffix, sharedIndexSuffix})
            removeFile(beside(m_path, suffix));
    }

    void sync()
    {
        sqlite3_file *file = nullptr;
        sqlite3_file_control(m_database->getHandle(), "main", SQLITE_FCNTL_FILE_POINTER, &file);
        if (const int result = file->pMethods->xSync(file, SQLITE_SYNC_NORMAL))
            throw SQLite::Exception("The copy cannot be put on the disk", result);
    }

    /// All that the copy is lies in its one file afterwards; it is read as the next start would.
    void close()
    {
        m_backup.reset();
        m_database->exec("PRAGMA journal_mode = DELETE");
        sync();
        m_database.reset();
        m_database = std::make_unique<SQLite::Database>(m_path.native(), SQLite::OPEN_READONLY |
                                                                             SQLite::OPEN_NOFOLLOW);
        m_database->exec("PRAGMA cell_size_check = ON");
        m_inspection.emplace(*m_database);
    }

    static constexpr int fewestPages = 16;
    static constexpr int mostPages = 4096;

    fs::path m_path;
    std::unique_ptr<SQLite::Database> m_database;
    std::unique_ptr<SQLite::Backup> m_backup;
    int m_pages = fewestPages;
    std::optional<StoreInspection> m_inspection;
};

Backups::Backups(SQLite::Database &database, const ModelContext &context)
    : m_database(database)
    , m_context(context)
    , m_store(database.getFilename())
{
    m_timer.setSingleShot(true);
}

Backups::~Backups() = default;

void Backups::begin()
{
    const fs::path log = beside(m_store, logSuffix);
    const Instant changedAt = std::max(writtenAt(m_store), sizeOf(log) > 0 ? writtenAt(log) : 0);
    const std::vector<BackupFile> backups = backupsOf(m_store);
    if (backups.empty() || writtenAt(backups.front().path) < changedAt)
        m_changedAt = changedAt;
    connect(&m_context, &ModelContext::written, this,
            [this] { m_changedAt = m_context.clock().now(); });
    connect(&m_context.clock(), &Clock::calendarChanged, this, &Backups::makeForEarlierDay);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        goOn();
        if (isMaking())
            m_timer.start(0);
    });
    // The start itself has other things to do.
    QTimer::singleShot(m_context.delays().backup, this, &Backups::makeForEarlierDay);
}

void Backups::finish()
{
    m_timer.stop();
    const auto end = steady_clock::now() + m_context.delays().finish;
    const auto goOnUntilEnd = [&] {
        while (isMaking() && steady_clock::now() < end)
            goOn();
    };
    goOnUntilEnd();
    if (m_changedAt && !isMaking()) {
        make(*std::exchange(m_changedAt, {}));
        goOnUntilEnd();
    }
    m_copy.reset();
}

void Backups::makeForEarlierDay()
{
    const Calendar &calendar = m_context.clock().calendar();
    if (isMaking() || !m_changedAt ||
        calendar.dayOf(*m_changedAt) >= calendar.dayOf(m_context.clock().now()))
        return;
    make(*std::exchange(m_changedAt, {}));
    if (isMaking())
        m_timer.start(0);
}

void Backups::make(Instant changedAt)
{
    m_copiedChange = changedAt;
    m_hasRepaired = false;
    makeCopy();
}

void Backups::makeCopy()
{
    attempt([this] {
        // From here on the store's file is only written to for a change, so that the next start can
        // tell by its time whether there was one.
        m_database.tryExec("PRAGMA wal_checkpoint(TRUNCATE)");
        makeDirectory(backupDirectory(m_store));
        removeOldBackups(m_store, sizeOf(m_store));
        m_copy = std::make_unique<Copy>(m_database, backupDirectory(m_store) / "unfinished");
    });
}

void Backups::goOn()
{
    attempt([this] {
        if (m_copy->goOn(m_context.delays().slice))
            end();
    });
}

void Backups::attempt(const std::function<void()> &part)
{
    try {
        part();
    } catch (const StoreError &error) {
        giveUp(error.what());
    } catch (const SQLite::Exception &error) {
        giveUp(std::string(error.what()) + ".");
    }
}

void Backups::end()
{
    const StoreInspection &inspection = m_copy->inspection();
    if (!inspection.damage().empty()) {
        giveUp("the store is damaged, " + inspection.damage() + ". " + newestGoodInWords(m_store));
        return;
    }
    if (!inspection.brokenIndexes().empty()) {
        repair();
        return;
    }
    m_copy->rename(backupPath(m_store, day()));
    m_copy.reset();
    removeOldBackups(m_store, 0);
}

void Backups::repair()
{
    const std::set<std::string> indexes = m_copy->inspection().brokenIndexes();
    m_copy.reset();
    if (std::exchange(m_hasRepaired, true)) {
        giveUp("the index " + *indexes.begin() + " does not find all rows, though it is new.");
        return;
    }
    for (const std::string &index : indexes) {
        m_database.exec("REINDEX " + index);
        say("The index " + index + " of the store " + quoted(m_store) +
            " did not find all rows, and has been built anew. " + newestGoodInWords(m_store));
    }
    makeCopy();
}

void Backups::giveUp(const std::string &why)
{
    m_copy.reset();
    // The next occasion is another try.
    if (!m_changedAt)
        m_changedAt = m_copiedChange;
    say("The backup " + quoted(backupPath(m_store, day())) + " could not be made: " + why);
}

QDate Backups::day() const
{
    return m_context.clock().calendar().dayOf(m_copiedChange);
}
