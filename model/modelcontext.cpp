#include "model/modelcontext.h"

#include "model/recordtable.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Exception.h>
#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>

#include <algorithm>

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
        // Else a large text would stay in memory until the statement is used again.
        m_statement.clearBindings();
    }
    Q_DISABLE_COPY_MOVE(ResetGuard)

private:
    SQLite::Statement &m_statement;
};

} // namespace

ModelContext::ModelContext(SQLite::Database &database, const Clock &clock, SaveDelays delays)
    : m_database(database)
    , m_clock(clock)
    , m_delays(delays)
{
    m_saveTimer.setSingleShot(true);
    m_saveTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_saveTimer, &QTimer::timeout, this, &ModelContext::save);
}

ModelContext::~ModelContext()
{
    save();
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
        records.removed.insert(*record->m_rowid);
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

    std::array<std::vector<qint64>, recordTypes.size()> rowids;
    try {
        SQLite::Transaction transaction(m_database, SQLite::TransactionBehavior::IMMEDIATE);
        for (std::size_t i = 0; i < recordTypes.size(); ++i)
            write(m_shelves[i], recordTable(recordTypes[i]), rowids[i]);
        transaction.commit();
    } catch (const SQLite::Exception &) {
        m_lastSaveFailed = true;
        m_saveTimer.start(m_delays.retry);
        return false;
    }

    m_lastSaveFailed = false;
    for (std::size_t i = 0; i < recordTypes.size(); ++i) {
        Shelf &records = m_shelves[i];
        for (std::size_t row = 0; row < rowids[i].size(); ++row) {
            Record *const record = records.inserted[static_cast<qsizetype>(row)];
            record->m_rowid = rowids[i][row];
            record->m_isUnsaved = false;
            records.stored.insert(rowids[i][row], record);
        }
        for (Record *record : std::as_const(records.edited))
            record->m_isUnsaved = false;
        records.inserted.clear();
        records.edited.clear();
        records.removed.clear();
    }
    return true;
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
        std::string sql = table.select;
        if (!filter.condition.empty())
            sql += " WHERE " + filter.condition;
        sql += " ORDER BY rowid";
        SQLite::Statement &query = statement(sql);
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
            // What the file says of an edited record is no longer so.
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
    // After a failure the timer waits for long; a change is the next chance to write.
    if (m_saveTimer.isActive() && !m_lastSaveFailed)
        return;
    m_lastSaveFailed = false;
    m_saveTimer.start(m_delays.automatic);
}

void ModelContext::write(Shelf &shelf, const RecordTable &table, std::vector<qint64> &rowids)
{
    // Insertions before removals: the rowid of the last row is given again once that row is gone.
    for (const Record *record : std::as_const(shelf.inserted)) {
        SQLite::Statement &insertion = statement(table.insert);
        const ResetGuard guard(insertion);
        table.bind(insertion, *record);
        insertion.exec();
        rowids.push_back(m_database.getLastInsertRowid());
    }
    for (const Record *record : std::as_const(shelf.edited)) {
        SQLite::Statement &update = statement(table.update);
        const ResetGuard guard(update);
        const int rowid = table.bind(update, *record);
        update.bind(rowid, static_cast<int64_t>(*record->m_rowid));
        update.exec();
    }
    for (const qint64 rowid : std::as_const(shelf.removed)) {
        SQLite::Statement &removal = statement(table.remove);
        const ResetGuard guard(removal);
        removal.bind(1, static_cast<int64_t>(rowid));
        removal.exec();
    }
}

SQLite::Statement &ModelContext::statement(const std::string &sql)
{
    std::unique_ptr<SQLite::Statement> &prepared = m_statements[sql];
    if (!prepared)
        prepared = std::make_unique<SQLite::Statement>(m_database, sql);
    return *prepared;
}
