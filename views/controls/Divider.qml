pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls

/// A horizontal line, one pixel high and as wide as its user makes it.
Rectangle {
    implicitWidth: 1
    implicitHeight: 1
    color: Theme.separator
}
