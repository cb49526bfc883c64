pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Model
import TimeTracker.Timer
import TimeTracker.Views.Controls
import TimeTracker.Views.Day
import TimeTracker.Views.Sidebar

/// The main window's content: one day, and the side column.
FocusScope {
    id: content

    required property Clock clock
    required property TimerManager timerManager
    required property ModelContext modelContext

    readonly property real minimumWidth: 550
    readonly property real minimumHeight: 350

    focus: true
    // From a control back to the day.
    Keys.onEscapePressed: dayFocus.forceActiveFocus()

    ContentViewModel {
        id: viewModel

        timerManager: content.timerManager
        modelContext: content.modelContext
        onTaskAdded: index => list.show(index)
        onDayChanged: list.showBeginning()
        onKeyboardWanted: dayFocus.forceActiveFocus()
    }

    ContentKeys {
        content: content
        viewModel: viewModel
    }

    FocusFallback {
        id: dayFocus

        objectName: "dayFocus"
        anchors.fill: mainColumn
        focus: true

        // To assistive technology that is the day, which the keys change, until a row is selected.
        // Another day is another pane: of Qt 6.4, screen readers do not understand a new name.
        Repeater {
            model: [header.dateText]

            Item {
                id: dayPane

                required property string modelData
                readonly property bool hasKeys: dayFocus.activeFocus && viewModel.selectedTaskIndex < 0

                objectName: "dayPane"
                anchors.fill: parent
                Accessible.role: Accessible.Pane
                Accessible.name: modelData
                Accessible.description: viewModel.tasks.isEmpty ? emptyDay.text : ""
                Accessible.focused: hasKeys

                SpokenFocus {
                    isHere: dayPane.hasKeys
                }
            }
        }
    }

    Item {
        id: mainColumn

        // Behind an open alert nothing acts, whoever asks.
        enabled: !alert.item
        anchors.left: parent.left
        anchors.right: sideColumn.left
        height: parent.height

        HeaderView {
            id: header

            objectName: "header"
            width: parent.width
            timerManager: content.timerManager
            tasks: viewModel.tasks
            onStopAll: viewModel.stopAll()
            onStartFirst: viewModel.startFirst()
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
            tasks: viewModel.tasks
            timerManager: content.timerManager
            modelContext: content.modelContext
            selectedTaskIndex: viewModel.selectedTaskIndex
            hasKeys: dayFocus.activeFocus
            isAnimated: viewModel.isAnimated
            onDeleteRequested: task => viewModel.confirmDelete(task)
            onSelectTask: index => viewModel.selectTask(index)
        }

        EmptyDayView {
            id: emptyDay

            objectName: "emptyDay"
            anchors.fill: list
            // The last row fades out first.
            visible: viewModel.tasks.isEmpty && !(viewModel.isAnimated && list.hasRows)
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
            tasks: viewModel.tasks
            tick: content.timerManager.tick
            showBillableTime: content.timerManager.showBillableTime
            onAddTask: viewModel.addTask()
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

        // The panels share what the calendar leaves.
        readonly property real panelHeight: (height - calendar.height - 2) / 2

        CalendarView {
            id: calendar

            objectName: "calendar"
            width: parent.width
            height: implicitHeight
            clock: content.clock
            selectedDate: content.timerManager.selectedDate
            onDateSelected: date => content.timerManager.navigateToDate(date)
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
            height: Math.floor(sideColumn.panelHeight)
            modelContext: content.modelContext
            onAddTask: name => viewModel.addTaskFromTemplate(name)
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
            modelContext: content.modelContext
        }
    }

    Rectangle {
        objectName: "accentBar"
        width: parent.width
        height: 2
        color: Theme.brandAccent
    }

    OnDemand {
        id: alert

        active: viewModel.showDeleteConfirmation

        DeleteAlert {
            message: viewModel.deleteMessage
            onCancelled: viewModel.cancelDelete()
            onDeletionConfirmed: viewModel.performDelete()
            // Assistive technology may give the focus to what is behind.
            onActiveFocusChanged: if (opened && alert.active && content.Window.active && !activeFocus)
                forceActiveFocus()
            Component.onCompleted: open()
        }
    }
}
