#pragma once

#include <filesystem>
#include <string>

namespace SQLite
{
class Exception;
}

// What whoever opens a store looks at first, and how a store is refused for what SQLite says.

/// The store behind @p path. Users may link the directories above as they like, but the file itself
/// must be a file.
std::filesystem::path realStorePath(const std::filesystem::path &path);

/// Whether there is a store at @p path. Throws StoreError if there is only the log of one, or a
/// file that SQLite would take for none.
bool isStoreThere(const std::filesystem::path &path);

/// Throws a StoreError: the store at @p path cannot be written, with @p detail at the end.
[[noreturn]] void refuseAsUnwritable(const std::filesystem::path &path, const std::string &detail);

/// Throws a StoreError: SQLite's code in terms of what a person can do about it.
[[noreturn]] void refuseFor(const SQLite::Exception &error, const std::filesystem::path &path);
