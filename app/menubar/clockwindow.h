#pragma once

#include "app/menubar/clockplace.h"
#include "app/windows/quietmoment.h"
#include "views/menubar/menubarlabelviewmodel.h"
#include "views/menubar/menubarviewmodel.h"

#include <QObject>
#include <QPointer>
#include <QQmlEngine>
#include <QQuickWindow>
#include <QTimer>

#include <chrono>
#include <memory>
#include <optional>
#include <vector>

/// The window that shows the clock where the desktop has no place for an item. It is hidden at
/// first, and stands where it stood the last time.
class ClockWindow : public QObject
{
    Q_OBJECT

public:
    /// All collaborators outlive it. @p quiet is for desktops that give the keyboard to each new
    /// window: how long nothing may have been pressed before this one may appear by itself.
    ClockWindow(QQmlEngine &engine, TimerManager &timerManager, ModelContext &modelContext,
                std::optional<std::chrono::milliseconds> quiet = quietTime());
    ~ClockWindow() override;

    /// Shows it beside another window of the program, which keeps the keyboard. Where this one gets
    /// it all the same, it waits for a quiet moment and hands the keyboard back. What is typed
    /// before the other one has it is passed on; it hides this one, as soon as the typing pauses,
    /// until the next quiet moment.
    void showBeside();
    /// Shows it at once, as the only way to the program.
    void show();
    /// Opens the panel inside this window, which grows by it, or closes it. For desktops that place
    /// windows as they like: one of its own might cover the clock, and a second click would press
    /// what it shows there. It closes by Escape, too, and when the keyboard goes elsewhere.
    void togglePanel();
    QQuickWindow *window() const { return m_window.get(); }

Q_SIGNALS:
    /// The user has clicked it.
    void activated();
    /// The user has closed it.
    void closed();
    /// Asked for in the panel inside this window.
    void openMainWindow();
    void quit();

protected:
    bool eventFilter(QObject *watched, QEvent *event) override;

private Q_SLOTS:
    void closePanel();

private:
    static std::optional<std::chrono::milliseconds> quietTime();
    void appear();
    void borrowKeyboard();
    void passOn(const QEvent &key);
    void onFocusWindowChanged(QWindow *focus);
    void onMoved();

    TimerManager &m_timerManager;
    ModelContext &m_modelContext;
    MenuBarLabelViewModel m_viewModel;
    // Null while the panel inside the window is closed.
    std::unique_ptr<MenuBarViewModel> m_panelViewModel;
    std::unique_ptr<QQuickWindow> m_window;
    ClockPlace m_place;
    // It goes off once the window has come to rest after a move.
    QTimer m_restTimer;

    std::unique_ptr<QuietMoment> m_quietMoment;
    // The window that the keyboard was taken from without its user's doing, until it is back there
    // or the user puts it elsewhere; and what has been typed meanwhile.
    QPointer<QWindow> m_lender;
    bool m_hasBorrowed = false;
    std::vector<std::unique_ptr<QEvent>> m_typed;
    // It goes off once nothing more is typed.
    QTimer m_pauseTimer;
};
