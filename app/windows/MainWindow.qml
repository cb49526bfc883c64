pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.App.Windows
import TimeTracker.Views.Controls
import TimeTracker.Views.Day

/// The main window.
Window {
    id: window

    required property ContentViewModel viewModel

    width: 650
    height: 450
    minimumWidth: content.minimumWidth
    minimumHeight: content.minimumHeight
    title: "TULO Time Tracker"
    color: Theme.windowBackground

    ContentView {
        id: content

        anchors.fill: parent
        viewModel: window.viewModel
    }
}
