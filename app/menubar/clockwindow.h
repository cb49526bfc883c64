#pragma once

#include "views/menubar/menubarlabelviewmodel.h"

#include <QObject>
#include <QQmlEngine>
#include <QQuickWindow>

#include <memory>

/// The window that shows the clock where the desktop has no place for an item.
class ClockWindow : public QObject
{
    Q_OBJECT

public:
    /// Shows it in the screen's top right corner. All collaborators outlive it.
    ClockWindow(QQmlEngine &engine, const TimerManager &timerManager, ModelContext &modelContext);
    ~ClockWindow() override;

    /// Shows it again after the user has closed it.
    void show();
    QQuickWindow *window() const { return m_window.get(); }

Q_SIGNALS:
    /// The user has clicked it.
    void activated();
    /// The user has closed it.
    void closed();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private:
    MenuBarLabelViewModel m_viewModel;
    std::unique_ptr<QQuickWindow> m_window;
};
