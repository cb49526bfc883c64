pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls

/// What stands in the place of the list on a day without tasks.
Item {
    id: emptyDay

    readonly property string text: "Ingen opgaver for denne dag"

    Column {
        anchors.centerIn: parent
        width: parent.width
        spacing: 12

        SymbolImage {
            objectName: "emptySymbol"
            anchors.horizontalCenter: parent.horizontalCenter
            name: "clock"
            fontSize: 40
            color: Theme.secondary
            opacity: 0.5
        }

        TextLabel {
            objectName: "emptyText"
            width: parent.width
            text: emptyDay.text
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignHCenter
            font.pixelSize: 14
            color: Theme.secondary
        }

        TextLabel {
            objectName: "emptyHint"
            width: parent.width
            text: "Klik på \"Ny opgave\" for at tilføje en"
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignHCenter
            font.pixelSize: 12
            color: Theme.tertiary
        }
    }
}
