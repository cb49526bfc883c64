pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import TimeTracker.Views.Controls

/// A one-line text field without a border. Return emits `accepted()`. Line breaks in a pasted text
/// stay in `text` and are drawn as blanks. Its user gives `Accessible.name`.
T.TextField {
    id: field

    /// Draws a rounded background and pads the text by 6 and 4.
    property bool isFilled: false

    implicitWidth: contentWidth + leftPadding + rightPadding
    implicitHeight: contentHeight + topPadding + bottomPadding
    leftPadding: isFilled ? 6 : 0
    rightPadding: leftPadding
    topPadding: isFilled ? 4 : 0
    bottomPadding: topPadding
    font.pixelSize: 13
    renderType: Text.NativeRendering
    color: Theme.primary
    placeholderTextColor: Theme.tertiary
    selectionColor: Theme.brandAccent
    selectedTextColor: "white"
    selectByMouse: true
    // Texts that run from right to left are aligned to the left, too.
    horizontalAlignment: TextInput.AlignLeft
    verticalAlignment: TextInput.AlignVCenter

    Accessible.role: Accessible.EditableText

    // What the editor leaves over (Up, Down, Left at the start, Return) would steer the view around.
    Keys.priority: Keys.AfterItem
    Keys.onPressed: event => event.accepted = [Qt.Key_Up, Qt.Key_Down, Qt.Key_Left, Qt.Key_Right,
        Qt.Key_Return, Qt.Key_Enter].includes(event.key) && !(event.modifiers & Qt.ControlModifier)

    background: Rectangle {
        visible: field.isFilled
        radius: Metrics.cornerRadius
        color: Theme.textBackground
    }

    Text {
        x: field.leftPadding
        y: field.topPadding
        width: field.width - field.leftPadding - field.rightPadding
        height: field.height - field.topPadding - field.bottomPadding
        visible: field.length === 0 && field.preeditText === ""
        text: field.placeholderText
        textFormat: Text.PlainText
        renderType: Text.NativeRendering
        font: field.font
        color: field.placeholderTextColor
        horizontalAlignment: field.horizontalAlignment
        verticalAlignment: field.verticalAlignment
        elide: Text.ElideRight
    }
}
