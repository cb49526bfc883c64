pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.App.MenuBar
import TimeTracker.App.Windows
import TimeTracker.Views.Controls
import TimeTracker.Views.MenuBar

/// The clock where the desktop has no place for an item of ours: a click opens the panel, a drag
/// moves it.
Window {
    id: window

    required property MenuBarLabelViewModel viewModel

    signal activated

    flags: Qt.Window | Qt.FramelessWindowHint | Qt.WindowStaysOnTopHint
    title: "Ur"
    color: Theme.windowBackground

    FixedSize {
        size: Qt.size(Math.max(120, label.implicitWidth + 2 * 10), 28)
    }

    // Space is left to the button itself.
    FocusScope {
        anchors.fill: parent
        focus: true
        Keys.onReturnPressed: window.activated()
        Keys.onEnterPressed: window.activated()

        PlainButton {
            objectName: "clockButton"
            anchors.fill: parent
            focus: true
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
    }

    MenuBarLabel {
        id: label

        anchors.centerIn: parent
        viewModel: window.viewModel
    }

    WindowBorder {
    }
}
