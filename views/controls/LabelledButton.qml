pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls

/// A button of a symbol and its label.
PlainButton {
    id: button

    required property string symbol
    property int symbolSize: 13
    property color color: Theme.primary
    property int weight: Font.Normal
    spacing: Metrics.spacing

    contentItem: Row {
        spacing: button.spacing

        SymbolImage {
            anchors.verticalCenter: parent.verticalCenter
            name: button.symbol
            fontSize: button.symbolSize
            color: button.color
        }

        TextLabel {
            anchors.verticalCenter: parent.verticalCenter
            text: button.label
            font.weight: button.weight
            color: button.color
            Accessible.ignored: true
        }
    }
}
