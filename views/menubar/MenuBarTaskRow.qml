pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls
import TimeTracker.Views.MenuBar

/// One of today's tasks in the panel: a press anywhere starts or stops it.
PlainButton {
    id: row

    required property MenuBarTaskRowViewModel viewModel

    component Content: Item {
        implicitHeight: Math.max(symbol.height, texts.height, time.height)

        SymbolImage {
            id: symbol

            objectName: "rowSymbol"
            anchors.verticalCenter: parent.verticalCenter
            name: row.viewModel.isActive ? "pause.circle.fill" : "play.circle"
            fontSize: 14
            color: row.viewModel.isActive ? Theme.brandAccent : Theme.secondary
        }

        Column {
            id: texts

            anchors.left: symbol.right
            anchors.leftMargin: Metrics.spacing
            anchors.right: time.left
            anchors.rightMargin: 2 * Metrics.spacing
            anchors.verticalCenter: parent.verticalCenter
            spacing: 1

            CodeBadge {
                objectName: "badge"
                visible: row.viewModel.projectCode !== undefined
                width: Math.min(implicitWidth, parent.width)
                radius: 2
                code: row.viewModel.projectCode ?? ""
                fontSize: 9
                horizontalPadding: 4
                verticalPadding: 1
            }

            ElidingLabel {
                objectName: "nameText"
                width: parent.width
                text: row.viewModel.shownName
                font.pixelSize: 12
                Accessible.ignored: true
            }
        }

        MonospacedLabel {
            id: time

            objectName: "timeText"
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            text: row.viewModel.displayedTime
            font.pixelSize: 11
            color: Theme.secondary
        }
    }

    label: (viewModel.isActive ? "Sæt på pause: " : "Start ") + viewModel.shownName
    leftPadding: Metrics.padding
    rightPadding: Metrics.padding
    topPadding: 6
    bottomPadding: 6
    // The focus ring stays inside, as the row is as wide as the panel.
    leftInset: 2
    rightInset: 2
    topInset: 0
    bottomInset: 0

    contentItem: Content {
    }

    Rectangle {
        objectName: "rowBackground"
        anchors.fill: parent
        z: -1
        color: row.viewModel.isActive ? Qt.alpha(Theme.brandAccent, 0.1) : "transparent"
    }
}
