pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Model
import TimeTracker.Views.Controls
import TimeTracker.Views.Sidebar

/// The templates panel.
Panel {
    id: panel

    readonly property TemplateListViewModel templates: viewModel as TemplateListViewModel

    title: "Skabeloner"
    addName: "Ny skabelon"
    emptyText: "Ingen skabeloner"

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
            text: panel.templates.newTemplateName
            onTextChanged: panel.templates.newTemplateName = text
            onAccepted: panel.templates.addTemplate()
            Accessible.name: placeholderText

            Connections {
                target: panel.templates

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
            canAdd: panel.templates.canAdd
            onAdd: panel.templates.addTemplate()
            onCancel: panel.templates.cancelAdding()
        }
    }

    entry: TemplateButton {
        required property TaskTemplate object

        width: ListView.view.width
        taskTemplate: object
        onTap: panel.templates.addTask(name)
        onDeleteRequested: panel.templates.deleteTemplate(object)
    }
}
