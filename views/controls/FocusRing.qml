pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls

/// A ring around its parent, clear of the content (see LazyFocusRing).
Rectangle {
    /// Corner radius of the content.
    required property real contentRadius

    anchors.fill: parent
    anchors.margins: -3
    z: -1
    radius: contentRadius + 3
    color: "transparent"
    border.width: 2
    border.color: Theme.brandAccent
}
