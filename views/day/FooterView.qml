pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls
import TimeTracker.Views.Day

/// The strip below the day: "Ny opgave" and the totals.
Rectangle {
    id: footer

    required property FooterViewModel viewModel

    /// What the two totals may take: beside the button lies a spacer between two gaps of 8.
    readonly property real totalsRoom: width - 2 * Metrics.stripMargin - addButton.width - 2 * Metrics.spacing - totalLabel.width - 2 * totals.spacing
    readonly property real totalsScale: totalsRoom > 0 ? Math.min(1, totalsRoom / (totalTime.implicitWidth + totalHours.implicitWidth)) : 1

    implicitHeight: Math.max(addButton.height, totals.height) + 2 * Metrics.padding
    color: Theme.controlBackground

    LabelledButton {
        id: addButton

        objectName: "addTaskButton"
        anchors.left: parent.left
        anchors.leftMargin: Metrics.stripMargin
        anchors.verticalCenter: parent.verticalCenter
        label: "Ny opgave"
        symbol: "plus"
        symbolSize: 12
        color: Theme.brandAccent
        weight: Font.Medium
        spacing: 6
        onClicked: footer.viewModel.addTask()
    }

    Row {
        id: totals

        anchors.right: parent.right
        anchors.rightMargin: Metrics.stripMargin
        anchors.verticalCenter: parent.verticalCenter
        spacing: 16

        TextLabel {
            id: totalLabel

            objectName: "totalLabel"
            anchors.verticalCenter: parent.verticalCenter
            text: "I alt:"
            font.weight: Font.Medium
            color: Theme.secondary
        }

        MonospacedLabel {
            id: totalTime

            objectName: "totalTime"
            anchors.verticalCenter: parent.verticalCenter
            width: implicitWidth * footer.totalsScale
            text: footer.viewModel.totalFormattedTime
            font.pixelSize: 14
            font.weight: Font.DemiBold
        }

        MonospacedLabel {
            id: totalHours

            objectName: "totalHours"
            anchors.verticalCenter: parent.verticalCenter
            width: implicitWidth * footer.totalsScale
            text: footer.viewModel.totalHoursText
            font.pixelSize: 14
            font.weight: Font.DemiBold
            color: Theme.brandAccent
        }
    }
}
