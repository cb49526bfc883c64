pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls
import TimeTracker.Views.Sidebar

/// A month, Monday first. Picking a day is left to the owner: the mark follows the selected date.
Item {
    id: calendar

    required property CalendarViewModel viewModel

    implicitWidth: 180
    implicitHeight: grid.y + grid.height + Metrics.padding

    component ChevronButton: SymbolButton {
        symbolSize: 10
        symbolColor: Theme.primary
    }

    Item {
        id: header

        x: Metrics.padding + 4
        y: Metrics.padding
        width: calendar.width - 2 * x
        height: Math.max(previousMonth.height, titleMetrics.height)

        // The title's own height is less when it is made to fit.
        FontMetrics {
            id: titleMetrics

            font: title.font
        }

        ChevronButton {
            id: previousMonth

            objectName: "previousMonth"
            anchors.verticalCenter: parent.verticalCenter
            label: "Forrige måned"
            symbol: "chevron.left"
            onClicked: calendar.viewModel.previousMonth()
        }

        TextLabel {
            id: title

            objectName: "monthTitle"
            anchors.left: previousMonth.right
            anchors.leftMargin: Metrics.spacing
            anchors.right: nextMonth.left
            anchors.rightMargin: Metrics.spacing
            anchors.verticalCenter: parent.verticalCenter
            text: calendar.viewModel.title
            fontSizeMode: Text.HorizontalFit
            minimumPixelSize: 8
            horizontalAlignment: Text.AlignHCenter
            font.pixelSize: 12
            font.weight: Font.DemiBold
        }

        ChevronButton {
            id: nextMonth

            objectName: "nextMonth"
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            label: "Næste måned"
            symbol: "chevron.right"
            onClicked: calendar.viewModel.nextMonth()
        }
    }

    Row {
        id: headings

        anchors.top: header.bottom
        anchors.topMargin: Metrics.spacing
        x: Metrics.padding
        width: calendar.width - 2 * x

        Repeater {
            model: ["Ma", "Ti", "On", "To", "Fr", "Lø", "Sø"]

            TextLabel {
                required property string modelData

                objectName: "dayOfWeek"
                width: headings.width / 7
                text: modelData
                horizontalAlignment: Text.AlignHCenter
                font.pixelSize: 9
                font.weight: Font.Medium
                color: Theme.secondary
            }
        }
    }

    // The scope keeps the focus on the one day that Tab stops at.
    FocusScope {
        id: grid

        readonly property real rowHeight: 22
        readonly property real rowSpacing: 2
        readonly property real cellWidth: 22

        /// In the middle of its seventh of the width, on whole pixels.
        function cellX(index: int): real {
            return Math.round((index % 7 + 0.5) * width / 7 - cellWidth / 2);
        }

        function cellY(index: int): real {
            return Math.floor(index / 7) * (rowHeight + rowSpacing);
        }

        objectName: "monthGrid"
        anchors.top: headings.bottom
        anchors.topMargin: Metrics.spacing
        x: Metrics.padding
        width: calendar.width - 2 * x
        height: Math.ceil(days.count / 7) * (rowHeight + rowSpacing) - rowSpacing

        Rectangle {
            readonly property int index: calendar.viewModel.daysInMonth.selectedIndex

            objectName: "selectedDay"
            x: grid.cellX(index)
            y: grid.cellY(index)
            width: grid.cellWidth
            height: grid.rowHeight
            visible: index >= 0
            radius: height / 2
            color: Theme.brandAccent
        }

        Repeater {
            id: days

            model: calendar.viewModel.daysInMonth

            DayCell {
                required property int index
                required property double date

                objectName: "dayCell"
                x: grid.cellX(index)
                y: grid.cellY(index)
                width: grid.cellWidth
                height: grid.rowHeight
                visible: day > 0
                onTap: calendar.viewModel.dateSelected(date)
            }
        }
    }
}
