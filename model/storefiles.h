#pragma once

#include <QtGlobal>

#include <sys/types.h>

#include <filesystem>
#include <optional>
#include <string>

// The store's files on the disk, and what keeps them from being used, in words for a person.

/// What the names of the files beside a store end in.
inline constexpr const char *logSuffix = "-wal";
inline constexpr const char *journalSuffix = "-journal";
inline constexpr const char *sharedIndexSuffix = "-shm";

/// A process that is just ending lets go of its store within this time.
inline constexpr int busyMilliseconds = 500;

/// The file whose name has @p suffix at its end.
std::filesystem::path beside(std::filesystem::path path, const char *suffix);

/// When the file was last written to, in seconds since 1970; 0 if there is no such file.
double writtenAt(const std::filesystem::path &path);

/// In bytes; 0 if there is no such file.
qint64 sizeOf(const std::filesystem::path &path);

/// The process that has a lock on the store at @p path which keeps others from reading it: zero or
/// less if that cannot be seen from here, as in another container; nothing if there is none.
/// Lets go of this process's own locks on the store.
std::optional<pid_t> holderOf(const std::filesystem::path &path);

/// Removes the file, if there is one.
void removeFile(const std::filesystem::path &path);

/// @p path as messages name it.
std::string quoted(const std::filesystem::path &path);

/// Throws a StoreError: the store at @p path, and @p what.
[[noreturn]] void refuse(const std::filesystem::path &path, const std::string &what);

/// Throws an UnusableStoreError: what is wrong with the store at @p path, and that it has been left
/// as it is, with @p detail at the end.
[[noreturn]] void refuseContents(const std::filesystem::path &path, const std::string &what,
                                 const std::string &detail = ".");

/// What a store in the state that SQLite calls corrupt is refused with.
[[noreturn]] void refuseAsDamaged(const std::filesystem::path &path, const std::string &detail);

/// What @p error, an errno, in making or writing files in @p directory means, and what to do about
/// it.
std::string explained(int error, const std::filesystem::path &directory);

/// Why no files can be made and written in @p directory: an errno, or 0.
int obstacle(const std::filesystem::path &directory);

/// Refuses a store that the user may not use, before anything is locked or made beside it.
void checkRights(const std::filesystem::path &path);

/// Refuses anything but files in the store's places, as SQLite would wait at a pipe for ever and
/// follow a link; and files that somebody else owns or may have changed, by whatever name.
void checkFiles(const std::filesystem::path &path);

/// Puts the names that @p directory holds on the disk.
void syncDirectory(const std::filesystem::path &directory);

/// Makes @p directory and those above it that are missing, for the owner alone whatever the umask.
/// Throws StoreError.
void makeDirectory(const std::filesystem::path &directory);
