#pragma once

#include "app/menubar/layersurface.h"
#include "app/windows/pointerpresses.h"
#include "views/menubar/menubarviewmodel.h"

#include <QElapsedTimer>
#include <QObject>
#include <QQmlEngine>
#include <QQuickWindow>

#include <chrono>
#include <memory>

/// The panel of the menu-bar item. Its window is made when it is opened and goes when it is closed:
/// by Escape, by a second click on the item, when another window gets the keyboard, or, on X11,
/// when the pointer is pressed anywhere else.
class MenuBarPanel : public QObject
{
    Q_OBJECT

public:
    /// All collaborators outlive it. A click on the item within @p sameClick of the panel's closing
    /// for another window's sake, or of the end of a press elsewhere that closed it, is the click
    /// that closed it.
    MenuBarPanel(QQmlEngine &engine, TimerManager &timerManager, ModelContext &modelContext,
                 std::chrono::milliseconds sameClick = std::chrono::milliseconds(300));
    ~MenuBarPanel() override;

    /// The item has been clicked: opens the panel near it, or closes it. @p reported is where the
    /// desktop says that was, in physical pixels; (0, 0) if it does not say.
    void toggle(const QPoint &reported = {});
    /// The same for an item whose place is known, in logical pixels. Where @p item is a window of
    /// our own, the panel belongs to it.
    void toggleAt(const QRect &anchor, QWindow *item = nullptr);
    void close();

    bool isOpen() const { return m_window != nullptr; }
    /// Null while it is closed.
    QQuickWindow *window() const { return m_window.get(); }

Q_SIGNALS:
    void isOpenChanged();
    void openMainWindow();
    void quit();

private Q_SLOTS:
    void place();

private:
    bool closesInstead();
    void open(const QRect &anchor, QWindow *item);
    QSize contentSize() const;
    PanelEdges edges() const;
    /// For another window's sake, which gets the keyboard.
    void closeForAnother();
    void onFocusWindowChanged(QWindow *focus);
    void onPressed();
    void onReleased();
    void drop();

    QQmlEngine &m_engine;
    TimerManager &m_timerManager;
    ModelContext &m_modelContext;
    std::chrono::milliseconds m_sameClick;
    std::unique_ptr<MenuBarViewModel> m_viewModel;
    std::unique_ptr<QQuickWindow> m_window;
    QRect m_anchor;
    /// The window's, where the compositor places it; else null.
    LayerSurface *m_layerSurface = nullptr;
    bool m_hadFocus = false;
    PointerPresses m_presses;
    /// Whether the press that has closed it goes on.
    bool m_isPressHeld = false;
    QElapsedTimer m_sinceClosing;
};
