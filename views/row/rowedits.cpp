#include "views/row/rowedits.h"

#include "model/task.h"

#include <QSet>

RowEdits::RowEdits(QObject *parent)
    : QObject(parent)
{
}

RowEdits::~RowEdits()
{
    keepOnly({});
}

void RowEdits::setTimerManager(TimerManager *timerManager)
{
    m_timerManager = timerManager;
}

void RowEdits::setEdit(const QUuid &task, const RowEdit &edit)
{
    if (edit.isOpen())
        m_edits.insert(task, edit);
    else
        m_edits.remove(task);
}

void RowEdits::keepOnly(const QList<Task *> &tasks)
{
    if (m_edits.isEmpty())
        return;
    QSet<QUuid> listed;
    for (const Task *task : tasks)
        listed.insert(task->id());
    const auto removed =
        m_edits.removeIf([&](const auto &edit) { return !listed.contains(edit.key()); });
    // Else the keyboard would stay dead: nobody is left to end the edit.
    if (removed > 0 && m_edits.isEmpty() && m_timerManager)
        m_timerManager->setIsEditing(false);
}
