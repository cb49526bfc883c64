#pragma once

#include "model/calendar.h"

#include <QObject>
#include <QTimer>

#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace SQLite
{
class Database;
}
class ModelContext;

/// Makes a backup of the store for each day on which something has changed: when the day ends, and
/// when the program ends; at the start, if an earlier day has got none for its last change. The
/// store is copied on its own connection, a little at a time while the program runs, and the copy
/// is looked through before it gets its name. What is found wrong is said on standard error, and an
/// index that does not find all rows is built anew. Nothing wakes up when there is nothing to do.
class Backups : public QObject
{
    Q_OBJECT

public:
    /// Of the store that @p database has open and that @p context writes to. Both outlive it.
    Backups(SQLite::Database &database, const ModelContext &context);
    ~Backups() override;

    /// From now on, backups are made.
    void begin();
    /// Makes what is due at the program's end. Gives up after a second; then the next start makes
    /// it.
    void finish();
    /// Whether one is in the making.
    bool isMaking() const { return m_copy != nullptr; }

private:
    class Copy;

    void makeForEarlierDay();
    /// Of a store whose last change was @p changedAt.
    void make(Instant changedAt);
    void makeCopy();
    /// Does a part of the work; gives up if it fails.
    void attempt(const std::function<void()> &part);
    void goOn();
    void end();
    void repair();
    void giveUp(const std::string &why);
    QDate day() const;

    SQLite::Database &m_database;
    const ModelContext &m_context;
    std::filesystem::path m_store;
    /// When the store was last changed, if no backup has that change.
    std::optional<Instant> m_changedAt;
    /// The last change that the copy has.
    Instant m_copiedChange = 0;
    std::unique_ptr<Copy> m_copy;
    /// Whether the copy is one more, after an index has been built anew.
    bool m_hasRepaired = false;
    QTimer m_timer;
};
