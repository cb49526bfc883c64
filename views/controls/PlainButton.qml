pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import TimeTracker.Views.Controls

/// A button without chrome: its whole rectangle takes clicks, and a little around a small one (see
/// ClickArea). Its user gives `contentItem` and shows a disabled state. A click never moves the focus
/// to it, Tab does.
T.AbstractButton {
    id: control

    /// What the button is called, for assistive technology and for content that shows it. Leave
    /// `text` empty: Qt makes a shortcut of an "&" in it, and names that users enter have one.
    property string label
    /// Corner radius of the content, which the focus ring follows.
    property real radius: 4
    /// Whether it is drawn, which its user sees to. While it is not, it takes no clicks and touches
    /// either, but Tab and assistive technology find it.
    property bool isShown: true

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    focusPolicy: Qt.TabFocus
    hoverEnabled: true
    containmentMask: ClickArea {
        isOpen: control.isShown
    }

    Accessible.role: Accessible.Button
    Accessible.name: label
    // Qt 6.4 does not tell a disabled button from any other.
    Accessible.description: enabled ? "" : "Ikke tilgængelig"
    Accessible.onPressAction: if (enabled)
        clicked()

    ButtonKeys {
    }

    LazyFocusRing {
        isNeeded: control.visualFocus
        radius: control.radius
    }
}
