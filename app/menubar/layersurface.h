#pragma once

#include "app/menubar/panelplacement.h"

#include <QObject>
#include <QQuickWindow>

#include <memory>

/// Has the compositor place a window at an edge of a screen, above all others and outside of task
/// bars, and give it the keyboard when it is shown. The window closes when its screen goes away.
class LayerSurface : public QObject
{
    Q_OBJECT

public:
    /// Whether the compositor does this for programs (zwlr_layer_shell_v1, version 4). False on
    /// other platforms, and in builds without LayerShellQt.
    static bool isPossible();

    /// @p window, which owns it, is not created yet.
    LayerSurface(QQuickWindow &window, const PanelEdges &edges);
    ~LayerSurface() override;

    /// Moves the window; its screen stays.
    void move(const PanelEdges &edges);

Q_SIGNALS:
    /// The compositor has taken the keyboard from the window, maybe for a moment only: another
    /// window was clicked, or opened.
    void keyboardLeft();

private:
    class Keyboard;

    QQuickWindow &m_window;
    std::unique_ptr<Keyboard> m_keyboard;
};
