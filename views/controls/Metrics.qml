pragma Singleton

import QtQml

/// The numbers of the layout that recur, in pixels. What only one view has stands there.
QtObject {
    /// From the left and right edges of the header and the footer to what they hold.
    readonly property int stripMargin: 16
    /// From any other edge of an area to what it holds.
    readonly property int padding: 12
    /// Between two things beside or below each other.
    readonly property int spacing: 8
    /// Height of the bar in the accent's colour at the window's upper edge.
    readonly property int accentBarHeight: 2
    /// Corner radius of an entry, a badge and a field.
    readonly property int cornerRadius: 4
    /// Time in milliseconds that a row takes to come, to go and to move.
    readonly property int rowAnimation: 250
}
