pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Model
import TimeTracker.Views.Controls

/// One project code and what it stands for.
FocusScope {
    id: row

    required property ProjectCode projectCode

    readonly property string code: projectCode?.code ?? ""
    readonly property string name: projectCode?.name ?? ""
    readonly property bool isHovered: hover.hovered || activeFocus
    readonly property real spacing: 6

    signal deleteRequested

    implicitHeight: Math.max(symbol.height, texts.height) + 12

    Accessible.role: Accessible.ListItem
    Accessible.name: projectCode?.displayName ?? ""

    HoverHandler {
        id: hover
    }

    Rectangle {
        objectName: "entryBackground"
        anchors.fill: parent
        visible: row.isHovered
        radius: 4
        color: Theme.brandAccent
        opacity: 0.15
    }

    SymbolImage {
        id: symbol

        anchors.left: parent.left
        anchors.leftMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        name: "tag.fill"
        fontSize: 10
        color: Theme.brandAccent
    }

    Column {
        id: texts

        anchors.left: symbol.right
        anchors.leftMargin: row.spacing
        anchors.right: parent.right
        // A spacer follows, with spacing on both sides where the mark is shown.
        anchors.rightMargin: row.isHovered ? 8 + mark.width + 2 * row.spacing : 8 + row.spacing
        anchors.verticalCenter: parent.verticalCenter
        spacing: 1

        TextLabel {
            objectName: "codeText"
            width: parent.width
            text: row.code
            wrapMode: Text.Wrap
            font.pixelSize: 11
            font.weight: Font.Medium
        }

        ElidingLabel {
            objectName: "nameText"
            width: parent.width
            visible: row.name !== ""
            text: row.name
            font.pixelSize: 10
            color: Theme.secondary
        }
    }

    HoverMark {
        id: mark

        objectName: "deleteMark"
        anchors.right: parent.right
        anchors.rightMargin: 8
        anchors.verticalCenter: parent.verticalCenter
        isShown: row.isHovered
        label: "Slet projektkode " + row.code
        onClicked: row.deleteRequested()
    }
}
