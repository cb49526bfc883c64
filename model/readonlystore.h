#pragma once

#include <SQLiteCpp/Database.h>

#include <array>
#include <filesystem>
#include <optional>

/// A store that is read while no program holds it. Nothing of it is changed, no file is made beside
/// it, not even a log that a kill has left is folded in, and nothing is locked, so that a program
/// can start at any moment. What has been read counts only if hasChanged() denies afterwards.
class ReadOnlyStore
{
public:
    /// Opens the store at @p path, with all checks that the program makes before it takes one.
    /// Throws StoreError where the program would refuse it, and StoreInUseError where another
    /// process holds it.
    explicit ReadOnlyStore(const std::filesystem::path &path);

    /// The store's own path, behind links to directories.
    const std::filesystem::path &path() const { return m_path; }
    /// What is read from; nothing if there is no store.
    SQLite::Database *database() { return m_database ? &*m_database : nullptr; }
    /// Whether the store has been changed or taken by another process since it was opened.
    bool hasChanged() const;

private:
    /// What changes with a file's contents; all zero if there is none.
    using Mark = std::array<std::int64_t, 5>;
    static Mark markOf(const std::filesystem::path &file);
    std::array<Mark, 3> marks() const;
    void open();

    std::filesystem::path m_path;
    std::array<Mark, 3> m_marks;
    std::optional<SQLite::Database> m_database;
};
