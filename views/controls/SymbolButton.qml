pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls

/// A plain button that shows a symbol, on a circle or on nothing. Its size is the symbol's unless
/// its user gives another.
PlainButton {
    id: control

    property string symbol
    property real symbolSize: 13
    property color symbolColor: Theme.brandAccent
    /// Colour of the circle behind the symbol.
    property color circleColor: "transparent"

    radius: Math.min(width, height) / 2

    contentItem: SymbolImage {
        name: control.symbol
        fontSize: control.symbolSize
        color: control.symbolColor
        circleColor: control.circleColor
    }
}
