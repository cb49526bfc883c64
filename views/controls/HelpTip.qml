pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import TimeTracker.Views.Controls

/// A tooltip of its parent item: below it, or above it where the window ends. Create it when it is
/// about to be needed (see LazyHelpTip); it shows itself after 600 ms.
T.ToolTip {
    id: tip

    /// Text wider than this wraps.
    readonly property real maximumWidth: Math.min(320, parent.Window.width - 2 * margins - leftPadding - rightPadding)

    readonly property real gap: 4

    function place() {
        const below = parent.height + gap;
        const room = parent.Window.height - parent.mapToItem(null, 0, 0).y - margins;
        y = below + height <= room ? below : -height - gap;
    }

    visible: true
    delay: 600
    timeout: -1
    margins: 4
    padding: 6
    topPadding: 4
    bottomPadding: 4
    x: 0
    implicitWidth: Math.min(implicitContentWidth, maximumWidth) + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    // Escape belongs to the views.
    closePolicy: T.Popup.CloseOnPressOutsideParent

    onAboutToShow: place()
    onHeightChanged: place()

    contentItem: Text {
        objectName: "helpTip"
        text: tip.text
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        font.pixelSize: 11
        renderType: Text.NativeRendering
        color: Theme.primary
    }

    background: Rectangle {
        radius: 4
        color: Theme.textBackground
        border.color: Theme.separator
    }
}
