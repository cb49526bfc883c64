pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls
import TimeTracker.Views.Day
import TimeTracker.Views.Sidebar

/// The main window's content: one day, and the side column.
FocusScope {
    id: content

    required property ContentViewModel viewModel

    readonly property real minimumWidth: 550
    readonly property real minimumHeight: 350

    focus: true
    // Escape leads from a control back to the day.
    Keys.onEscapePressed: dayFocus.forceActiveFocus()

    Connections {
        target: content.viewModel

        function onTaskAdded(index: int) {
            list.show(index);
        }

        function onDayChanged() {
            list.showBeginning();
        }

        function onKeyboardWanted() {
            dayFocus.forceActiveFocus();
        }
    }

    ContentKeys {
        viewModel: content.viewModel
    }

    FocusFallback {
        id: dayFocus

        objectName: "dayFocus"
        anchors.fill: mainColumn
        focus: true

        SpokenDay {
            name: content.viewModel.header.dateText
            description: content.viewModel.isEmpty ? emptyDay.text : ""
            hasKeys: dayFocus.activeFocus && content.viewModel.selectedTaskIndex < 0
        }
    }

    Item {
        id: mainColumn

        // Nothing behind an open alert may act, also when assistive technology asks.
        enabled: !alert.item
        anchors.left: parent.left
        anchors.right: sideColumn.left
        height: parent.height

        HeaderView {
            id: header

            objectName: "header"
            width: parent.width
            viewModel: content.viewModel.header
        }

        Divider {
            id: headerDivider

            anchors.top: header.bottom
            width: parent.width
        }

        TaskListView {
            id: list

            objectName: "taskList"
            anchors.top: headerDivider.bottom
            anchors.bottom: footerDivider.top
            width: parent.width
            visible: !emptyDay.visible
            viewModel: content.viewModel.list
            selectedTaskIndex: content.viewModel.selectedTaskIndex
            hasKeys: dayFocus.activeFocus
            isAnimated: content.viewModel.isAnimated
        }

        EmptyDayView {
            id: emptyDay

            objectName: "emptyDay"
            anchors.fill: list
            // It appears once the last row has faded out.
            visible: content.viewModel.isEmpty && !(content.viewModel.isAnimated && list.hasRows)
        }

        Divider {
            id: footerDivider

            anchors.bottom: footer.top
            width: parent.width
        }

        FooterView {
            id: footer

            objectName: "footer"
            anchors.bottom: parent.bottom
            width: parent.width
            viewModel: content.viewModel.footer
        }
    }

    Rectangle {
        id: sideColumn

        objectName: "sideColumn"
        enabled: !alert.item
        anchors.right: parent.right
        width: 180
        height: parent.height
        color: Theme.controlBackground

        // The sections share what the calendar leaves.
        readonly property real sectionHeight: (height - calendar.height - 2) / 2

        CalendarView {
            id: calendar

            objectName: "calendar"
            width: parent.width
            height: implicitHeight
            viewModel: content.viewModel.calendar
        }

        Divider {
            id: templatesDivider

            anchors.top: calendar.bottom
            width: parent.width
            opacity: 0.5
        }

        TemplateListView {
            id: templates

            objectName: "templates"
            anchors.top: templatesDivider.bottom
            width: parent.width
            height: Math.floor(sideColumn.sectionHeight)
            viewModel: content.viewModel.templates
        }

        Divider {
            id: codesDivider

            anchors.top: templates.bottom
            width: parent.width
            opacity: 0.5
        }

        ProjectCodeListView {
            objectName: "projectCodes"
            anchors.top: codesDivider.bottom
            anchors.bottom: parent.bottom
            width: parent.width
            viewModel: content.viewModel.projectCodes
        }
    }

    Rectangle {
        objectName: "accentBar"
        width: parent.width
        height: Metrics.accentBarHeight
        color: Theme.brandAccent
    }

    OnDemand {
        id: alert

        active: content.viewModel.showDeleteConfirmation

        DeleteAlert {
            message: content.viewModel.deleteMessage
            onCancelled: content.viewModel.cancelDelete()
            onDeletionConfirmed: content.viewModel.performDelete()
            // Assistive technology may give the focus to what is behind.
            onActiveFocusChanged: if (opened && alert.active && content.Window.active && !activeFocus)
                forceActiveFocus()
            Component.onCompleted: open()
        }
    }
}
