#include "views/menubar/menubartaskrowviewmodel.h"

using namespace Qt::StringLiterals;

MenuBarTaskRowViewModel::MenuBarTaskRowViewModel(Task &task)
    : m_task(&task)
{
    connect(&task, &Record::changed, this, &MenuBarTaskRowViewModel::update);
    update();
}

void MenuBarTaskRowViewModel::updateTime()
{
    if (!m_task)
        return;
    const QString time = m_task->formattedTime();
    if (time == m_displayedTime)
        return;
    m_displayedTime = time;
    Q_EMIT displayedTimeChanged();
}

void MenuBarTaskRowViewModel::update()
{
    m_shownName = m_task->name().isEmpty() ? u"Unavngivet"_s : m_task->name();
    m_projectCode = m_task->projectCode() ? QVariant(*m_task->projectCode()) : QVariant();
    m_isActive = m_task->isRunning();
    Q_EMIT changed();
    updateTime();
}
