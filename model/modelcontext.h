#pragma once

#include "model/record.h"
#include "model/recordfilter.h"
#include "model/reserve.h"
#include "model/storeerror.h"

#include <QHash>
#include <QList>
#include <QSet>
#include <QTimer>

#include <chrono>
#include <memory>
#include <unordered_map>

namespace SQLite
{
class Database;
class Statement;
} // namespace SQLite
class Clock;

/// When the store is written to, asked again and copied by itself, and how long it is waited for.
struct SaveDelays {
    /// From the first unsaved change to the write; later changes do not put it off.
    std::chrono::milliseconds automatic{50};
    /// From a failed write or read to the next try, if nothing gives occasion to it before.
    std::chrono::milliseconds retry{5000};
    /// At most, for another process's lock on the store's directory, when the store is opened.
    std::chrono::milliseconds turn{10'000};
    /// From the start to the backup that the day before has not got.
    std::chrono::milliseconds backup{10'000};
    /// At most, for the backup at the program's end.
    std::chrono::milliseconds finish{1'000};
    /// What takes long keeps the event loop from everything else for so long at a time. What is
    /// begun then takes a little longer.
    std::chrono::milliseconds slice{4};
};

/// The one place where records live while the program runs: it makes the objects of stored
/// records when they are first asked for, knows what is not yet written, and writes it.
class ModelContext : public QObject
{
    Q_OBJECT

public:
    /// @p database and @p clock outlive the context.
    ModelContext(SQLite::Database &database, const Clock &clock, SaveDelays delays = {});
    ~ModelContext() override;

    const Clock &clock() const { return m_clock; }
    const SaveDelays &delays() const { return m_delays; }
    /// The store's file.
    QString storePath() const;
    /// The open store, for reading alone; it lacks what is unsaved.
    SQLite::Database &database() const { return m_database; }

    /// Takes over a newly made record; live queries show it at once.
    void insert(std::unique_ptr<Record> record);
    /// Takes @p record out of the store and out of all live queries at once; the object itself
    /// goes when control returns to the event loop.
    void remove(Record *record);

    /// Writes all unsaved changes in one transaction. False if that failed; they then stay unsaved
    /// and are tried again, with the next change or after a while. Changes that fail by themselves,
    /// on a damaged page, do not keep the others from being written. On a full disk the reserve
    /// beside the store gives its room for them. Nothing is written while the store's file has been
    /// removed or replaced; standard error says so once.
    bool save();
    /// save() at the end: what could not be written is named on standard error, in English.
    bool saveOrTell();
    bool hasChanges() const;

    /// The records of @p type that match, in the store's order, with all that is not yet written.
    /// Throws StoreError if the store cannot be read.
    QList<Record *> fetch(RecordType type, const RecordFilter &filter);
    /// Those of them that are in memory already, in the same order.
    QList<Record *> inMemory(RecordType type, const RecordFilter &filter) const;
    /// The new and the changed records that are not yet written, the new ones last and in their
    /// order.
    QList<Record *> unsaved(RecordType type) const;
    /// The rows in the store of removed records that still are there.
    QList<qint64> removedRows(RecordType type) const;

Q_SIGNALS:
    void inserted(Record *record);
    /// The record still exists, but belongs to no query any more.
    void removed(Record *record);
    void changed(Record *record);
    /// Changes have been written to the store.
    void written();

private:
    /// One record type's part of the context.
    struct Shelf {
        QHash<qint64, Record *> stored;
        QList<Record *> inserted;
        QSet<Record *> edited;
        /// By rowid: what they were, in words.
        QHash<qint64, QString> removed;
    };

    /// What a change that fails means: for all others, too, or for itself alone.
    enum class Failure { OfAll, OfOne };
    struct Written {
        QHash<Record *, qint64> inserted;
        QList<Record *> edited;
        QHash<RecordType, QList<qint64>> removed;
    };

    Shelf &shelf(RecordType type) { return m_shelves[static_cast<std::size_t>(type)]; }
    const Shelf &shelf(RecordType type) const { return m_shelves[static_cast<std::size_t>(type)]; }
    static void sortByRowid(QList<Record *> &records);
    void adopt(Record *record);
    void noteChange(Record *record);
    void scheduleSave();
    /// Whether the store's file still is where it was; standard error says when it no longer is.
    bool isInPlace();
    void writeAll();
    void foldLog();
    void writeOneByOne();
    void write(Failure failure, Written &written);
    void write(RecordType type, Failure failure, Written &written);
    void noteWritten(const Written &written);
    SQLite::Statement &statement(const std::string &sql);

    SQLite::Database &m_database;
    const Clock &m_clock;
    SaveDelays m_delays;
    Reserve m_reserve;
    QTimer m_saveTimer;
    bool m_lastSaveFailed = false;
    bool m_isOutOfPlace = false;
    /// What saveOrTell() last said.
    QString m_told;
    /// Why the last save that failed did so.
    std::string m_failure;
    std::array<Shelf, 3> m_shelves;
    std::unordered_map<std::string, std::unique_ptr<SQLite::Statement>> m_statements;
};
