pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Model
import TimeTracker.Views.Controls

/// One template: a click makes a task of it.
FocusScope {
    id: entry

    required property TaskTemplate taskTemplate

    readonly property string name: taskTemplate?.name ?? ""
    readonly property bool isHovered: hover.hovered || activeFocus
    readonly property real spacing: 6

    signal tap
    signal deleteRequested

    implicitHeight: button.height + 12

    Accessible.role: Accessible.ListItem
    Accessible.name: name

    HoverHandler {
        id: hover
    }

    Rectangle {
        objectName: "entryBackground"
        anchors.fill: parent
        visible: entry.isHovered
        radius: 4
        color: Theme.brandAccent
        opacity: 0.15
    }

    PlainButton {
        id: button

        objectName: "templateButton"
        anchors.left: parent.left
        anchors.leftMargin: 8
        anchors.right: parent.right
        anchors.rightMargin: entry.isHovered ? 8 + mark.width + entry.spacing : 8
        anchors.verticalCenter: parent.verticalCenter
        label: entry.name
        onClicked: entry.tap()

        contentItem: Row {
            spacing: entry.spacing

            SymbolImage {
                anchors.verticalCenter: parent.verticalCenter
                name: "doc.text"
                fontSize: 10
                color: Theme.brandAccent
            }

            ElidingLabel {
                objectName: "nameText"
                anchors.verticalCenter: parent.verticalCenter
                // A spacer follows.
                width: parent.width - x - entry.spacing
                text: entry.name
                font.pixelSize: 11
                Accessible.ignored: true
            }
        }
    }

    HoverMark {
        id: mark

        objectName: "deleteMark"
        anchors.right: parent.right
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        isShown: entry.isHovered
        label: "Slet skabelon " + entry.name
        onClicked: entry.deleteRequested()
    }
}
