pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls
import TimeTracker.Views.MenuBar

/// The panel of the menu-bar item: today's tasks, their total, the way to the main window and out.
FocusScope {
    id: panel

    required property MenuBarViewModel viewModel

    signal openMainWindow
    signal quit
    signal closeRequested

    component Command: LabelledButton {
        width: panel.width
        leftPadding: Metrics.padding
        rightPadding: Metrics.padding
        topPadding: Metrics.spacing
        bottomPadding: Metrics.spacing
        leftInset: 2
        rightInset: 2
        topInset: 2
        bottomInset: 2
    }

    function moveFocus(forward: bool) {
        (Window.activeFocusItem ?? panel).nextItemInFocusChain(forward).forceActiveFocus(Qt.TabFocusReason);
    }

    function pressFocused(event: KeyEvent) {
        if (!event.isAutoRepeat)
            (Window.activeFocusItem as PlainButton)?.clicked();
    }

    implicitWidth: 240
    implicitHeight: parts.height
    focus: true

    Keys.onUpPressed: moveFocus(false)
    Keys.onDownPressed: moveFocus(true)
    Keys.onReturnPressed: event => pressFocused(event)
    Keys.onEnterPressed: event => pressFocused(event)
    Keys.onEscapePressed: closeRequested()

    Column {
        id: parts

        width: parent.width

        Item {
            objectName: "panelHeader"
            width: parent.width
            height: Math.max(title.height, total.height) + 2 * Metrics.spacing

            TextLabel {
                id: title

                objectName: "panelTitle"
                anchors.left: parent.left
                anchors.leftMargin: Metrics.padding
                anchors.verticalCenter: parent.verticalCenter
                text: "I dag"
                font.pixelSize: 12
                font.weight: Font.DemiBold
                color: Theme.secondary
            }

            MonospacedLabel {
                id: total

                objectName: "panelTotal"
                anchors.right: parent.right
                anchors.rightMargin: Metrics.padding
                anchors.verticalCenter: parent.verticalCenter
                text: panel.viewModel.totalText
                font.pixelSize: 12
                font.weight: Font.Medium
            }
        }

        Divider {
            width: parent.width
        }

        TextLabel {
            objectName: "emptyText"
            visible: panel.viewModel.isEmpty
            padding: Metrics.padding
            width: parent.width
            text: "Ingen opgaver i dag"
            font.pixelSize: 12
            color: Theme.secondary
        }

        Item {
            objectName: "panelTasks"
            width: parent.width
            height: Math.min(list.contentHeight + list.topMargin + list.bottomMargin, list.height)
            visible: !panel.viewModel.isEmpty
            clip: true

            // Always of full height, so that it makes at once as many rows as can be seen: from them
            // the panel takes its own height, before it is shown.
            PlainList {
                id: list

                objectName: "panelList"
                width: parent.width
                height: 200
                spacing: 2
                topMargin: 4
                bottomMargin: 4
                model: panel.viewModel.rows

                Accessible.name: "Opgaver i dag"
                Component.onCompleted: forceLayout()

                delegate: MenuBarTaskRow {
                    id: entry

                    required property MenuBarTaskRowViewModel object

                    width: ListView.view.width
                    viewModel: object
                    onClicked: panel.viewModel.toggle(object)

                    RowKeeper {
                        row: entry.object
                    }
                }
            }
        }

        Divider {
            width: parent.width
        }

        Command {
            objectName: "openButton"
            label: "Åbn Time Tracker"
            symbol: "timer"
            onClicked: panel.openMainWindow()
        }

        Divider {
            width: parent.width
        }

        Command {
            objectName: "quitButton"
            label: "Afslut"
            symbol: "power"
            onClicked: panel.quit()
        }
    }
}
