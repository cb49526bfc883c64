pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import TimeTracker.Views.Controls
import TimeTracker.Views.Sidebar

/// A panel of the side column: a title with a plus button, a form while one is open, and the
/// records. The list scrolls in what height is left; where title, form and one entry do not fit,
/// the panel scrolls as a whole.
Flickable {
    id: panel

    required property PanelViewModel viewModel
    required property string title
    /// Accessible name of the plus button.
    required property string addName
    /// What stands in the list's place while there are no records.
    required property string emptyText
    /// One record.
    required property Component entry
    /// Fields and buttons for a new record.
    required property Component form

    readonly property real padding: 12
    readonly property real spacing: 8
    readonly property real bodyHeight: emptyLabel.visible ? emptyLabel.height : list.contentHeight
    // An entry on one line can be seen whole. The padding below gives way to it.
    readonly property real leastBodyHeight: emptyLabel.visible ? emptyLabel.height : list.count > 0 ? 26 : 0

    implicitWidth: 180
    implicitHeight: list.y + bodyHeight + padding
    contentWidth: width
    contentHeight: Math.max(height, list.y + leastBodyHeight)
    boundsBehavior: Flickable.StopAtBounds
    clip: true

    T.ScrollBar.vertical: OverlayScrollBar {
    }

    FocusReveal {
    }

    Item {
        id: header

        objectName: "panelHeader"
        x: panel.padding
        y: panel.padding
        width: panel.width - 2 * panel.padding
        height: Math.max(titleLabel.height, plus.height)

        ElidingLabel {
            id: titleLabel

            objectName: "panelTitle"
            anchors.left: parent.left
            anchors.leftMargin: 8
            anchors.right: plus.left
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            text: panel.title
            font.pixelSize: 12
            font.weight: Font.DemiBold
            color: Theme.secondary
        }

        SymbolButton {
            id: plus

            objectName: "plusButton"
            anchors.right: parent.right
            anchors.rightMargin: 8
            anchors.verticalCenter: parent.verticalCenter
            label: panel.addName
            symbol: "plus"
            symbolSize: 10
            onClicked: panel.viewModel.startAdding()
        }
    }

    OnDemand {
        id: formPlace

        anchors.top: header.bottom
        anchors.topMargin: active ? panel.spacing : 0
        x: panel.padding + 8
        width: panel.width - 2 * x
        active: panel.viewModel.isAdding
        component: panel.form
    }

    TextLabel {
        id: emptyLabel

        objectName: "emptyText"
        x: panel.padding + 8
        y: list.y
        width: panel.width - 2 * x
        visible: panel.viewModel.showEmptyText
        text: panel.emptyText
        wrapMode: Text.Wrap
        font.pixelSize: 11
        color: Theme.tertiary
    }

    PlainList {
        id: list

        objectName: "panelList"
        anchors.top: formPlace.bottom
        anchors.topMargin: panel.spacing
        x: panel.padding
        width: panel.width - 2 * x
        height: Math.max(panel.leastBodyHeight, panel.contentHeight - y - panel.padding)
        visible: !emptyLabel.visible
        spacing: 2
        model: panel.viewModel.rows
        delegate: panel.entry

        Accessible.name: panel.title

        // At once, and not when the next frame is drawn: only so does the entry that has moved under
        // a resting pointer learn of it.
        Connections {
            target: panel.viewModel.rows

            function onCountChanged() {
                list.forceLayout();
            }
        }

        Connections {
            target: panel.viewModel

            function onAdded(index: int) {
                list.positionViewAtIndex(index, ListView.Contain);
            }
        }
    }
}
