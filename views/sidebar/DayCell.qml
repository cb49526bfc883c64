pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls

/// One day of the calendar. What is behind the selected one is the calendar's.
PlainButton {
    id: cell

    /// The day of the month.
    required property int day
    /// The date in full.
    required property string name
    required property bool isSelected
    required property bool isToday
    /// Whether Tab stops here. Of the calendar's days, it is at one.
    required property bool isTabStop

    readonly property color foregroundColor: isSelected ? "white" : isToday ? Theme.brandAccent : Theme.primary

    signal tap

    radius: height / 2
    label: name
    focus: isTabStop
    focusPolicy: isTabStop ? Qt.TabFocus : Qt.NoFocus
    Accessible.selectable: true
    Accessible.selected: isSelected
    onClicked: tap()
    // Its ring is shown also when the focus has come along with the selected day.
    onActiveFocusChanged: if (activeFocus)
        focusReason = Qt.TabFocusReason

    // A bare text will do: there are many cells, and the button says what assistive technology is told.
    contentItem: Text {
        text: cell.day
        textFormat: Text.PlainText
        renderType: Text.NativeRendering
        horizontalAlignment: Text.AlignHCenter
        verticalAlignment: Text.AlignVCenter
        font.pixelSize: 11
        font.weight: cell.isToday ? Font.Bold : Font.Normal
        color: cell.foregroundColor
    }
}
