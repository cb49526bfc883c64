#pragma once

#include "timer/timermanager.h"

#include <QHash>
#include <QObject>
#include <QPointer>
#include <QUuid>
#include <QtQmlIntegration>

class Task;

/// What is being entered in one row.
struct RowEdit {
    bool isEditingName = false;
    QString editedName;
    bool isEditingTime = false;
    QString editedTime;

    bool isOpen() const { return isEditingName || isEditingTime; }
};

/// The open edits of a list of rows. A row that scrolls out of sight is destroyed; what was being
/// entered in it waits here for the row that takes its place.
class RowEdits : public QObject
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the list of rows")

public:
    explicit RowEdits(QObject *parent = nullptr);
    /// Ends all edits, as if their tasks had left the list.
    ~RowEdits() override;

    /// @p timerManager holds the flag that is cleared when the last open edit's task leaves.
    void setTimerManager(TimerManager *timerManager);

    RowEdit edit(const QUuid &task) const { return m_edits.value(task); }
    void setEdit(const QUuid &task, const RowEdit &edit);
    /// Ends the edits of all tasks but these: the others are listed no more.
    void keepOnly(const QList<Task *> &tasks);

private:
    QPointer<TimerManager> m_timerManager;
    QHash<QUuid, RowEdit> m_edits;
};
