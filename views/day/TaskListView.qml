pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls
import TimeTracker.Views.Day
import TimeTracker.Views.Row

/// The day's rows, scrolling.
PlainList {
    id: list

    required property TaskListViewModel viewModel
    /// The selected row, or -1.
    property int selectedTaskIndex: -1
    /// Whether the day's keys act upon the selected row.
    property bool hasKeys: false
    /// Whether a row that comes or goes is seen to do so.
    required property bool isAnimated
    /// Whether a row is there, be it one that fades out.
    readonly property bool hasRows: contentItem.children.length > 0

    function show(index: int) {
        positionViewAtIndex(index, ListView.Contain);
        // The rows that this has made know their heights only afterwards.
        forceLayout();
        positionViewAtIndex(index, ListView.Contain);
        if (index === 0)
            showBeginning();
    }

    /// The list's own beginning leaves out the margin above it.
    function showBeginning() {
        positionViewAtBeginning();
        contentY = originY - topMargin;
    }

    spacing: 4
    topMargin: 4
    bottomMargin: 4
    // The current row is the one with the keyboard focus: it is kept while it is out of sight, and what
    // is typed into its field with it.
    highlightFollowsCurrentItem: false
    model: viewModel.rows

    onSelectedTaskIndexChanged: if (selectedTaskIndex >= 0)
        show(selectedTaskIndex)

    Accessible.name: "Opgaver"

    add: Transition {
        enabled: list.isAnimated

        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: Metrics.rowAnimation
            easing.type: Easing.InOutQuad
        }
    }

    remove: Transition {
        enabled: list.isAnimated

        NumberAnimation {
            property: "opacity"
            to: 0
            duration: Metrics.rowAnimation
            easing.type: Easing.InOutQuad
        }
    }

    displaced: Transition {
        enabled: list.isAnimated

        NumberAnimation {
            properties: "y"
            duration: Metrics.rowAnimation
            easing.type: Easing.InOutQuad
        }
        // An addition that was cut short leaves no half transparent row.
        NumberAnimation {
            property: "opacity"
            to: 1
            duration: Metrics.rowAnimation
        }
    }

    delegate: FocusScope {
        id: entry

        required property int index
        required property TaskRowViewModel object

        width: ListView.view.width
        height: row.implicitHeight
        onActiveFocusChanged: if (activeFocus)
            list.currentIndex = index

        RowKeeper {
            row: entry.object
        }

        TaskRowView {
            id: row

            objectName: "taskRow"
            focus: true
            x: 8
            width: parent.width - 16
            height: implicitHeight
            // A row that fades out has the index -1, as no selection has.
            enabled: entry.index >= 0
            viewModel: entry.object
            isSelected: entry.index >= 0 && entry.index === list.selectedTaskIndex
            hasKeys: isSelected && list.hasKeys
            onToggle: list.viewModel.toggle(entry.object)
            onDeleteRequested: list.viewModel.deleteRequested(entry.object)
            onSelect: list.viewModel.selectTask(entry.index)
        }
    }
}
