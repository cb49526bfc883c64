#include "model/modelcontext.h"

#include "model/recordtable.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>
#include <sqlite3.h>

#include <QFile>

#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <utility>

using namespace Qt::StringLiterals;

namespace
{

/// Frees a prepared statement for its next use, whatever happens meanwhile.
class ResetGuard
{
public:
    explicit ResetGuard(SQLite::Statement &statement)
        : m_statement(statement)
    {
    }
    ~ResetGuard()
    {
        m_statement.tryReset();
        // A large text that stays bound would stay in memory until the statement is used again.
        m_statement.clearBindings();
    }
    Q_DISABLE_COPY_MOVE(ResetGuard)

private:
    SQLite::Statement &m_statement;
};

/// Whether a change has failed for what it is itself, or for where it lies, and not for the disk.
bool isOfOneChange(const SQLite::Exception &error)
{
    const int code = error.getErrorCode();
    return code == SQLITE_CORRUPT || code == SQLITE_TOOBIG || code == SQLITE_CONSTRAINT;
}

/// Whether a change may have failed for want of room. SQLite does not tell a user's share of the
/// disk, or a limit on the size of files, from any other failure to write.
bool isForWantOfRoom(const SQLite::Exception &error)
{
    return error.getErrorCode() == SQLITE_FULL ||
           error.getExtendedErrorCode() == SQLITE_IOERR_WRITE;
}

/// Ends a transaction of @p database that could not be rolled back when it failed, for want of
/// memory: no other could begin.
void endTransaction(SQLite::Database &database)
{
    if (sqlite3_get_autocommit(database.getHandle()) == 0)
        database.exec("ROLLBACK");
}

/// Whether the file of @p database no longer has its name, which another one may have now.
bool hasMoved(const SQLite::Database &database)
{
    int hasMoved = 0;
    sqlite3_file_control(database.getHandle(), "main", SQLITE_FCNTL_HAS_MOVED, &hasMoved);
    return hasMoved != 0;
}

} // namespace

ModelContext::ModelContext(SQLite::Database &database, const Clock &clock, SaveDelays delays)
    : m_database(database)
    , m_clock(clock)
    , m_delays(delays)
    , m_reserve(database.getFilename())
{
    m_reserve.takeUp();
    m_saveTimer.setSingleShot(true);
    m_saveTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_saveTimer, &QTimer::timeout, this, &ModelContext::save);
}

ModelContext::~ModelContext()
{
    save();
    // Also with nothing to write: the log is not to stay beside another store.
    isInPlace();
}

QString ModelContext::storePath() const
{
    return QFile::decodeName(m_database.getFilename().c_str());
}

void ModelContext::insert(std::unique_ptr<Record> record)
{
    Record *const inserted = record.release();
    adopt(inserted);
    inserted->m_isUnsaved = true;
    shelf(inserted->recordType()).inserted.append(inserted);
    scheduleSave();
    Q_EMIT this->inserted(inserted);
}

void ModelContext::remove(Record *record)
{
    if (record->parent() != this)
        return;
    Shelf &records = shelf(record->recordType());
    if (record->m_rowid) {
        records.stored.remove(*record->m_rowid);
        records.edited.remove(record);
        records.removed.insert(*record->m_rowid, record->description());
        scheduleSave();
    } else {
        records.inserted.removeOne(record);
    }
    record->disconnect(this);
    record->setParent(nullptr);
    Q_EMIT removed(record);
    record->deleteLater();
}

bool ModelContext::save()
{
    m_saveTimer.stop();
    if (!hasChanges())
        return true;

    try {
        if (!isInPlace())
            throw SQLite::Exception("its file is no longer in its place", SQLITE_READONLY_DBMOVED);
        try {
            writeAll();
        } catch (const SQLite::Exception &error) {
            if (!isForWantOfRoom(error))
                throw;
            m_reserve.giveUp();
            foldLog();
            writeAll();
        }
        // While there is little room, the log is not to take what the store needs to take it in.
        if (!m_reserve.takeUp())
            foldLog();
    } catch (const SQLite::Exception &error) {
        m_failure = error.what();
        // After a change that hits a damaged page, SQLite takes no other in its transaction.
        if (isOfOneChange(error))
            writeOneByOne();
    }
    m_lastSaveFailed = hasChanges();
    if (m_lastSaveFailed)
        m_saveTimer.start(m_delays.retry);
    return !m_lastSaveFailed;
}

