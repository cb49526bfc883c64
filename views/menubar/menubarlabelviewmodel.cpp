#include "views/menubar/menubarlabelviewmodel.h"

MenuBarLabelViewModel::MenuBarLabelViewModel(QObject *parent)
    : QObject(parent)
{
}

MenuBarLabelViewModel::MenuBarLabelViewModel(TimerManager &timerManager, ModelContext &modelContext)
    : m_timerManager(&timerManager)
    , m_modelContext(&modelContext)
{
    begin();
}

void MenuBarLabelViewModel::setTimerManager(TimerManager *timerManager)
{
    if (m_timerManager == timerManager)
        return;
    m_timerManager = timerManager;
    Q_EMIT timerManagerChanged();
}

void MenuBarLabelViewModel::setModelContext(ModelContext *modelContext)
{
    if (m_modelContext == modelContext)
        return;
    m_modelContext = modelContext;
    Q_EMIT modelContextChanged();
}

Task *MenuBarLabelViewModel::runningTask() const
{
    return m_allTasks ? m_allTasks->running().value(0) : nullptr;
}

void MenuBarLabelViewModel::begin()
{
    if (!m_timerManager || !m_modelContext)
        return;
    m_allTasks = std::make_unique<AllTasks>(*m_modelContext);
    connect(m_allTasks.get(), &AllTasks::runningChanged, this, &MenuBarLabelViewModel::update);
    connect(m_timerManager, &TimerManager::tickChanged, this, &MenuBarLabelViewModel::update);
    update();
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
