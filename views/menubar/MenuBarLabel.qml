pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls
import TimeTracker.Views.MenuBar

/// The menu-bar item's content: the same symbol whether a task runs or not, and the clock of the
/// one that does.
Row {
    id: label

    required property MenuBarLabelViewModel viewModel

    spacing: 4

    SymbolImage {
        objectName: "labelSymbol"
        anchors.verticalCenter: parent.verticalCenter
        name: "timer"
        color: Theme.primary
    }

    MonospacedLabel {
        objectName: "labelText"
        anchors.verticalCenter: parent.verticalCenter
        visible: text !== ""
        text: label.viewModel.displayText
    }
}
