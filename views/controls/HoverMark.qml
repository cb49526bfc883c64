pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls

/// A button of a list's entry, the delete mark unless its user gives another symbol. While it is not
/// shown it is drawn nowhere and takes no clicks and touches, but Tab and assistive technology find
/// it.
SymbolButton {
    id: mark

    required property bool isShown

    symbol: "xmark.circle.fill"
    symbolSize: 12
    symbolColor: Qt.alpha(Theme.secondary, 0.6)
    // Not the button's own opacity: assistive technology does not see what is transparent.
    contentItem.opacity: isShown ? 1 : 0

    containmentMask: QtObject {
        function contains(point: point): bool {
            return mark.isShown && point.x >= 0 && point.y >= 0 && point.x < mark.width
                && point.y < mark.height;
        }
    }
}
