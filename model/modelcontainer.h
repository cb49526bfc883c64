#pragma once

#include "model/backups.h"
#include "model/modelcontext.h"

#include <QString>

#include <filesystem>

/// The store on disk: one SQLite file, held by one process at a time.
class ModelContainer
{
public:
    /// Where the user's store lies: in XDG_DATA_HOME, if that is a full path, or in the home.
    static std::filesystem::path defaultPath();

    /// Opens the store at @p path, or makes an empty one, with its directory, where there is no
    /// file, for the owner alone. Throws StoreError, and leaves the file as it is, if it is not a
    /// whole store of this schema, cannot be read and written, belongs to or may have been changed
    /// by another user, or is held by another process; also if there is only the log of a store,
    /// and if another process keeps its directory locked for longer than @p delays say. What a
    /// backup can replace is refused with the commands that do so. @p clock outlives the container.
    ModelContainer(const std::filesystem::path &path, const Clock &clock, SaveDelays delays = {});
    ModelContainer(const QString &path, const Clock &clock, SaveDelays delays = {});
    /// Writes what is unsaved and closes the store.
    ~ModelContainer();
    Q_DISABLE_COPY_MOVE(ModelContainer)

    /// The one context, owned by the container.
    ModelContext &mainContext() { return *m_mainContext; }
    /// Makes the store's backups once it is told to begin; owned by the container.
    Backups &backups() { return *m_backups; }

private:
    std::unique_ptr<SQLite::Database> m_database;
    std::unique_ptr<ModelContext> m_mainContext;
    std::unique_ptr<Backups> m_backups;
};
