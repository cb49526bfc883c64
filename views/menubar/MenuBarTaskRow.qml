pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Model
import TimeTracker.Views.Controls
import TimeTracker.Views.MenuBar

/// One of today's tasks in the panel: a press anywhere starts or stops it.
PlainButton {
    id: row

    required property Task task
    required property bool isActive
    /// Not shown: with each new value the time is read again.
    required property real tick

    // A tick is never negative; it is read so that the time follows it.
    readonly property string displayedTime: tick >= 0 ? task?.formattedTime ?? "" : ""
    readonly property string shownName: task?.name || "Unavngivet"

    signal toggle

    component Content: Item {
        implicitHeight: Math.max(symbol.height, texts.height, time.height)

        SymbolImage {
            id: symbol

            objectName: "rowSymbol"
            anchors.verticalCenter: parent.verticalCenter
            name: row.isActive ? "pause.circle.fill" : "play.circle"
            fontSize: 14
            color: row.isActive ? Theme.brandAccent : Theme.secondary
        }

        Column {
            id: texts

            anchors.left: symbol.right
            anchors.leftMargin: 8
            anchors.right: time.left
            anchors.rightMargin: 8 + 8
            anchors.verticalCenter: parent.verticalCenter
            spacing: 1

            Rectangle {
                objectName: "badge"
                visible: row.task?.projectCode !== undefined
                width: Math.min(code.implicitWidth + 8, parent.width)
                height: code.height + 2
                radius: 2
                color: Qt.alpha(Theme.brandAccent, 0.15)

                ElidingLabel {
                    id: code

                    objectName: "badgeText"
                    x: 4
                    y: 1
                    width: parent.width - 8
                    text: row.task?.projectCode ?? ""
                    font.pixelSize: 9
                    font.weight: Font.Medium
                    color: Theme.brandAccent
                }
            }

            ElidingLabel {
                objectName: "nameText"
                width: parent.width
                text: row.shownName
                font.pixelSize: 12
                Accessible.ignored: true
            }
        }

        MonospacedLabel {
            id: time

            objectName: "timeText"
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: row.displayedTime
            font.pixelSize: 11
            color: Theme.secondary
        }
    }

    label: (isActive ? "Sæt på pause: " : "Start ") + shownName
    leftPadding: 12
    rightPadding: 12
    topPadding: 6
    bottomPadding: 6
    // The ring stays inside: the row is as wide as the panel.
    leftInset: 2
    rightInset: 2
    topInset: 0
    bottomInset: 0
    onClicked: toggle()

    contentItem: Content {
    }

    Rectangle {
        objectName: "rowBackground"
        anchors.fill: parent
        z: -1
        color: row.isActive ? Qt.alpha(Theme.brandAccent, 0.1) : "transparent"
    }
}
