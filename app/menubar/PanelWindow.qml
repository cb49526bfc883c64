pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.App.MenuBar
import TimeTracker.Views.Controls
import TimeTracker.Views.MenuBar

/// The window of the menu-bar panel, as large as its content.
Window {
    id: window

    required property MenuBarViewModel viewModel

    // Whoever places the window gives it this size.
    readonly property size contentSize: Qt.size(view.implicitWidth, view.implicitHeight)

    signal openMainWindow
    signal quit

    title: "I dag"
    color: Theme.windowBackground

    MenuBarView {
        id: view

        anchors.fill: parent
        viewModel: window.viewModel
        onOpenMainWindow: window.openMainWindow()
        onQuit: window.quit()
        onCloseRequested: window.close()
    }

    WindowBorder {
    }
}
