#include "model/backupfiles.h"

#include "model/storeerror.h"
#include "model/storefiles.h"
#include "model/storeschema.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>

#include <algorithm>

namespace fs = std::filesystem;

namespace
{

constexpr std::size_t mostBackups = 14;
constexpr qint64 mostBytes = 256'000'000;
constexpr const char *fileExtension = ".sqlite";

bool isGood(const fs::path &backup)
{
    try {
        checkStore(backup);
        SQLite::Database database(backup.native(), SQLite::OPEN_READONLY);
        return database.execAndGet("PRAGMA integrity_check(1)").getString() == "ok";
    } catch (const StoreError &) {
        return false;
    } catch (const SQLite::Exception &) {
        return false;
    }
}

/// @p path as a shell takes it for one word.
std::string shellWord(const fs::path &path)
{
    std::string word = "'";
    for (const char character : path.native()) {
        if (character == '\'')
            word += "'\\''";
        else
            word += character;
    }
    return word + '\'';
}

/// A name for a directory beside @p store that is not taken.
fs::path placeForDamagedStore(const fs::path &store)
{
    const fs::path directory = store.parent_path();
    fs::path place = directory / "damaged";
    std::error_code error;
    for (int number = 2; fs::exists(fs::symlink_status(place, error)); ++number)
        place = directory / ("damaged-" + std::to_string(number));
    return place;
}

} // namespace

fs::path backupDirectory(const fs::path &store)
{
    return store.parent_path() / "backups";
}

fs::path backupPath(const fs::path &store, QDate day)
{
    return backupDirectory(store) / (day.toString(Qt::ISODate).toStdString() + fileExtension);
}

std::vector<BackupFile> backupsOf(const fs::path &store)
{
    std::vector<BackupFile> backups;
    std::error_code error;
    for (const fs::directory_entry &entry : fs::directory_iterator(backupDirectory(store), error)) {
        const QDate day =
            QDate::fromString(QString::fromStdString(entry.path().stem()), Qt::ISODate);
        if (day.isValid() && entry.path() == backupPath(store, day) &&
            fs::is_regular_file(entry.symlink_status(error)))
            backups.push_back({day, entry.path()});
    }
    std::sort(backups.begin(), backups.end(),
              [](const BackupFile &a, const BackupFile &b) { return a.day > b.day; });
    return backups;
}

std::optional<BackupFile> newestGoodBackup(const fs::path &store)
{
    const std::vector<BackupFile> backups = backupsOf(store);
    const auto good = std::find_if(backups.begin(), backups.end(),
                                   [](const BackupFile &backup) { return isGood(backup.path); });
    return good == backups.end() ? std::nullopt : std::optional(*good);
}

std::string restoreAdvice(const fs::path &store)
{
    const std::optional<BackupFile> backup = newestGoodBackup(store);
    if (!backup)
        return {};
    const std::string place = shellWord(placeForDamagedStore(store));
    return "\nThe newest good backup is of " + backup->day.toString(Qt::ISODate).toStdString() +
           ". These two commands put it in the store's place:\n  mkdir " + place + " && mv " +
           shellWord(store) + "* " + place + "\n  cp " + shellWord(backup->path) + ' ' +
           shellWord(store);
}

void removeOldBackups(const fs::path &store, qint64 added)
{
    const std::vector<BackupFile> backups = backupsOf(store);
    qint64 bytes = added;
    for (std::size_t i = 0; i < backups.size(); ++i) {
        bytes += sizeOf(backups.at(i).path);
        if (i >= mostBackups || (i > 0 && bytes > mostBytes))
            removeFile(backups.at(i).path);
    }
}
