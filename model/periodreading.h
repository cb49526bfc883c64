#pragma once

#include "model/taskreading.h"

#include <QObject>
#include <QSet>

#include <deque>

class ModelContext;

/// The tasks of a period as they were at one moment, apart from the store and its objects: can be
/// handed to another thread.
class RecordedPeriod
{
public:
    /// Hands them to @p receive; they are gone afterwards. Throws StoreError if a task's time
    /// cannot be added up.
    void deliver(const TaskReceiver &receive);

private:
    friend class PeriodReading;

    /// As they were read, which took a while, in the order of their dates.
    std::deque<StoredTask> m_read;
    /// The rows that have been changed since, or will be by what is unsaved.
    QSet<qint64> m_outdated;
    /// What is true instead.
    std::vector<StoredTask> m_current;
    Calendar m_calendar;
    Instant m_now = 0;
    QString m_storePath;
};

/// Reads the tasks of a period while the program runs, a little at a time. What changes meanwhile,
/// and what is unsaved, counts as it is at the end; nothing is read twice for it.
class PeriodReading : public QObject
{
    Q_OBJECT

public:
    /// Of the tasks whose date lies in @p period. @p context outlives the reading. Throws
    /// StoreError.
    PeriodReading(const ModelContext &context, const DayInterval &period);

    /// Goes on for about the time that the context's delays give to a slice. True once everything
    /// has been read. Throws StoreError.
    bool goOn();
    /// How many tasks have been read so far.
    qint64 count() const { return static_cast<qint64>(m_read.size()); }
    /// How many characters their texts have.
    qint64 characters() const { return m_characters; }
    /// Once everything has been read: the period as it is at this moment.
    RecordedPeriod take();

private:
    void onChanged(Record *record);
    void onRemoved(Record *record);

    const ModelContext &m_context;
    DayInterval m_period;
    TaskReading m_reading;
    std::deque<StoredTask> m_read;
    qint64 m_characters = 0;
    /// The tasks that are not as they were read, in the order of their insertion if they are new.
    QList<const Task *> m_changed;
    QSet<const Record *> m_isChanged;
    /// Of removed tasks.
    QSet<qint64> m_removed;
};
