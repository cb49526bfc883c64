pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Model
import TimeTracker.Timer
import TimeTracker.Views.Controls
import TimeTracker.Views.Row

/// One task of the day: start/stop, name, time, hours, delete. Name and time are edited in place.
FocusScope {
    id: row

    required property Task task
    required property TimerManager timerManager
    required property RowEdits edits
    required property ModelContext modelContext
    required property bool isActive
    required property bool isSelected
    /// Whether the day's keys act upon this row, without its having the keyboard focus.
    property bool hasKeys: false

    readonly property bool isHovered: hover.hovered || activeFocus
    readonly property real spacing: 12

    signal toggle
    signal deleteRequested
    signal select

    implicitHeight: Math.max(startButton.height, picker.height, name.height, time.height, deleteButton.height) + 16

    Accessible.role: Accessible.ListItem
    Accessible.name: viewModel.shownName
    Accessible.selectable: true
    Accessible.selected: isSelected
    Accessible.focused: hasKeys
    Accessible.description: isActive ? "Kører" : ""
    Accessible.onPressAction: if (enabled)
        select()

    TaskRowViewModel {
        id: viewModel

        task: row.task
        timerManager: row.timerManager
        edits: row.edits
        onNameEditingStarted: (nameField.item as RowField).begin()
        onTimeEditingStarted: (timeField.item as RowField).begin()
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
        visible: row.isActive || row.isSelected
        radius: 6
        color: Theme.brandAccent
        opacity: row.isActive ? 0.1 : row.isSelected ? 0.06 : 0
    }

    Rectangle {
        objectName: "rowBorder"
        anchors.fill: parent
        visible: row.isSelected
        radius: 6
        color: "transparent"
        opacity: 0.5
        border.width: 1.5
        border.pixelAligned: false
        border.color: Theme.brandAccent
    }

    SymbolButton {
        id: startButton

        objectName: "startButton"
        anchors.left: parent.left
        anchors.leftMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        width: 28
        height: 28
        label: (row.isActive ? "Sæt på pause: " : "Start ") + viewModel.shownName
        symbol: row.isActive ? "pause.fill" : "play.fill"
        symbolSize: 14
        symbolColor: row.isActive ? Theme.brandBackground : Theme.brandAccent
        circleColor: Qt.alpha(symbolColor, 0.15)
        onClicked: row.toggle()
    }

    ProjectCodePicker {
        id: picker

        objectName: "picker"
        anchors.left: startButton.right
        anchors.leftMargin: row.spacing
        anchors.verticalCenter: parent.verticalCenter
        // Half of what it shares with the name.
        maximumWidth: (time.x - startButton.x - startButton.width - 3 * row.spacing) / 2
        selectedCode: viewModel.projectCode
        modelContext: row.modelContext
        onCodeChosen: code => row.task.projectCode = code
    }

    // The name takes the width that the others leave, whether shown or edited.
    Item {
        id: name

        objectName: "nameGroup"
        anchors.left: picker.right
        anchors.leftMargin: row.spacing
        anchors.right: time.left
        anchors.rightMargin: row.spacing
        anchors.verticalCenter: parent.verticalCenter
        height: nameField.active ? nameField.height : Math.max(nameText.height, pencil.height)

        MouseArea {
            objectName: "nameArea"
            anchors.fill: parent
            enabled: !viewModel.isEditingName
            onClicked: row.select()
        }

        TextLabel {
            id: nameText

            objectName: "nameText"
            anchors.verticalCenter: parent.verticalCenter
            // Not by the text's own width, which breaking a word changes.
            width: Math.max(0, name.width - pencil.width - 6)
            visible: !viewModel.isEditingName
            text: viewModel.shownName
            wrapMode: Text.Wrap
            font.pixelSize: 14
            color: viewModel.isNamed ? Theme.primary : Theme.secondary
        }

        SymbolButton {
            id: pencil

            objectName: "pencil"
            anchors.left: nameText.left
            anchors.leftMargin: Math.ceil(nameText.contentWidth) + 6
            anchors.verticalCenter: parent.verticalCenter
            visible: !viewModel.isEditingName
            label: "Rediger navn"
            symbol: "pencil.circle.fill"
            symbolSize: 14
            symbolColor: Qt.alpha(Theme.brandAccent, 0.8)
            isShown: row.isHovered
            // Not the button's own opacity: assistive technology does not see what is transparent.
            contentItem.opacity: isShown ? 1 : 0
            onClicked: viewModel.startNameEditing()
        }

        OnDemand {
            id: nameField

            anchors.verticalCenter: parent.verticalCenter
            width: parent.width
            active: viewModel.isEditingName

            RowField {
                objectName: "nameField"
                width: nameField.width
                placeholderText: "Opgavenavn"
                text: viewModel.editedName
                onTextChanged: viewModel.editedName = text
                onAccepted: viewModel.commitNameEdit()
                Accessible.name: "Opgavenavn"
            }
        }
    }

    Item {
        id: time

        anchors.right: hours.left
        anchors.rightMargin: row.spacing
        anchors.verticalCenter: parent.verticalCenter
        width: timeField.active ? 70 : Math.max(70, timeText.implicitWidth)
        height: timeField.active ? timeField.height : timeText.height

        PlainButton {
            id: timeText

            // Screen readers speak each new name of what has the keyboard focus.
            property string heldName

            objectName: "timeText"
            width: parent.width
            visible: !viewModel.isEditingTime
            label: viewModel.displayedTime
            Accessible.name: row.isActive && heldName || label
            Accessible.description: help.text
            onActiveFocusChanged: heldName = activeFocus ? label : ""
            onClicked: viewModel.startTimeEditing()

            LazyHelpTip {
                id: help

                text: "Klik for at redigere tid"
                isNeeded: timeText.hovered && !timeText.pressed
            }

            contentItem: MonospacedLabel {
                text: viewModel.displayedTime
                font.pixelSize: 14
                color: Theme.secondary
                horizontalAlignment: Text.AlignRight
                Accessible.ignored: true
            }
        }

        OnDemand {
            id: timeField

            width: parent.width
            active: viewModel.isEditingTime

            RowField {
                objectName: "timeField"
                width: timeField.width
                placeholderText: "00:00:00"
                font.family: Theme.monospacedFamily
                horizontalAlignment: TextInput.AlignRight
                text: viewModel.editedTime
                onTextChanged: viewModel.editedTime = text
                onAccepted: viewModel.commitTimeEdit()
                Accessible.name: "Tid"
            }
        }
    }

    MonospacedLabel {
        id: hours

        objectName: "hoursText"
        anchors.right: deleteButton.left
        anchors.rightMargin: row.spacing
        anchors.verticalCenter: parent.verticalCenter
        width: 50
        text: viewModel.displayedHours
        font.pixelSize: 14
        color: Theme.secondary
        horizontalAlignment: Text.AlignRight
    }

    SymbolButton {
        id: deleteButton

        objectName: "deleteButton"
        anchors.right: parent.right
        anchors.rightMargin: 12
        anchors.verticalCenter: parent.verticalCenter
        opacity: row.isActive ? 0.5 : 1
        label: "Slet " + viewModel.shownName
        symbol: "minus.circle.fill"
        symbolSize: 16
        symbolColor: Qt.alpha(Theme.red, 0.7)
        onClicked: row.deleteRequested()
    }
}
