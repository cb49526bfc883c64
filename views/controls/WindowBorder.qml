pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls

/// The border of a window that has no frame of the desktop's.
Rectangle {
    anchors.fill: parent
    color: "transparent"
    border.color: Theme.separator
}
