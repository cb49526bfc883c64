pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Model
import TimeTracker.Views.Controls
import TimeTracker.Views.Sidebar

/// The project codes section.
Section {
    id: section

    readonly property ProjectCodeListViewModel projectCodes: viewModel as ProjectCodeListViewModel

    title: "Projektkoder"
    addName: "Ny projektkode"
    emptyText: "Ingen projektkoder"

    component Field: TextEntry {
        isFilled: true
        font.pixelSize: 11
        Accessible.name: placeholderText
    }

    form: Column {
        width: parent?.width ?? 0
        spacing: 4

        Item {
            width: parent.width
            height: codeField.height

            Field {
                id: codeField

                objectName: "codeField"
                width: 60
                placeholderText: "Kode"
                text: section.projectCodes.newCode
                onTextChanged: section.projectCodes.newCode = text

                Connections {
                    target: section.projectCodes

                    function onAddingStarted() {
                        codeField.forceActiveFocus();
                    }
                }
            }

            Field {
                objectName: "nameField"
                anchors.left: codeField.right
                anchors.leftMargin: 4
                anchors.right: parent.right
                placeholderText: "Navn (valgfrit)"
                text: section.projectCodes.newName
                onTextChanged: section.projectCodes.newName = text
                onAccepted: section.projectCodes.addProjectCode()
            }
        }

        FormButtons {
            anchors.right: parent.right
            spacing: 8
            addName: "Tilføj projektkode"
            canAdd: section.projectCodes.canAdd
            onAdd: section.projectCodes.addProjectCode()
            onCancel: section.projectCodes.cancelAdding()
        }
    }

    entry: ProjectCodeRow {
        required property ProjectCode object

        width: ListView.view.width
        projectCode: object
        onDeleteRequested: section.projectCodes.deleteProjectCode(object)
    }
}
