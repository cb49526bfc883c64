pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import TimeTracker.Views.Controls

/// A narrow scroll bar over the right edge of a list, there only while there is something to scroll.
T.ScrollBar {
    id: bar

    implicitWidth: 6
    padding: 1
    minimumSize: Math.min(1, 16 / Math.max(1, height))
    visible: size < 1

    Accessible.ignored: true

    contentItem: Rectangle {
        implicitWidth: 4
        radius: 2
        color: Theme.tertiary
        opacity: bar.hovered || bar.pressed ? 1 : 0.5
    }
}
