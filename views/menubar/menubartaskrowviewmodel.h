#pragma once

#include "model/task.h"
#include "views/controls/rowviewmodel.h"

#include <QPointer>
#include <QVariant>
#include <QtQmlIntegration/qqmlintegration.h>

/// One of today's tasks as the panel shows it. When its task goes, it keeps its last texts.
class MenuBarTaskRowViewModel : public RowViewModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the panel's list of rows")
    Q_PROPERTY(QString shownName READ shownName NOTIFY changed)
    Q_PROPERTY(QVariant projectCode READ projectCode NOTIFY changed)
    Q_PROPERTY(bool isActive READ isActive NOTIFY changed)
    Q_PROPERTY(QString displayedTime READ displayedTime NOTIFY displayedTimeChanged)

public:
    /// The task may go first.
    explicit MenuBarTaskRowViewModel(Task &task);

    /// Null once the task is gone.
    Task *task() const { return m_task; }
    /// Reads the clock again.
    void updateTime();

    /// The task's name, or what stands for an empty one.
    const QString &shownName() const { return m_shownName; }
    /// The task's project code; invalid for none.
    const QVariant &projectCode() const { return m_projectCode; }
    /// Whether the task runs.
    bool isActive() const { return m_isActive; }
    /// The task's clock, "01:02:05".
    const QString &displayedTime() const { return m_displayedTime; }

Q_SIGNALS:
    void changed();
    void displayedTimeChanged();

private:
    void update();

    QPointer<Task> m_task;
    QString m_shownName;
    QVariant m_projectCode;
    bool m_isActive = false;
    QString m_displayedTime;
};
