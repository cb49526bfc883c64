pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls

/// The day to assistive technology: what the keys act upon until a row is selected. Another day is
/// another pane: of Qt 6.4, screen readers do not understand a new name.
Repeater {
    id: day

    required property string name
    required property string description
    required property bool hasKeys

    model: [name]

    Item {
        id: pane

        required property string modelData

        objectName: "dayPane"
        anchors.fill: parent
        Accessible.role: Accessible.Pane
        Accessible.name: modelData
        Accessible.description: day.description
        Accessible.focused: day.hasKeys

        SpokenFocus {
            isHere: day.hasKeys
        }
    }
}
