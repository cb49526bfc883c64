#include "views/menubar/menubarlabelviewmodel.h"

MenuBarLabelViewModel::MenuBarLabelViewModel(const TimerManager &timerManager,
                                             ModelContext &modelContext)
    : m_allTasks(modelContext)
{
    connect(&m_allTasks, &AllTasks::runningChanged, this, &MenuBarLabelViewModel::update);
    connect(&timerManager, &TimerManager::tickChanged, this, &MenuBarLabelViewModel::update);
    update();
}

Task *MenuBarLabelViewModel::runningTask() const
{
    return m_allTasks.running().value(0);
}

void MenuBarLabelViewModel::update()
{
    const Task *const running = runningTask();
    const QString text = running ? running->formattedTime() : QString();
    if (text == m_displayText)
        return;
    m_displayText = text;
    Q_EMIT displayTextChanged();
}
