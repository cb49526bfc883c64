pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls

/// The background of a control: a ring around it while the keyboard has brought the focus there.
/// Give the control insets of -3, so that the ring stands clear of its content.
Rectangle {
    required property bool isShown
    /// Corner radius of the content.
    required property real contentRadius

    visible: isShown
    radius: contentRadius + 3
    color: "transparent"
    border.width: 2
    border.color: Theme.brandAccent
}
