#pragma once

#include "model/task.h"
#include "timer/timermanager.h"
#include "views/controls/rowviewmodel.h"
#include "views/row/projectcodemenumodel.h"

#include <QPointer>
#include <QVariant>
#include <QtQmlIntegration/qqmlintegration.h>

#include <optional>

/// One row's texts, and the editing of its name and time. It lives for as long as its task is
/// listed, so that an edit stays open while the row is scrolled out of sight; then it keeps its
/// last texts, and does nothing, until the row has faded out.
class TaskRowViewModel : public RowViewModel
{
    Q_OBJECT
    QML_ELEMENT
    QML_UNCREATABLE("Belongs to the list of rows")
    Q_PROPERTY(QString shownName READ shownName NOTIFY nameChanged)
    Q_PROPERTY(bool isNamed READ isNamed NOTIFY nameChanged)
    Q_PROPERTY(QVariant projectCode READ projectCode WRITE setProjectCode NOTIFY projectCodeChanged)
    Q_PROPERTY(ProjectCodeMenuModel *codeMenu READ codeMenu CONSTANT)
    Q_PROPERTY(bool isActive READ isActive NOTIFY isActiveChanged)
    Q_PROPERTY(QString displayedTime READ displayedTime NOTIFY displayedTimeChanged)
    Q_PROPERTY(QString displayedHours READ displayedHours NOTIFY displayedHoursChanged)

    Q_PROPERTY(bool isEditingName READ isEditingName NOTIFY isEditingNameChanged)
    Q_PROPERTY(QString editedName READ editedName WRITE setEditedName NOTIFY editedNameChanged)
    Q_PROPERTY(bool isEditingTime READ isEditingTime NOTIFY isEditingTimeChanged)
    Q_PROPERTY(QString editedTime READ editedTime WRITE setEditedTime NOTIFY editedTimeChanged)

public:
    /// The timer manager outlives it, and so does @p codeMenu, the menu of all project codes. The
    /// task may go first.
    TaskRowViewModel(Task &task, TimerManager &timerManager, ProjectCodeMenuModel &codeMenu);

    /// Opens the name field with the task's name.
    Q_INVOKABLE void startNameEditing();
    /// Stores the entered name, an empty one too, and closes the field.
    Q_INVOKABLE void commitNameEdit();
    /// Stops the task, if it runs, and opens the time field with its time.
    Q_INVOKABLE void startTimeEditing();
    /// Stores the entered time, unless it is negative, and closes the field. Fatal if the time
    /// overflows.
    Q_INVOKABLE void commitTimeEdit();

    /// Null once the task is gone.
    Task *task() const { return m_task; }
    /// Reads the texts again, which the clock and the billable switch change as well as the task.
    void update();

    /// The task's name, or what stands for an empty one.
    QString shownName() const { return texts().name; }
    bool isNamed() const { return texts().isNamed; }
    /// The task's project code; invalid for none.
    QVariant projectCode() const { return texts().projectCode; }
    void setProjectCode(const QVariant &code);
    ProjectCodeMenuModel *codeMenu() const { return &m_codeMenu; }
    /// Whether the task runs.
    bool isActive() const { return texts().isActive; }
    /// The clock, "01:02:05". Never rounded.
    QString displayedTime() const { return texts().time; }
    /// Hours with two decimals: billable or plain ones, as the timer manager's switch says.
    QString displayedHours() const { return texts().hours; }

    bool isEditing() const { return m_isEditingName || m_isEditingTime; }
    bool isEditingName() const { return m_isEditingName; }
    QString editedName() const { return m_editedName; }
    void setEditedName(const QString &name);
    bool isEditingTime() const { return m_isEditingTime; }
    QString editedTime() const { return m_editedTime; }
    void setEditedTime(const QString &time);

Q_SIGNALS:
    void nameChanged();
    void projectCodeChanged();
    void isActiveChanged();
    void displayedTimeChanged();
    void displayedHoursChanged();
    void isEditingNameChanged();
    void editedNameChanged();
    void isEditingTimeChanged();
    void editedTimeChanged();
    /// The user has asked for the field, which is there now: it takes the keyboard focus.
    void nameEditingStarted();
    void timeEditingStarted();

private:
    struct Texts {
        QString name;
        bool isNamed = false;
        QVariant projectCode;
        bool isActive = false;
        QString time;
        QString hours;
    };

    const Texts &texts() const;
    Texts currentTexts() const;
    void setIsEditingName(bool isEditing);
    void setIsEditingTime(bool isEditing);

    QPointer<Task> m_task;
    TimerManager &m_timerManager;
    ProjectCodeMenuModel &m_codeMenu;
    /// What has been told. Empty until somebody asks: of a long day, few rows are ever seen.
    mutable std::optional<Texts> m_texts;
    bool m_isEditingName = false;
    QString m_editedName;
    bool m_isEditingTime = false;
    QString m_editedTime;
};
