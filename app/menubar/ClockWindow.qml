pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.App.MenuBar
import TimeTracker.App.Windows
import TimeTracker.Views.Controls
import TimeTracker.Views.MenuBar

/// The clock where the desktop has no place for an item of ours: a click opens the panel, a drag
/// moves it. The panel may be a part of this window.
Window {
    id: window

    required property MenuBarLabelViewModel viewModel

    // There is a view-model while the panel is open, and a moment longer.
    property MenuBarViewModel panelViewModel: null
    property bool isPanelOpen: false

    signal activated
    signal openMainWindow
    signal quit
    signal closePanel

    flags: Qt.Window | Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint
    title: isPanelOpen ? "I dag" : "Ur"
    color: Theme.windowBackground

    FixedSize {
        size: Qt.size(Math.max(120, label.implicitWidth + 2 * 10, (panel.item as MenuBarView)?.implicitWidth ?? 0), clock.height + panel.height)
    }

    // Space is left to the button itself.
    FocusScope {
        id: clock

        width: parent.width
        height: 28
        focus: true
        Keys.onReturnPressed: window.activated()
        Keys.onEnterPressed: window.activated()

        PlainButton {
            objectName: "clockButton"
            anchors.fill: parent
            focus: true
            // The panel's own parts are reached in a ring, as in its own window.
            activeFocusOnTab: !window.isPanelOpen
            label: "Vis dagens opgaver"
            leftInset: 2
            rightInset: 2
            topInset: 2
            bottomInset: 2
            onClicked: window.activated()

            DragHandler {
                target: null
                onActiveChanged: if (active)
                    window.startSystemMove()
            }
        }

        MenuBarLabel {
            id: label

            anchors.centerIn: parent
            viewModel: window.viewModel
        }
    }

    OnDemand {
        id: panel

        anchors.top: clock.bottom
        active: window.isPanelOpen

        MenuBarView {
            width: window.width
            height: implicitHeight
            viewModel: window.panelViewModel
            onOpenMainWindow: window.openMainWindow()
            onQuit: window.quit()
            onCloseRequested: window.closePanel()
            Component.onCompleted: forceActiveFocus()

            Divider {
                width: parent.width
            }
        }
    }

    WindowBorder {
    }
}
