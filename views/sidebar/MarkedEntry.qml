pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls

/// An entry of a section's list. While the pointer or the keyboard is in it, it has a ground, and a mark
/// to delete it by; its content makes room for that.
FocusScope {
    id: entry

    default property alias content: place.data
    required property string deleteLabel

    readonly property bool isHovered: hover.hovered || activeFocus
    readonly property real spacing: 6

    signal deleteRequested

    Accessible.role: Accessible.ListItem

    HoverHandler {
        id: hover
    }

    Rectangle {
        objectName: "entryBackground"
        anchors.fill: parent
        visible: entry.isHovered
        radius: Metrics.cornerRadius
        color: Theme.brandAccent
        opacity: 0.15
    }

    Item {
        id: place

        anchors.fill: parent
        anchors.leftMargin: Metrics.spacing
        anchors.rightMargin: entry.isHovered ? Metrics.spacing + mark.width + entry.spacing : Metrics.spacing
    }

    HoverMark {
        id: mark

        objectName: "deleteMark"
        anchors.right: parent.right
        anchors.rightMargin: Metrics.spacing
        anchors.verticalCenter: parent.verticalCenter
        isShown: entry.isHovered
        label: entry.deleteLabel
        onClicked: entry.deleteRequested()
    }
}
