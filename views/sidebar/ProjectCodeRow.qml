pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Model
import TimeTracker.Views.Controls
import TimeTracker.Views.Sidebar

/// One project code and what it stands for.
MarkedEntry {
    id: row

    required property ProjectCode projectCode

    readonly property string code: projectCode?.code ?? ""
    readonly property string name: projectCode?.name ?? ""

    implicitHeight: Math.max(symbol.height, texts.height) + 12
    deleteLabel: "Slet projektkode " + code

    Accessible.name: projectCode?.displayName ?? ""

    SymbolImage {
        id: symbol

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
        // A flexible spacer follows.
        anchors.rightMargin: row.spacing
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
}
