pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls

/// The delete mark of a list's entry.
SymbolButton {
    symbol: "xmark.circle.fill"
    symbolSize: 12
    symbolColor: Qt.alpha(Theme.secondary, 0.6)
    // Not the button's own opacity: assistive technology does not see what is transparent.
    contentItem.opacity: isShown ? 1 : 0
}
