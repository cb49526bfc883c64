pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import TimeTracker.Views.Controls
import TimeTracker.Views.Sidebar

/// A section of the side column: a title with a plus button, a form while one is open, and the
/// records. The list scrolls in what height is left; where title, form and one entry do not fit,
/// the section scrolls as a whole.
Flickable {
    id: section

    required property SectionViewModel viewModel
    required property string title
    /// Accessible name of the plus button.
    required property string addName
    /// What stands in the list's place while there are no records.
    required property string emptyText
    /// One record.
    required property Component entry
    /// Fields and buttons for a new record.
    required property Component form

    readonly property real bodyHeight: emptyLabel.visible ? emptyLabel.height : list.contentHeight
    // An entry on one line can be seen whole. The padding below gives way to it.
    readonly property real leastBodyHeight: emptyLabel.visible ? emptyLabel.height : list.count > 0 ? 26 : 0

    implicitWidth: 180
    implicitHeight: list.y + bodyHeight + Metrics.padding
    contentWidth: width
    contentHeight: Math.max(height, list.y + leastBodyHeight)
    boundsBehavior: Flickable.StopAtBounds
    clip: true

    T.ScrollBar.vertical: OverlayScrollBar {
    }

    FocusReveal {
    }

    Item {
        id: header

        objectName: "sectionHeader"
        x: Metrics.padding
        y: Metrics.padding
        width: section.width - 2 * Metrics.padding
        height: Math.max(titleLabel.height, plus.height)

        ElidingLabel {
            id: titleLabel

            objectName: "sectionTitle"
            anchors.left: parent.left
            anchors.leftMargin: Metrics.spacing
            anchors.right: plus.left
            anchors.rightMargin: Metrics.spacing
            anchors.verticalCenter: parent.verticalCenter
            text: section.title
            font.pixelSize: 12
            font.weight: Font.DemiBold
            color: Theme.secondary
        }

        SymbolButton {
            id: plus

            objectName: "plusButton"
            anchors.right: parent.right
            anchors.rightMargin: Metrics.spacing
            anchors.verticalCenter: parent.verticalCenter
            label: section.addName
            symbol: "plus"
            symbolSize: 10
            onClicked: section.viewModel.startAdding()
        }
    }

    OnDemand {
        id: formPlace

        anchors.top: header.bottom
        anchors.topMargin: active ? Metrics.spacing : 0
        x: Metrics.padding + Metrics.spacing
        width: section.width - 2 * x
        active: section.viewModel.isAdding
        component: section.form
    }

    TextLabel {
        id: emptyLabel

        objectName: "emptyText"
        x: Metrics.padding + Metrics.spacing
        y: list.y
        width: section.width - 2 * x
        visible: section.viewModel.showEmptyText
        text: section.emptyText
        wrapMode: Text.Wrap
        font.pixelSize: 11
        color: Theme.tertiary
    }

    PlainList {
        id: list

        objectName: "sectionList"
        anchors.top: formPlace.bottom
        anchors.topMargin: Metrics.spacing
        x: Metrics.padding
        width: section.width - 2 * x
        height: Math.max(section.leastBodyHeight, section.contentHeight - y - Metrics.padding)
        visible: !emptyLabel.visible
        spacing: 2
        model: section.viewModel.rows
        delegate: section.entry

        Accessible.name: section.title

        // At once, and not when the next frame is drawn: only so does the entry that has moved under
        // a resting pointer learn of it.
        Connections {
            target: section.viewModel.rows

            function onCountChanged() {
                list.forceLayout();
            }
        }

        Connections {
            target: section.viewModel

            function onAdded(index: int) {
                list.positionViewAtIndex(index, ListView.Contain);
            }
        }
    }
}
