pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import TimeTracker.Views.Controls

/// A list that scrolls. Tab goes through its entries, and what has the focus is brought into sight.
ListView {
    clip: true
    boundsBehavior: Flickable.StopAtBounds
    keyNavigationEnabled: false
    currentIndex: -1
    // An entry beyond either edge, for Tab to go on to; more would only delay the first frame. Not by
    // the cache: its entries are made in idle time, which may come too late, or in the middle of the
    // end.
    displayMarginBeginning: 40
    displayMarginEnd: 40
    cacheBuffer: 0

    Accessible.role: Accessible.List

    T.ScrollBar.vertical: OverlayScrollBar {
    }

    FocusReveal {
    }
}
