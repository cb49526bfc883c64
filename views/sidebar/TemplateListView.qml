pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Model
import TimeTracker.Views.Controls
import TimeTracker.Views.Sidebar

/// The templates section.
Section {
    id: section

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
            text: section.templates.newTemplateName
            onTextChanged: section.templates.newTemplateName = text
            onAccepted: section.templates.addTemplate()
            Accessible.name: placeholderText

            Connections {
                target: section.templates

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
            canAdd: section.templates.canAdd
            onAdd: section.templates.addTemplate()
            onCancel: section.templates.cancelAdding()
        }
    }

    entry: TemplateButton {
        required property TaskTemplate object

        width: ListView.view.width
        taskTemplate: object
        onTap: section.templates.addTask(name)
        onDeleteRequested: section.templates.deleteTemplate(object)
    }
}