bool ModelContext::saveOrTell()
{
    if (save())
        return true;
    QString changes = u"These changes are not in the store \""_s + storePath() + u"\" ("_s +
                      QString::fromStdString(m_failure) + u"):\n"_s;
    for (const Shelf &records : m_shelves) {
        for (const Record *record : records.inserted)
            changes += u"  new: "_s + record->description() + u'\n';
        for (const Record *record : records.edited)
            changes += u"  changed: "_s + record->description() + u'\n';
        for (const QString &description : records.removed)
            changes += u"  deleted: "_s + description + u'\n';
    }
    // The session's end tells them, and the program's own end may come after it.
    if (std::exchange(m_told, changes) != changes)
        std::fputs(changes.toUtf8().constData(), stderr);
    return false;
}

bool ModelContext::hasChanges() const
{
    return std::any_of(m_shelves.begin(), m_shelves.end(), [](const Shelf &records) {
        return !records.inserted.isEmpty() || !records.edited.isEmpty() ||
               !records.removed.isEmpty();
    });
}

QList<Record *> ModelContext::fetch(RecordType type, const RecordFilter &filter)
{
    const RecordTable &table = recordTable(type);
    Shelf &records = shelf(type);
    QList<Record *> found;
    try {
        SQLite::Statement &query = statement(selection(table, filter));
        const ResetGuard guard(query);
        int parameter = 1;
        for (const RecordFilter::Argument &argument : filter.arguments) {
            if (const auto *number = std::get_if<double>(&argument)) {
                query.bind(parameter++, *number);
            } else {
                const auto &bytes = std::get<std::string>(argument);
                query.bind(parameter++, bytes.data(), static_cast<int>(bytes.size()));
            }
        }
        while (query.executeStep()) {
            const qint64 rowid = query.getColumn(0).getInt64();
            if (records.removed.contains(rowid))
                continue;
            Record *record = records.stored.value(rowid);
            if (!record) {
                record = table.read(query, m_clock);
                record->m_rowid = rowid;
                records.stored.insert(rowid, record);
                adopt(record);
            }
            // The file's values of an edited record are out of date.
            if (!record->m_isUnsaved)
                found.append(record);
        }
    } catch (const SQLite::Exception &error) {
        throw StoreError(error.what());
    }

    bool isOrdered = true;
    for (Record *record : std::as_const(records.edited)) {
        if (filter.matches(*record)) {
            found.append(record);
            isOrdered = false;
        }
    }
    if (!isOrdered)
        sortByRowid(found);
    std::copy_if(records.inserted.cbegin(), records.inserted.cend(), std::back_inserter(found),
                 [&](const Record *record) { return filter.matches(*record); });
    return found;
}

QList<Record *> ModelContext::inMemory(RecordType type, const RecordFilter &filter) const
{
    const Shelf &records = shelf(type);
    QList<Record *> found;
    const auto matches = [&](const Record *record) { return filter.matches(*record); };
    std::copy_if(records.stored.cbegin(), records.stored.cend(), std::back_inserter(found),
                 matches);
    sortByRowid(found);
    std::copy_if(records.inserted.cbegin(), records.inserted.cend(), std::back_inserter(found),
                 matches);
    return found;
}

QList<Record *> ModelContext::unsaved(RecordType type) const
{
    const Shelf &records = shelf(type);
    return records.edited.values() + records.inserted;
}

QList<qint64> ModelContext::removedRows(RecordType type) const
{
    return shelf(type).removed.keys();
}

void ModelContext::sortByRowid(QList<Record *> &records)
{
    std::sort(records.begin(), records.end(),
              [](const Record *a, const Record *b) { return *a->m_rowid < *b->m_rowid; });
}

void ModelContext::adopt(Record *record)
{
    record->setParent(this);
    connect(record, &Record::changed, this, [this, record] { noteChange(record); });
}

void ModelContext::noteChange(Record *record)
{
    if (record->m_rowid && !record->m_isUnsaved) {
        record->m_isUnsaved = true;
        shelf(record->recordType()).edited.insert(record);
    }
    scheduleSave();
    Q_EMIT changed(record);
}

void ModelContext::scheduleSave()
{
    // After a failure the timer waits for long, and this change is an earlier chance to write.
    if (m_saveTimer.isActive() && !m_lastSaveFailed)
        return;
    m_lastSaveFailed = false;
    m_saveTimer.start(m_delays.automatic);
}

