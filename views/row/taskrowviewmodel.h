#pragma once

#include "model/task.h"
#include "timer/timermanager.h"
#include "views/row/rowedits.h"

#include <QFont>
#include <QObject>
#include <QPointer>
#include <QQmlParserStatus>
#include <QtQmlIntegration>

#include <optional>

/// One row's texts, and the editing of its name and time. Keeps its last texts when the task goes,
/// so that a deleted row fades out as it was.
class TaskRowViewModel : public QObject, public QQmlParserStatus
{
    Q_OBJECT
    Q_INTERFACES(QQmlParserStatus)
    QML_ELEMENT
    Q_PROPERTY(Task *task READ task WRITE setTask NOTIFY taskChanged REQUIRED)
    Q_PROPERTY(TimerManager *timerManager READ timerManager WRITE setTimerManager NOTIFY
                   timerManagerChanged REQUIRED)
    Q_PROPERTY(RowEdits *edits READ edits WRITE setEdits NOTIFY editsChanged REQUIRED)

    Q_PROPERTY(QFont nameFont READ nameFont WRITE setNameFont NOTIFY nameFontChanged)

    Q_PROPERTY(QString shownName READ shownName NOTIFY nameChanged)
    Q_PROPERTY(bool isNamed READ isNamed NOTIFY nameChanged)
    Q_PROPERTY(qreal widestWord READ widestWord NOTIFY widestWordChanged)
    Q_PROPERTY(QVariant projectCode READ projectCode NOTIFY projectCodeChanged)
    Q_PROPERTY(QString displayedTime READ displayedTime NOTIFY displayedTimeChanged)
    Q_PROPERTY(QString displayedHours READ displayedHours NOTIFY displayedHoursChanged)

    Q_PROPERTY(bool isEditingName READ isEditingName NOTIFY isEditingNameChanged)
    Q_PROPERTY(QString editedName READ editedName WRITE setEditedName NOTIFY editedNameChanged)
    Q_PROPERTY(bool isEditingTime READ isEditingTime NOTIFY isEditingTimeChanged)
    Q_PROPERTY(QString editedTime READ editedTime WRITE setEditedTime NOTIFY editedTimeChanged)

public:
    explicit TaskRowViewModel(QObject *parent = nullptr);

    /// Opens the name field with the task's name.
    Q_INVOKABLE void startNameEditing();
    /// Stores the entered name, an empty one too, and closes the field.
    Q_INVOKABLE void commitNameEdit();
    /// Stops the task, if it runs, and opens the time field with its time.
    Q_INVOKABLE void startTimeEditing();
    /// Stores the entered time, unless it is negative, and closes the field. Fatal if the time
    /// overflows.
    Q_INVOKABLE void commitTimeEdit();

    Task *task() const { return m_task; }
    void setTask(Task *task);
    TimerManager *timerManager() const { return m_timerManager; }
    void setTimerManager(TimerManager *timerManager);
    RowEdits *edits() const { return m_edits; }
    void setEdits(RowEdits *edits);

    /// What the name is drawn in; only measured here, and nothing is before it is given.
    QFont nameFont() const { return m_nameFont.value_or(QFont()); }
    void setNameFont(const QFont &font);

    /// The task's name, or what stands for an empty one.
    QString shownName() const { return m_shownName; }
    bool isNamed() const { return m_isNamed; }
    /// Width that the shown name needs so that none of its words is broken, in pixels.
    qreal widestWord() const { return m_widestWord; }
    /// The task's project code; invalid for none.
    QVariant projectCode() const { return m_projectCode; }
    /// The clock, "01:02:05". Never rounded.
    QString displayedTime() const { return m_displayedTime; }
    /// Hours with two decimals: billable or plain ones, as the timer manager's switch says.
    QString displayedHours() const { return m_displayedHours; }

    bool isEditingName() const { return m_edit.isEditingName; }
    QString editedName() const { return m_edit.editedName; }
    void setEditedName(const QString &name);
    bool isEditingTime() const { return m_edit.isEditingTime; }
    QString editedTime() const { return m_edit.editedTime; }
    void setEditedTime(const QString &time);

    void classBegin() override {}
    void componentComplete() override;

Q_SIGNALS:
    void taskChanged();
    void timerManagerChanged();
    void editsChanged();
    void nameFontChanged();
    void nameChanged();
    void widestWordChanged();
    void projectCodeChanged();
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
    void updateName();
    void updateWidestWord();
    void updateProjectCode();
    void updateFigures();
    void keepEdit();
    void setIsEditingName(bool isEditing);
    void setIsEditingTime(bool isEditing);

    QPointer<Task> m_task;
    QPointer<TimerManager> m_timerManager;
    QPointer<RowEdits> m_edits;
    std::optional<QFont> m_nameFont;
    QString m_shownName;
    bool m_isNamed = false;
    qreal m_widestWord = 0;
    QVariant m_projectCode;
    QString m_displayedTime;
    QString m_displayedHours;
    RowEdit m_edit;
};
