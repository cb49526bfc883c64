pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls
import TimeTracker.Views.Row

/// One task of the day: start/stop, name, time, hours, delete. Name and time are edited in place.
FocusScope {
    id: row

    required property TaskRowViewModel viewModel
    required property bool isSelected
    /// Whether the day's keys act upon this row, without its having the keyboard focus.
    property bool hasKeys: false

    readonly property bool isHovered: hover.hovered || activeFocus
    readonly property real spacing: 12
    /// What picker and name share, with the gaps between them and behind the name.
    readonly property real sharedWidth: time.x - picker.x
    /// What the name needs so that none of its words is broken.
    readonly property real nameNeed: NameFit.widestWord(row.viewModel.shownName, nameText.font) + pencilGap + pencil.width
    readonly property real pencilGap: 6
    /// What time and hours need; the name and a badge keep a little for themselves.
    readonly property real figuresWidth: time.fullWidth + hours.fullWidth
    readonly property real figuresRoom: deleteButton.x - picker.x - picker.minimumWidth - 40 - 4 * spacing
    readonly property real figuresScale: figuresRoom > 0 ? Math.min(1, figuresRoom / figuresWidth) : 1

    signal toggle
    signal deleteRequested
    signal select

    implicitHeight: Math.max(startButton.height, picker.height, name.height, time.height, deleteButton.height) + 16

    Accessible.role: Accessible.ListItem
    Accessible.name: row.viewModel.shownName
    Accessible.selectable: true
    Accessible.selected: isSelected
    Accessible.focused: hasKeys
    Accessible.description: row.viewModel.isActive ? "Kører" : ""
    Accessible.onPressAction: if (enabled)
        select()

    Connections {
        target: row.viewModel

        function onNameEditingStarted() {
            (nameField.item as RowField).begin();
        }

        function onTimeEditingStarted() {
            (timeField.item as RowField).begin();
        }
    }

    SpokenFocus {
        isHere: row.hasKeys
    }

    HoverHandler {
        id: hover
    }

    Rectangle {
        objectName: "rowBackground"
        anchors.fill: parent
        visible: row.viewModel.isActive || row.isSelected
        radius: 6
        color: Theme.brandAccent
        opacity: row.viewModel.isActive ? 0.1 : row.isSelected ? 0.06 : 0
    }

    Rectangle {
        objectName: "rowBorder"
        anchors.fill: parent
        visible: row.isSelected
        radius: 6
        color: "transparent"
        opacity: 0.5
        // Whole pixels, alike on all sides: 1.5 at a scale of 2, and as near as can be at others.
        border.width: Math.round(1.5 * Screen.devicePixelRatio) / Screen.devicePixelRatio
        border.pixelAligned: false
        border.color: Theme.brandAccent
    }

    SymbolButton {
        id: startButton

        objectName: "startButton"
        anchors.left: parent.left
        anchors.leftMargin: Metrics.padding
        anchors.verticalCenter: parent.verticalCenter
        width: 28
        height: 28
        label: (row.viewModel.isActive ? "Sæt på pause: " : "Start ") + row.viewModel.shownName
        symbol: row.viewModel.isActive ? "pause.fill" : "play.fill"
        symbolSize: 14
        symbolColor: row.viewModel.isActive ? Theme.brandBackground : Theme.brandAccent
        circleColor: Qt.alpha(symbolColor, 0.15)
        onClicked: row.toggle()
    }

    ProjectCodePicker {
        id: picker

        objectName: "picker"
        anchors.left: startButton.right
        anchors.leftMargin: row.spacing
        anchors.verticalCenter: parent.verticalCenter
        // It gets half of what it shares with the name, or less where that would break a word of the name.
        maximumWidth: Math.min((row.sharedWidth - 3 * row.spacing) / 2, row.sharedWidth - 2 * row.spacing - row.nameNeed)
        selectedCode: row.viewModel.projectCode
        codeMenu: row.viewModel.codeMenu
        onCodeChosen: code => row.viewModel.projectCode = code
    }

    // The name takes the width that the others leave, whether shown or edited. Behind it lies a
    // spacer of no width between two gaps, of which one closes where a word would be broken.
    Item {
        id: name

        objectName: "nameGroup"
        anchors.left: picker.right
        anchors.leftMargin: row.spacing
        anchors.right: time.left
        anchors.rightMargin: row.spacing + Math.max(0, Math.min(row.spacing, row.sharedWidth - picker.width - 2 * row.spacing - row.nameNeed))
        anchors.verticalCenter: parent.verticalCenter
        height: nameField.active ? nameField.height : Math.max(nameText.height, pencil.height)

        MouseArea {
            objectName: "nameArea"
            anchors.fill: parent
            enabled: !row.viewModel.isEditingName
            onClicked: row.select()
        }

        ElidingLabel {
            id: nameText

            objectName: "nameText"
            anchors.verticalCenter: parent.verticalCenter
            // The text's own width would not do, as it changes when a word is broken.
            width: Math.max(0, name.width - pencil.width - row.pencilGap)
            visible: !row.viewModel.isEditingName
            text: row.viewModel.shownName
            wrapMode: Text.Wrap
            maximumLineCount: 5
            font.pixelSize: 14
            color: row.viewModel.isNamed ? Theme.primary : Theme.secondary
        }

        SymbolButton {
            id: pencil

            objectName: "pencil"
            anchors.left: nameText.left
            anchors.leftMargin: Math.ceil(nameText.contentWidth) + row.pencilGap
            anchors.verticalCenter: parent.verticalCenter
            visible: !row.viewModel.isEditingName
            label: "Rediger navn"
            symbol: "pencil.circle.fill"
            symbolSize: 14
            symbolColor: Qt.alpha(Theme.brandAccent, 0.8)
            isShown: row.isHovered
            // The button itself stays opaque, as assistive technology does not see what is transparent.
            contentItem.opacity: isShown ? 1 : 0
            onClicked: row.viewModel.startNameEditing()
        }

        OnDemand {
            id: nameField

            anchors.verticalCenter: parent.verticalCenter
            width: parent.width
            active: row.viewModel.isEditingName

            RowField {
                objectName: "nameField"
                width: nameField.width
                placeholderText: "Opgavenavn"
                text: row.viewModel.editedName
                onTextChanged: row.viewModel.editedName = text
                onAccepted: row.viewModel.commitNameEdit()
                Accessible.name: "Opgavenavn"
            }
        }
    }

    Item {
        id: time

        readonly property real fullWidth: timeField.active ? 70 : Math.max(70, timeText.implicitWidth)

        objectName: "time"
        anchors.right: hours.left
        anchors.rightMargin: row.spacing
        anchors.verticalCenter: parent.verticalCenter
        width: fullWidth * row.figuresScale
        height: timeField.active ? timeField.height : timeText.height

        PlainButton {
            id: timeText

            // Screen readers speak each new name of what has the keyboard focus.
            property string heldName

            objectName: "timeText"
            width: parent.width
            visible: !row.viewModel.isEditingTime
            label: row.viewModel.displayedTime
            Accessible.name: row.viewModel.isActive && heldName || label
            Accessible.description: help.text
            onActiveFocusChanged: heldName = activeFocus ? label : ""
            onClicked: row.viewModel.startTimeEditing()

            LazyHelpTip {
                id: help

                text: "Klik for at redigere tid"
                isNeeded: timeText.hovered && !timeText.pressed
            }

            contentItem: MonospacedLabel {
                text: row.viewModel.displayedTime
                font.pixelSize: 14
                color: Theme.secondary
                horizontalAlignment: Text.AlignRight
                Accessible.ignored: true
            }
        }

        OnDemand {
            id: timeField

            width: parent.width
            active: row.viewModel.isEditingTime

            RowField {
                objectName: "timeField"
                width: timeField.width
                placeholderText: "00:00:00"
                font.family: Theme.monospacedFamily
                horizontalAlignment: TextInput.AlignRight
                text: row.viewModel.editedTime
                onTextChanged: row.viewModel.editedTime = text
                onAccepted: row.viewModel.commitTimeEdit()
                Accessible.name: "Tid"
            }
        }
    }

    MonospacedLabel {
        id: hours

        readonly property real fullWidth: Math.max(50, implicitWidth)

        objectName: "hoursText"
        anchors.right: deleteButton.left
        anchors.rightMargin: row.spacing
        anchors.verticalCenter: parent.verticalCenter
        width: fullWidth * row.figuresScale
        text: row.viewModel.displayedHours
        font.pixelSize: 14
        color: Theme.secondary
        horizontalAlignment: Text.AlignRight
    }

    SymbolButton {
        id: deleteButton

        objectName: "deleteButton"
        anchors.right: parent.right
        anchors.rightMargin: Metrics.padding
        anchors.verticalCenter: parent.verticalCenter
        opacity: row.viewModel.isActive ? 0.5 : 1
        label: "Slet " + row.viewModel.shownName
        symbol: "minus.circle.fill"
        symbolSize: 16
        symbolColor: Qt.alpha(Theme.red, 0.7)
        onClicked: row.deleteRequested()
    }
}
