pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Model
import TimeTracker.Views.Controls
import TimeTracker.Views.Sidebar

/// One template: a click makes a task of it.
MarkedEntry {
    id: entry

    required property TaskTemplate taskTemplate

    readonly property string name: taskTemplate?.name ?? ""

    signal tap

    implicitHeight: button.height + 12
    deleteLabel: "Slet skabelon " + name

    Accessible.name: name

    PlainButton {
        id: button

        objectName: "templateButton"
        anchors.verticalCenter: parent.verticalCenter
        width: parent.width
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
                // A flexible spacer follows.
                width: parent.width - x - entry.spacing
                text: entry.name
                font.pixelSize: 11
                Accessible.ignored: true
            }
        }
    }
}
