pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Model
import TimeTracker.Timer
import TimeTracker.Views.Controls
import TimeTracker.Views.MenuBar

/// The menu-bar item's content: the same symbol whether a task runs or not, and the clock of the
/// one that does.
Row {
    id: label

    required property TimerManager timerManager
    required property ModelContext modelContext

    spacing: 4

    MenuBarLabelViewModel {
        id: viewModel

        timerManager: label.timerManager
        modelContext: label.modelContext
    }

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
        text: viewModel.displayText
    }
}
