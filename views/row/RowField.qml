pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls

/// A text field that stands open in a row until Return is pressed in it.
TextEntry {
    id: field

    /// Takes the keyboard focus, ready to be typed over.
    function begin() {
        forceActiveFocus();
        selectAll();
    }

    font.pixelSize: 14
    // Escape neither ends the edit nor leaves it.
    Keys.onEscapePressed: event => event.accepted = true
}
