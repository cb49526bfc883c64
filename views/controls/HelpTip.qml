pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import TimeTracker.Views.Controls

/// A tooltip of its parent item: below it, or above it where the window ends. Create it when it is
/// about to be needed (see LazyHelpTip); it shows itself after 600 ms. An endless text is shown as far
/// as the window holds it.
T.ToolTip {
    id: tip

    readonly property font textFont: Qt.font({
        pixelSize: 11
    })
    /// What the window holds.
    readonly property real room: parent.Window.width - 2 * margins - leftPadding - rightPadding
    readonly property int maximumLines: (parent.Window.height - 2 * margins - topPadding - bottomPadding) / Math.ceil(metrics.lineSpacing)
    /// Whether the window is too low for the text at the usual width: wrapped lines are seldom full.
    readonly property bool isEndless: metrics.advanceWidth(text) > 0.8 * 320 * maximumLines
    /// Text wider than this wraps.
    readonly property real maximumWidth: isEndless ? room : Math.min(320, room)

    readonly property real gap: 4

    function place() {
        const below = parent.height + gap;
        const room = parent.Window.height - parent.mapToItem(null, 0, 0).y - margins;
        y = below + height <= room ? below : -height - gap;
    }

    visible: true
    // It may cover the pointer, and must not take it from what it explains.
    enabled: false
    delay: 600
    timeout: -1
    margins: 4
    padding: 6
    topPadding: 4
    bottomPadding: 4
    x: 0
    implicitWidth: Math.min(implicitContentWidth, maximumWidth) + leftPadding + rightPadding
    implicitHeight: implicitContentHeight + topPadding + bottomPadding
    // The views decide what Escape does.
    closePolicy: T.Popup.CloseOnPressOutsideParent

    onAboutToShow: place()
    onHeightChanged: place()

    contentItem: Text {
        objectName: "helpTip"
        text: tip.text
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        maximumLineCount: Math.max(1, tip.maximumLines)
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignLeft
        font: tip.textFont
        renderType: Text.NativeRendering
        color: Theme.primary
    }

    FontMetrics {
        id: metrics

        font: tip.textFont
    }

    background: Rectangle {
        radius: 4
        color: Theme.textBackground
        border.color: Theme.separator
    }
}
