pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls

/// The delete mark of a list's entry. One that has just moved under a resting pointer takes no
/// clicks: they are meant for the entry that was there before.
SymbolButton {
    symbol: "xmark.circle.fill"
    symbolSize: 12
    symbolColor: Qt.alpha(Theme.secondary, 0.6)
    // The button itself stays opaque, as assistive technology does not see what is transparent.
    contentItem.opacity: isShown ? 1 : 0

    SecondClickGuard {
    }
}
