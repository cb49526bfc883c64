#pragma once

#include "model/calendar.h"

#include <QObject>
#include <QUuid>
#include <QtQmlIntegration/qqmlintegration.h>

#include <optional>

class Clock;

/// The record types of the store, in the order of its schema.
enum class RecordType { Task, TaskTemplate, ProjectCode };

/// What all stored records have in common. A record belongs to its creator until it is inserted
/// into a ModelContext, which owns it from then on; there is one object per stored record.
class Record : public QObject
{
    Q_OBJECT
    QML_ANONYMOUS
    Q_PROPERTY(QUuid id READ id CONSTANT)

public:
    /// What the store holds of every record. Each type adds its own; `recordtable.cpp` names the
    /// columns.
    struct Values {
        QUuid id;
        qint64 sortOrder = 0;
        Instant createdAt = 0;
    };

    ~Record() override;

    RecordType recordType() const { return m_type; }
    /// What the store holds of this record, or will.
    virtual const Values &values() const = 0;
    /// Random, given at creation.
    const QUuid &id() const { return values().id; }
    Instant createdAt() const { return values().createdAt; }
    /// Place in the lists that show the record, ascending; neither unique nor without gaps.
    qint64 sortOrder() const { return values().sortOrder; }
    void setSortOrder(qint64 sortOrder);
    /// Where it lies in the store; nothing while it has not been written.
    const std::optional<qint64> &rowid() const { return m_rowid; }
    /// For messages: what it is, its name and, of a task, day and time. In English, in one line.
    virtual QString description() const = 0;

Q_SIGNALS:
    void sortOrderChanged();
    /// Some stored property has changed; sent after that property's own signal.
    void changed();

protected:
    explicit Record(RecordType type);

    /// @p name in quotes, shortened, without line breaks and control characters.
    static QString quotedName(const QString &name);

    virtual Values &values() = 0;
    /// Those of a new record.
    static Values newValues(const Clock &clock, qint64 sortOrder);

private:
    friend class ModelContext;

    RecordType m_type;

    // The context's own notes.
    std::optional<qint64> m_rowid;
    bool m_isUnsaved = false;
};
