pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.App.Windows
import TimeTracker.Model
import TimeTracker.Timer
import TimeTracker.Views.Controls
import TimeTracker.Views.Day

/// The main window.
Window {
    id: window

    required property Clock clock
    required property TimerManager timerManager
    required property ModelContext modelContext

    width: 650
    height: 450
    minimumWidth: content.minimumWidth
    minimumHeight: content.minimumHeight
    title: "TULO Time Tracker"
    color: Theme.windowBackground

    ContentView {
        id: content

        anchors.fill: parent
        clock: window.clock
        timerManager: window.timerManager
        modelContext: window.modelContext
    }
}
