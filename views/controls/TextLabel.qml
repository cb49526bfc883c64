pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls

/// A text as it is, never markup, exposed to assistive technology. Inside a button that bears the
/// same text set `Accessible.ignored: true`.
Text {
    textFormat: Text.PlainText
    renderType: Text.NativeRendering
    font.pixelSize: 13
    color: Theme.primary
    // Texts that run from right to left are aligned to the left, too.
    horizontalAlignment: Text.AlignLeft

    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
