#pragma once

#include <QDate>

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

/// One of a store's backups: the store as it was at the end of a day on which something changed.
struct BackupFile {
    QDate day;
    std::filesystem::path path;
};

/// Where the backups of the store at @p store lie.
std::filesystem::path backupDirectory(const std::filesystem::path &store);

/// The backup of @p day, whether there is one or not.
std::filesystem::path backupPath(const std::filesystem::path &store, QDate day);

/// The backups of the store at @p store, the newest day first. Files of other names are none.
std::vector<BackupFile> backupsOf(const std::filesystem::path &store);

/// The newest backup that is whole, which is found by reading all of it.
std::optional<BackupFile> newestGoodBackup(const std::filesystem::path &store);

/// How a person puts the newest good backup in the place of a store that is of no use: two
/// commands, in English, on lines of their own. Empty if there is no good one.
std::string restoreAdvice(const std::filesystem::path &store);

/// Removes the oldest backups of the store at @p store, until there are only so many, and only so
/// many bytes together with @p added ones, as there may be. The newest stays.
void removeOldBackups(const std::filesystem::path &store, qint64 added);
