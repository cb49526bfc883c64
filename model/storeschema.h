#pragma once

#include <filesystem>

namespace SQLite
{
class Database;
}

/// Major × 10,000 + minor × 100 + patch.
inline constexpr int schemaVersion = 1'00'00;

/// Makes an empty store in the empty file at @p path. All of it is in that file when this returns,
/// and nothing in a log: closing a log may fail, and nobody would be told. Throws
/// SQLite::Exception.
void makeStore(const std::filesystem::path &path);

/// Refuses a file at @p path that is not a whole store of this program and schema version, with its
/// tables and indexes and nothing else; looks at it through a connection that cannot write, as a
/// read-write one would already fold a leftover log into a file that is not ours to touch. A small
/// store is looked through as a whole. Throws StoreError or SQLite::Exception.
void checkStore(const std::filesystem::path &path);

/// The same for a store at @p path that @p database has open already.
void checkStore(SQLite::Database &database, const std::filesystem::path &path);
