pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls

/// A text label on one line, unless its user gives more, that elides where it is too long; then a
/// tooltip shows the whole text while the pointer rests on it.
TextLabel {
    id: label

    maximumLineCount: 1
    elide: Text.ElideRight

    HoverHandler {
        id: hover

        enabled: label.truncated
    }

    LazyHelpTip {
        text: label.text
        isNeeded: hover.hovered
    }
}
