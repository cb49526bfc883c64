#include "model/storeschema.h"

#include "model/recordtable.h"
#include "model/storefiles.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>

#include <algorithm>
#include <cctype>
#include <iterator>
#include <utility>
#include <vector>

namespace fs = std::filesystem;

namespace
{

/// Marks a SQLite file as a store of this program: "TULO".
constexpr int applicationID = 0x54554C4F;
/// A store up to this size, some 8,000 tasks, is looked through as a whole before it is opened,
/// which takes a few milliseconds. Damage in a larger one shows where it is read.
constexpr qint64 sizeLookedThrough = 1'000'000;

int integer(SQLite::Database &database, const char *pragma)
{
    return database.execAndGet(std::string("PRAGMA ") + pragma).getInt();
}

std::string versionText(int version)
{
    return std::to_string(version / 10000) + "." + std::to_string(version / 100 % 100) + "." +
           std::to_string(version % 100);
}

/// A table, index, trigger or view by kind and name, and by the SQL that makes it.
using SchemaPart = std::pair<std::string, std::string>;

/// All of them, in order.
std::vector<SchemaPart> schemaOf(SQLite::Database &database)
{
    std::vector<SchemaPart> parts;
    SQLite::Statement query(database, "SELECT type || ' \"' || name || '\"', tbl_name || ': ' || "
                                      "coalesce(sql, '') FROM sqlite_schema");
    while (query.executeStep())
        parts.emplace_back(query.getColumn(0).getString(), query.getColumn(1).getString());
    std::sort(parts.begin(), parts.end());
    return parts;
}

void makeTables(SQLite::Database &database)
{
    for (const RecordType type : recordTypes)
        database.exec(recordTable(type).create);
}

/// Refuses a store with anything more, less or other than this program's tables and indexes: a
/// trigger could change records behind its back.
void checkSchema(SQLite::Database &database, const fs::path &path)
{
    SQLite::Database own(":memory:", SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE);
    makeTables(own);
    const std::vector<SchemaPart> expected = schemaOf(own);
    const std::vector<SchemaPart> found = schemaOf(database);
    std::vector<SchemaPart> differing;
    std::set_symmetric_difference(found.begin(), found.end(), expected.begin(), expected.end(),
                                  std::back_inserter(differing));
    if (differing.empty())
        return;
    std::string part = differing.front().first;
    std::replace_if(
        part.begin(), part.end(), [](unsigned char letter) { return std::iscntrl(letter) != 0; },
        '?');
    refuseContents(path, "has another schema than this program's: the " + part + " differs");
}

} // namespace

void checkStore(const fs::path &path)
{
    SQLite::Database database(path.native(), SQLite::OPEN_READONLY | SQLite::OPEN_NOFOLLOW,
                              busyMilliseconds);
    checkStore(database, path);
}

void checkStore(SQLite::Database &database, const fs::path &path)
{
    const int application = integer(database, "application_id");
    const int version = integer(database, "user_version");
    if (application != applicationID)
        refuseContents(path, "is a database of another program");
    if (version > schemaVersion)
        refuse(path, "was written by a newer version of TULO Time Tracker (schema " +
                         versionText(version) + ", this one reads " + versionText(schemaVersion) +
                         "). It has been left as it is; install that version.");
    if (version != schemaVersion)
        refuse(path, "has the schema version " + versionText(version) +
                         ", and this program reads " + versionText(schemaVersion) +
                         " only. It has been left as it is.");
    checkSchema(database, path);
    const qint64 size = qint64{integer(database, "page_count")} * integer(database, "page_size");
    // The log may hold more than what has come into the file yet.
    if (sizeOf(path) < size && sizeOf(beside(path, logSuffix)) == 0)
        refuseAsDamaged(path, " (its end is missing).");
    if (size <= sizeLookedThrough) {
        const auto look = [&database] {
            return database.execAndGet("PRAGMA integrity_check(1)").getString();
        };
        std::string verdict = look();
        // SQLite calls a page damaged, too, for which there was no memory at that moment.
        if (verdict != "ok")
            verdict = look();
        std::replace(verdict.begin(), verdict.end(), '\n', ' ');
        if (verdict != "ok")
            refuseAsDamaged(path, " (" + verdict + ").");
    }
}

void makeStore(const fs::path &path)
{
    SQLite::Database database(path.native(), SQLite::OPEN_READWRITE);
    database.exec("PRAGMA synchronous = FULL");
    SQLite::Transaction transaction(database);
    makeTables(database);
    database.exec("PRAGMA application_id = " + std::to_string(applicationID) +
                  "; PRAGMA user_version = " + std::to_string(schemaVersion));
    transaction.commit();
    database.exec("PRAGMA journal_mode = WAL");
}
