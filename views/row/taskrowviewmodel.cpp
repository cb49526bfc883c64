#include "views/row/taskrowviewmodel.h"

#include "model/durations.h"
#include "views/controls/trimming.h"
#include "views/row/timeentry.h"

#include <utility>

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

TaskRowViewModel::TaskRowViewModel(Task &task, TimerManager &timerManager,
                                   ProjectCodeMenuModel &codeMenu)
    : m_task(&task)
    , m_timerManager(timerManager)
    , m_codeMenu(codeMenu)
{
    connect(&task, &Record::changed, this, &TaskRowViewModel::update);
}

void TaskRowViewModel::startNameEditing()
{
    if (!m_task)
        return;
    setEditedName(m_task->name());
    setIsEditingName(true);
    m_timerManager.setIsEditing(true);
    Q_EMIT nameEditingStarted();
}

void TaskRowViewModel::commitNameEdit()
{
    if (m_task)
        m_task->setName(trimmedOfBlanksAndLineBreaks(m_editedName));
    setIsEditingName(false);
    m_timerManager.setIsEditing(false);
}

void TaskRowViewModel::startTimeEditing()
{
    if (!m_task)
        return;
    // The task is stopped directly, so the timer manager goes on regarding it as the active one.
    m_task->stop();
    setEditedTime(m_task->formattedTime());
    setIsEditingTime(true);
    m_timerManager.setIsEditing(true);
    Q_EMIT timeEditingStarted();
}

void TaskRowViewModel::commitTimeEdit()
{
    const qint64 seconds = secondsOfTimeEntry(m_editedTime);
    if (m_task && seconds >= 0)
        m_task->setAccumulatedSeconds(seconds);
    setIsEditingTime(false);
    m_timerManager.setIsEditing(false);
}

void TaskRowViewModel::update()
{
    if (!m_texts || !m_task)
        return;
    const Texts before = std::exchange(*m_texts, currentTexts());
    if (m_texts->name != before.name || m_texts->isNamed != before.isNamed)
        Q_EMIT nameChanged();
    if (m_texts->projectCode != before.projectCode)
        Q_EMIT projectCodeChanged();
    if (m_texts->isActive != before.isActive)
        Q_EMIT isActiveChanged();
    if (m_texts->time != before.time)
        Q_EMIT displayedTimeChanged();
    if (m_texts->hours != before.hours)
        Q_EMIT displayedHoursChanged();
}

void TaskRowViewModel::setProjectCode(const QVariant &code)
{
    if (m_task)
        m_task->setProjectCode(code.isValid() ? std::optional(code.toString()) : std::nullopt);
}

void TaskRowViewModel::setEditedName(const QString &name)
{
    if (m_editedName == name)
        return;
    m_editedName = name;
    Q_EMIT editedNameChanged();
}

void TaskRowViewModel::setEditedTime(const QString &time)
{
    if (m_editedTime == time)
        return;
    m_editedTime = time;
    Q_EMIT editedTimeChanged();
}

const TaskRowViewModel::Texts &TaskRowViewModel::texts() const
{
    if (!m_texts)
        m_texts = m_task ? currentTexts() : Texts();
    return *m_texts;
}

TaskRowViewModel::Texts TaskRowViewModel::currentTexts() const
{
    // The clock is read once, so that both figures agree.
    const qint64 seconds = m_task->currentTotalSeconds();
    const double hours =
        m_timerManager.showBillableTime() ? roundedDecimalHours(seconds) : decimalHours(seconds);
    const bool isNamed = !m_task->name().isEmpty();
    return {isNamed ? shownPart(m_task->name()) : u"Unavngivet opgave"_s,
            isNamed,
            m_task->projectCode() ? QVariant(*m_task->projectCode()) : QVariant(),
            m_task->isRunning(),
            clockText(seconds),
            hoursText(hours)};
}

void TaskRowViewModel::setIsEditingName(bool isEditing)
{
    if (m_isEditingName == isEditing)
        return;
    m_isEditingName = isEditing;
    Q_EMIT isEditingNameChanged();
}

void TaskRowViewModel::setIsEditingTime(bool isEditing)
{
    if (m_isEditingTime == isEditing)
        return;
    m_isEditingTime = isEditing;
    Q_EMIT isEditingTimeChanged();
}
