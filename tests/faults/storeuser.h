#pragma once

#include "../support/fakeclock.h"
#include "model/tasklist.h"
#include "storeimage.h"

/// A user at work in a store, who knows what should be in it. What fails is tried again as soon as
/// the event loop runs.
class StoreUser
{
public:
    /// Opens the store at @p path, in which there is @p contents. Throws StoreError.
    StoreUser(const QString &path, const Contents &contents);

    ModelContext &context() { return m_container.mainContext(); }

    /// What should be in the store once all is written.
    const Contents &contents() const { return m_contents; }
    /// What may be in the store's files now: what was there at the last save that succeeded, or at
    /// any that was tried since.
    const QList<Contents> &possible() const { return m_possible; }
    /// Whether the day is shown with all its tasks, just as they should be.
    bool seesAllTasks() const;

    /// Makes, changes, starts, stops and removes records.
    void work();
    /// So much that SQLite moves its log into the store.
    void workALot();

private:
    Task *find(const QString &name) const;
    template<class T, class... Arguments>
    T *insert(Arguments &&...arguments);
    template<class Change>
    void edit(const Record *record, Change change);
    void save();

    FakeClock m_clock;
    ModelContainer m_container;
    DayTasks m_day;
    Contents m_contents;
    QList<Contents> m_possible;
};
