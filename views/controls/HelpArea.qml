pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls

/// An area that shows a tooltip while the pointer rests on it, even if the control inside it is
/// disabled.
Item {
    id: area

    /// The tooltip's text; none is shown while it is empty.
    property string text

    HoverHandler {
        id: hover
    }

    LazyHelpTip {
        text: area.text
        isNeeded: hover.hovered && area.text !== ""
    }
}
