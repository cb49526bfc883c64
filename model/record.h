#pragma once

#include "model/calendar.h"

#include <QObject>
#include <QUuid>
#include <QtQmlIntegration>

#include <optional>

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
    ~Record() override;

    RecordType recordType() const { return m_type; }
    /// Random, given at creation.
    const QUuid &id() const { return m_id; }
    Instant createdAt() const { return m_createdAt; }
    /// Place in the lists that show the record, ascending; neither unique nor without gaps.
    qint64 sortOrder() const { return m_sortOrder; }
    void setSortOrder(qint64 sortOrder);

Q_SIGNALS:
    void sortOrderChanged();
    /// Some stored property has changed; sent after that property's own signal.
    void changed();

protected:
    Record(RecordType type, const QUuid &id, qint64 sortOrder, Instant createdAt);

private:
    friend class ModelContext;

    RecordType m_type;
    QUuid m_id;
    qint64 m_sortOrder;
    Instant m_createdAt;

    // The context's own notes.
    std::optional<qint64> m_rowid;
    bool m_isUnsaved = false;
};
