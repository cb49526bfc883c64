#include "model/storechecks.h"

#include "model/storeerror.h"
#include "model/storefiles.h"

#include <SQLiteCpp/Exception.h>
#include <sqlite3.h>

#include <cerrno>

namespace fs = std::filesystem;

fs::path realStorePath(const fs::path &path)
{
    const fs::path directory = fs::absolute(path).parent_path();
    std::error_code error;
    const fs::path canonical = fs::canonical(directory, error);
    return (error ? directory : canonical) / path.filename();
}

bool isStoreThere(const fs::path &path)
{
    std::error_code error;
    if (!fs::exists(path, error)) {
        for (const char *const suffix : {logSuffix, journalSuffix}) {
            const fs::path log = beside(path, suffix);
            if (sizeOf(log) > 0)
                throw UnusableStoreError("The store " + quoted(path) + " is missing, but its log " +
                                         quoted(log) +
                                         " is there, with changes that are nowhere else. Put the "
                                         "store back beside it; or "
                                         "move the log away, too, to start with an empty store.");
        }
        return false;
    }
    if (sizeOf(path) <= 1) // SQLite takes one byte for none, and deletes the log.
        refuseContents(path, "is empty, which a store never is");
    return true;
}

void refuseAsUnwritable(const fs::path &path, const std::string &detail)
{
    refuse(path, "cannot be opened for reading and writing. Check the rights of the file and its "
                 "directory" +
                     detail);
}

void refuseFor(const SQLite::Exception &error, const fs::path &path)
{
    const std::string detail = std::string(" (") + error.what() + ").";
    const fs::path directory = path.parent_path();
    const auto failForTheDirectory = [&] {
        if (const int reason = obstacle(directory))
            refuse(path, "cannot be used: " + explained(reason, directory) + detail);
    };
    switch (error.getErrorCode()) {
    case SQLITE_BUSY:
    case SQLITE_LOCKED:
        throw StoreInUseError("The store " + quoted(path) +
                              " is in use by another process, probably a TULO Time Tracker that is "
                              "already running. End that one first" +
                              detail);
    case SQLITE_NOTADB:
        refuseContents(path, "is not a store of TULO Time Tracker", detail);
    case SQLITE_CORRUPT:
        refuseAsDamaged(path, detail);
    case SQLITE_FULL:
        refuse(path, "cannot be used: " + explained(ENOSPC, directory) + detail);
    case SQLITE_PERM:
    case SQLITE_READONLY:
    case SQLITE_CANTOPEN:
    case SQLITE_AUTH:
        failForTheDirectory();
        refuseAsUnwritable(path, detail);
    default:
        failForTheDirectory();
        refuse(path, "cannot be read" + detail);
    }
}
