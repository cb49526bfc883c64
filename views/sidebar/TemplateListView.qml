pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Model
import TimeTracker.Views.Controls
import TimeTracker.Views.Sidebar

/// The templates panel.
Panel {
    id: panel

    required property ModelContext modelContext

    signal addTask(name: string)

    title: "Skabeloner"
    addName: "Ny skabelon"
    emptyText: "Ingen skabeloner"

    viewModel: TemplateListViewModel {
        id: templates

        modelContext: panel.modelContext
    }

    form: Item {
        id: addRow

        width: parent?.width ?? 0
        implicitHeight: nameField.height

        TextEntry {
            id: nameField

            objectName: "nameField"
            anchors.left: parent.left
            anchors.right: buttons.left
            anchors.rightMargin: 4
            isFilled: true
            placeholderText: "Navn"
            font.pixelSize: 11
            text: templates.newTemplateName
            onTextChanged: templates.newTemplateName = text
            onAccepted: templates.addTemplate()
            Accessible.name: placeholderText

            Connections {
                target: templates

                function onAddingStarted() {
                    nameField.forceActiveFocus();
                }
            }
        }

        FormButtons {
            id: buttons

            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            spacing: 4
            addName: "Tilføj skabelon"
            canAdd: templates.canAdd
            onAdd: templates.addTemplate()
            onCancel: templates.cancelAdding()
        }
    }

    entry: TemplateButton {
        required property TaskTemplate object

        width: ListView.view.width
        taskTemplate: object
        onTap: panel.addTask(name)
        onDeleteRequested: templates.deleteTemplate(object)
    }
}
