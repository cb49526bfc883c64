pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Model
import TimeTracker.Views.Controls
import TimeTracker.Views.Sidebar

/// The project codes panel.
Panel {
    id: panel

    required property ModelContext modelContext

    title: "Projektkoder"
    addName: "Ny projektkode"
    emptyText: "Ingen projektkoder"

    viewModel: ProjectCodeListViewModel {
        id: projectCodes

        modelContext: panel.modelContext
    }

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
                text: projectCodes.newCode
                onTextChanged: projectCodes.newCode = text

                Connections {
                    target: projectCodes

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
                text: projectCodes.newName
                onTextChanged: projectCodes.newName = text
                onAccepted: projectCodes.addProjectCode()
            }
        }

        FormButtons {
            anchors.right: parent.right
            spacing: 8
            addName: "Tilføj projektkode"
            canAdd: projectCodes.canAdd
            onAdd: projectCodes.addProjectCode()
            onCancel: projectCodes.cancelAdding()
        }
    }

    entry: ProjectCodeRow {
        required property ProjectCode object

        width: ListView.view.width
        projectCode: object
        onDeleteRequested: projectCodes.deleteProjectCode(object)
    }
}
