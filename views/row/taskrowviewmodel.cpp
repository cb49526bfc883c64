#include "views/row/taskrowviewmodel.h"

#include "model/durations.h"
#include "views/controls/trimming.h"
#include "views/row/namefit.h"
#include "views/row/timeentry.h"

using namespace Qt::StringLiterals;

namespace
{

/// What a row shows of @p name, and its tooltip: more than fits a screen.
QString shownPart(const QString &name)
{
    constexpr qsizetype longest = 10'000;
    if (name.size() <= longest)
        return name;
    return name.first(name[longest].isLowSurrogate() ? longest - 1 : longest) + u'\u2026';
}

} // namespace

TaskRowViewModel::TaskRowViewModel(QObject *parent)
    : QObject(parent)
{
}

void TaskRowViewModel::startNameEditing()
{
    if (!m_task || !m_timerManager)
        return;
    setEditedName(m_task->name());
    setIsEditingName(true);
    m_timerManager->setIsEditing(true);
    Q_EMIT nameEditingStarted();
}

void TaskRowViewModel::commitNameEdit()
{
    if (m_task)
        m_task->setName(trimmedOfBlanksAndLineBreaks(m_edit.editedName));
    setIsEditingName(false);
    if (m_timerManager)
        m_timerManager->setIsEditing(false);
}

void TaskRowViewModel::startTimeEditing()
{
    if (!m_task || !m_timerManager)
        return;
    // By the task itself: the timer manager goes on regarding it as the active one.
    m_task->stop();
    setEditedTime(m_task->formattedTime());
    setIsEditingTime(true);
    m_timerManager->setIsEditing(true);
    Q_EMIT timeEditingStarted();
}

void TaskRowViewModel::commitTimeEdit()
{
    const qint64 seconds = secondsOfTimeEntry(m_edit.editedTime);
    if (m_task && seconds >= 0)
        m_task->setAccumulatedSeconds(seconds);
    setIsEditingTime(false);
    if (m_timerManager)
        m_timerManager->setIsEditing(false);
}

void TaskRowViewModel::setTask(Task *task)
{
    if (m_task == task)
        return;
    if (m_task)
        m_task->disconnect(this);
    m_task = task;
    if (task) {
        connect(task, &Task::nameChanged, this, &TaskRowViewModel::updateName);
        connect(task, &Task::projectCodeChanged, this, &TaskRowViewModel::updateProjectCode);
        connect(task, &Record::changed, this, &TaskRowViewModel::updateFigures);
        updateName();
        updateProjectCode();
        updateFigures();
    }
    Q_EMIT taskChanged();
}

void TaskRowViewModel::setTimerManager(TimerManager *timerManager)
{
    if (m_timerManager == timerManager)
        return;
    if (m_timerManager)
        m_timerManager->disconnect(this);
    m_timerManager = timerManager;
    if (timerManager) {
        connect(timerManager, &TimerManager::tickChanged, this, &TaskRowViewModel::updateFigures);
        connect(timerManager, &TimerManager::showBillableTimeChanged, this,
                &TaskRowViewModel::updateFigures);
        updateFigures();
    }
    Q_EMIT timerManagerChanged();
}

void TaskRowViewModel::setEdits(RowEdits *edits)
{
    if (m_edits == edits)
        return;
    m_edits = edits;
    Q_EMIT editsChanged();
}

void TaskRowViewModel::setNameFont(const QFont &font)
{
    if (m_nameFont == font)
        return;
    m_nameFont = font;
    Q_EMIT nameFontChanged();
    updateWidestWord();
}

void TaskRowViewModel::setEditedName(const QString &name)
{
    if (m_edit.editedName == name)
        return;
    m_edit.editedName = name;
    keepEdit();
    Q_EMIT editedNameChanged();
}

void TaskRowViewModel::setEditedTime(const QString &time)
{
    if (m_edit.editedTime == time)
        return;
    m_edit.editedTime = time;
    keepEdit();
    Q_EMIT editedTimeChanged();
}

void TaskRowViewModel::componentComplete()
{
    if (!m_task || !m_edits)
        return;
    // What was being entered before the row scrolled out of sight.
    m_edit = m_edits->edit(m_task->id());
    Q_EMIT editedNameChanged();
    Q_EMIT editedTimeChanged();
    Q_EMIT isEditingNameChanged();
    Q_EMIT isEditingTimeChanged();
}

void TaskRowViewModel::updateName()
{
    m_isNamed = !m_task->name().isEmpty();
    m_shownName = m_isNamed ? shownPart(m_task->name()) : u"Unavngivet opgave"_s;
    Q_EMIT nameChanged();
    updateWidestWord();
}

void TaskRowViewModel::updateWidestWord()
{
    const qreal width = m_nameFont ? ::widestWord(m_shownName, *m_nameFont) : 0;
    if (width == m_widestWord)
        return;
    m_widestWord = width;
    Q_EMIT widestWordChanged();
}

void TaskRowViewModel::updateProjectCode()
{
    m_projectCode = m_task->projectCode() ? QVariant(*m_task->projectCode()) : QVariant();
    Q_EMIT projectCodeChanged();
}

void TaskRowViewModel::updateFigures()
{
    if (!m_task || !m_timerManager)
        return;
    // One reading of the clock for both figures, and only texts that differ are drawn again.
    const qint64 seconds = m_task->currentTotalSeconds();
    const QString time = clockText(seconds);
    const QString hours = hoursText(
        m_timerManager->showBillableTime() ? roundedDecimalHours(seconds) : decimalHours(seconds));
    if (time != m_displayedTime) {
        m_displayedTime = time;
        Q_EMIT displayedTimeChanged();
    }
    if (hours != m_displayedHours) {
        m_displayedHours = hours;
        Q_EMIT displayedHoursChanged();
    }
}

void TaskRowViewModel::keepEdit()
{
    if (m_task && m_edits)
        m_edits->setEdit(m_task->id(), m_edit);
}

void TaskRowViewModel::setIsEditingName(bool isEditing)
{
    if (m_edit.isEditingName == isEditing)
        return;
    m_edit.isEditingName = isEditing;
    keepEdit();
    Q_EMIT isEditingNameChanged();
}

void TaskRowViewModel::setIsEditingTime(bool isEditing)
{
    if (m_edit.isEditingTime == isEditing)
        return;
    m_edit.isEditingTime = isEditing;
    keepEdit();
    Q_EMIT isEditingTimeChanged();
}
