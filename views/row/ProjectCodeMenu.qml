pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import TimeTracker.Model
import TimeTracker.Views.Controls
import TimeTracker.Views.Row

/// The menu of all project codes, and none. Nothing behind it takes keys or clicks while it is
/// open.
T.Menu {
    id: menu

    /// The checked code's text, or undefined for none.
    required property var selectedCode
    required property ProjectCodeMenuModel codeMenu
    /// Whether it opens on the checked entry, for those who do not point at one.
    property bool opensAtChoice: false

    readonly property real widestEntry: 320
    readonly property real codesWidth: codes.count > 0 ? codeMenu.textWidth(none.font) : 0
    /// What an entry has beside its text: padding, a space, the checkmark.
    readonly property real entryMargins: 12 + 8 + 16 + 8

    signal codeChosen(var code)

    component EntryContent: Item {
        id: content

        required property string text
        required property font font
        required property bool isChecked

        implicitWidth: label.implicitWidth + 8 + check.width
        implicitHeight: label.implicitHeight

        ElidingLabel {
            id: label

            anchors.left: parent.left
            anchors.right: check.left
            anchors.rightMargin: Metrics.spacing
            anchors.verticalCenter: parent.verticalCenter
            text: content.text
            font: content.font
            Accessible.ignored: true
        }

        SymbolImage {
            id: check

            objectName: "checkmark"
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            visible: content.isChecked
            name: "checkmark"
            fontSize: 12
            color: Theme.primary
        }
    }

    component Entry: T.MenuItem {
        id: entry

        /// Leave `text` empty: Qt makes a shortcut of an "&" in it (see PlainButton).
        property string label

        objectName: "menuEntry"
        implicitWidth: implicitContentWidth + leftPadding + rightPadding
        implicitHeight: implicitContentHeight + topPadding + bottomPadding
        leftPadding: Metrics.padding
        rightPadding: 8
        font.pixelSize: 13
        topPadding: 5
        bottomPadding: 5
        // An entry that is hovered is highlighted.
        hoverEnabled: lastInput.isPointer
        Accessible.name: label
        Accessible.checkable: true
        Accessible.checked: checked
        Accessible.onPressAction: triggered()
        // The Space that has opened the menu and is still held chooses nothing.
        Keys.onPressed: event => event.accepted = event.isAutoRepeat && event.key === Qt.Key_Space

        contentItem: EntryContent {
            text: entry.label
            font: entry.font
            isChecked: entry.checked
        }

        background: Rectangle {
            color: entry.highlighted ? Qt.alpha(Theme.brandAccent, 0.15) : "transparent"
        }
    }

    title: "Projektkode"
    modal: true
    dim: false
    focus: true
    margins: 4
    padding: 1
    topPadding: 4
    bottomPadding: 4
    implicitWidth: contentWidth + leftPadding + rightPadding
    implicitHeight: contentHeight + topPadding + bottomPadding
    contentWidth: Math.min(Math.max(none.implicitWidth, codesWidth + entryMargins), widestEntry)

    // The menu itself cannot be given one.
    onAboutToShow: contentItem.parent.Accessible.name = title
    onOpened: if (opensAtChoice)
        currentIndex = codeMenu.entryOf(selectedCode)

    background: Rectangle {
        radius: 6
        color: Theme.textBackground
        border.color: Theme.separator
    }

    contentItem: ListView {
        implicitHeight: contentHeight
        model: menu.contentModel
        currentIndex: menu.currentIndex
        highlightMoveDuration: 0
        interactive: contentHeight > height
        // Assistive technology finds only what is made and, since Qt 6.8, not left out of the picture.
        displayMarginBeginning: menu.count * none.implicitHeight
        displayMarginEnd: displayMarginBeginning
        clip: true
        boundsBehavior: Flickable.StopAtBounds
    }

    LastInput {
        id: lastInput

        isPointer: !menu.opensAtChoice
    }

    Shortcut {
        sequence: "Home"
        onActivated: menu.currentIndex = 0
    }

    Shortcut {
        sequence: "End"
        onActivated: menu.currentIndex = menu.codeMenu.lastEntry()
    }

    Entry {
        id: none

        label: "Ingen"
        checked: menu.selectedCode === undefined
        onTriggered: menu.codeChosen(undefined)
    }

    T.MenuSeparator {
        objectName: "menuDivider"
        implicitHeight: visible ? 9 : 0
        visible: codes.count > 0

        contentItem: Item {
            Divider {
                anchors.verticalCenter: parent.verticalCenter
                width: parent.width
            }
        }
    }

    Instantiator {
        id: codes

        model: menu.codeMenu.codes
        delegate: Entry {
            required property ProjectCode object

            label: object?.displayName ?? ""
            checked: menu.selectedCode === object?.code
            onTriggered: menu.codeChosen(object.code)
        }
        onObjectAdded: (index, entry) => menu.insertItem(index + 2, entry)
        onObjectRemoved: (index, entry) => menu.removeItem(entry)
    }
}
