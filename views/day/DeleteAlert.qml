pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import TimeTracker.Views.Controls

/// Asks before a task is deleted. Nothing behind it takes keys or clicks while it is open.
T.Dialog {
    id: alert

    required property string message

    signal cancelled
    signal deletionConfirmed

    parent: T.Overlay.overlay
    anchors.centerIn: parent
    width: Math.min(360, parent ? parent.width - 40 : 360)
    implicitHeight: contentHeight + topPadding + bottomPadding
    padding: 20
    modal: true
    focus: true
    closePolicy: T.Popup.CloseOnEscape
    title: "Slet opgave"
    onRejected: cancelled()

    T.Overlay.modal: Rectangle {
        color: "#66000000"
    }

    background: Rectangle {
        radius: 8
        color: Theme.windowBackground
        border.color: Theme.separator
    }

    component AlertButton: PlainButton {
        id: button

        property color textColor: Theme.primary

        padding: 6
        leftPadding: 14
        rightPadding: 14

        contentItem: TextLabel {
            text: button.label
            color: button.textColor
            horizontalAlignment: Text.AlignHCenter
            Accessible.ignored: true
        }

        Rectangle {
            anchors.fill: parent
            z: -1
            radius: button.radius
            color: Theme.separator
            opacity: button.down ? 0.6 : 0.3
        }
    }

    component AlertContent: FocusScope {
        id: alertContent

        required property string title
        required property string message

        signal cancelled
        signal deletionConfirmed

        function pressFocused(event: var) {
            event.accepted = !(event.modifiers & Qt.ControlModifier);
            if (event.accepted)
                (cancelButton.activeFocus ? cancelButton : deleteButton).clicked();
        }

        implicitHeight: column.implicitHeight

        Column {
            id: column

            width: parent.width
            spacing: 12

            TextLabel {
                objectName: "alertTitle"
                width: parent.width
                text: alertContent.title
                font.weight: Font.DemiBold
                wrapMode: Text.Wrap
            }

            TextLabel {
                objectName: "alertMessage"
                width: parent.width
                text: alertContent.message
                wrapMode: Text.Wrap
                maximumLineCount: 12
                elide: Text.ElideRight
            }

            Row {
                anchors.right: parent.right
                spacing: 8
                Keys.onReturnPressed: event => alertContent.pressFocused(event)
                Keys.onEnterPressed: event => alertContent.pressFocused(event)

                AlertButton {
                    id: cancelButton

                    objectName: "cancelButton"
                    focus: true
                    label: "Annuller"
                    onClicked: alertContent.cancelled()
                }

                AlertButton {
                    id: deleteButton

                    objectName: "deleteConfirmButton"
                    label: "Slet"
                    textColor: Theme.red
                    onClicked: alertContent.deletionConfirmed()
                }
            }
        }
    }

    contentItem: AlertContent {
        focus: true
        title: alert.title
        message: alert.message
        onCancelled: alert.cancelled()
        onDeletionConfirmed: alert.deletionConfirmed()
    }
}
