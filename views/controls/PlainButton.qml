pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import TimeTracker.Views.Controls

/// A button without chrome: its whole rectangle takes clicks, and its user gives `contentItem` and
/// shows a disabled state. `text` is its accessible name. A click never moves the focus to it, Tab
/// does.
T.AbstractButton {
    id: control

    /// Corner radius of the content, which the focus ring follows.
    property real radius: 4

    implicitWidth: implicitContentWidth + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    focusPolicy: Qt.TabFocus
    hoverEnabled: true

    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: if (enabled)
        clicked()

    ButtonKeys {
    }

    LazyFocusRing {
    }
}