bool ModelContext::isInPlace()
{
    const bool wasOutOfPlace = std::exchange(m_isOutOfPlace, hasMoved(m_database));
    if (!m_isOutOfPlace)
        return true;
    if (!wasOutOfPlace)
        std::fprintf(stderr,
                     "The store \"%s\" is no longer in its place: it has been removed, or another "
                     "file lies there now. Nothing is written until it is back.\n",
                     m_database.getFilename().c_str());
    // A log that stays beside another store would be taken for that one's own. Where there is none,
    // the log goes with the store once that is back.
    if (::access(m_database.getFilename().c_str(), F_OK) == 0)
        m_database.tryExec("PRAGMA wal_checkpoint(TRUNCATE)");
    return false;
}

void ModelContext::writeAll()
{
    endTransaction(m_database);
    SQLite::Transaction transaction(m_database, SQLite::TransactionBehavior::IMMEDIATE);
    Written written;
    write(Failure::OfAll, written);
    transaction.commit();
    noteWritten(written);
}

void ModelContext::foldLog()
{
    // Once all of the log is in the store, SQLite writes from the log's beginning again, over what
    // takes up room already.
    m_database.tryExec("PRAGMA wal_checkpoint");
}

void ModelContext::writeOneByOne()
{
    Written written;
    try {
        endTransaction(m_database);
        write(Failure::OfOne, written);
    } catch (const SQLite::Exception &) {
        // The disk failed as well. What was written before it did is kept.
    }
    noteWritten(written);
}

void ModelContext::write(Failure failure, Written &written)
{
    for (const RecordType type : recordTypes)
        write(type, failure, written);
}

void ModelContext::write(RecordType type, Failure failure, Written &written)
{
    const RecordTable &table = recordTable(type);
    const Shelf &shelf = this->shelf(type);
    const auto attempt = [failure](const auto &change) {
        try {
            change();
        } catch (const SQLite::Exception &error) {
            if (failure == Failure::OfAll || !isOfOneChange(error))
                throw;
        }
    };
    // Insertions come before removals: SQLite gives the rowid of a removed last row again.
    for (Record *record : std::as_const(shelf.inserted)) {
        attempt([&] {
            SQLite::Statement &insertion = statement(table.insert);
            const ResetGuard guard(insertion);
            table.bind(insertion, *record);
            insertion.exec();
            written.inserted.insert(record, m_database.getLastInsertRowid());
        });
    }
    for (Record *record : std::as_const(shelf.edited)) {
        attempt([&] {
            SQLite::Statement &update = statement(table.update);
            const ResetGuard guard(update);
            const int rowid = table.bind(update, *record);
            update.bind(rowid, static_cast<int64_t>(*record->m_rowid));
            update.exec();
            written.edited.append(record);
        });
    }
    const QList<qint64> removed = shelf.removed.keys();
    for (const qint64 rowid : removed) {
        attempt([&] {
            SQLite::Statement &removal = statement(table.remove);
            const ResetGuard guard(removal);
            removal.bind(1, static_cast<int64_t>(rowid));
            removal.exec();
            written.removed[type].append(rowid);
        });
    }
}

void ModelContext::noteWritten(const Written &written)
{
    for (const RecordType type : recordTypes) {
        Shelf &records = shelf(type);
        QList<Record *> unwritten;
        for (Record *record : std::as_const(records.inserted)) {
            const auto rowid = written.inserted.constFind(record);
            if (rowid == written.inserted.cend()) {
                unwritten.append(record);
                continue;
            }
            record->m_rowid = *rowid;
            record->m_isUnsaved = false;
            records.stored.insert(*rowid, record);
        }
        records.inserted = unwritten;
        for (const qint64 rowid : written.removed.value(type))
            records.removed.remove(rowid);
    }
    for (Record *record : written.edited) {
        record->m_isUnsaved = false;
        shelf(record->recordType()).edited.remove(record);
    }
    if (!written.inserted.isEmpty() || !written.edited.isEmpty() || !written.removed.isEmpty())
        Q_EMIT this->written();
}

SQLite::Statement &ModelContext::statement(const std::string &sql)
{
    std::unique_ptr<SQLite::Statement> &prepared = m_statements[sql];
    if (!prepared)
        prepared = std::make_unique<SQLite::Statement>(m_database, sql);
    return *prepared;
}
