pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import TimeTracker.Views.Controls

/// A button without chrome: its whole rectangle takes clicks, and a little around a small one (see
/// ClickArea). Its user gives `contentItem` and shows a disabled state. `text` is its accessible
/// name. A click never moves the focus to it, Tab does.
T.AbstractButton {
    id: control

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
    Accessible.name: text
    Accessible.onPressAction: if (enabled)
        clicked()

    ButtonKeys {
    }

    LazyFocusRing {
    }
}
