pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Model
import TimeTracker.Views.Controls
import TimeTracker.Views.Sidebar

/// A month, Monday first. Picking a day is left to the owner: the mark follows `selectedDate`.
Item {
    id: calendar

    required property Clock clock
    required property double selectedDate

    readonly property real padding: 12
    readonly property real spacing: 8

    signal dateSelected(date: double)

    implicitWidth: 180
    implicitHeight: grid.y + grid.height + padding

    CalendarViewModel {
        id: viewModel

        clock: calendar.clock
        selectedDate: calendar.selectedDate
    }

    component ChevronButton: SymbolButton {
        symbolSize: 10
        symbolColor: Theme.primary
    }

    Item {
        id: header

        x: calendar.padding + 4
        y: calendar.padding
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
            text: "Forrige måned"
            symbol: "chevron.left"
            onClicked: viewModel.previousMonth()
        }

        TextLabel {
            id: title

            objectName: "monthTitle"
            anchors.left: previousMonth.right
            anchors.leftMargin: 2
            anchors.right: nextMonth.left
            anchors.rightMargin: 2
            anchors.verticalCenter: parent.verticalCenter
            text: viewModel.title
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
            text: "Næste måned"
            symbol: "chevron.right"
            onClicked: viewModel.nextMonth()
        }
    }

    Row {
        id: headings

        anchors.top: header.bottom
        anchors.topMargin: calendar.spacing
        x: calendar.padding
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

    Item {
        id: grid

        readonly property real rowHeight: 22
        readonly property real rowSpacing: 2

        objectName: "monthGrid"
        anchors.top: headings.bottom
        anchors.topMargin: calendar.spacing
        x: calendar.padding
        width: calendar.width - 2 * x
        height: Math.ceil(days.count / 7) * (rowHeight + rowSpacing) - rowSpacing

        Repeater {
            id: days

            model: viewModel.daysInMonth

            DayCell {
                required property int index
                required property double date

                objectName: "dayCell"
                // In the middle of its seventh of the width, on whole pixels.
                x: Math.round((index % 7 + 0.5) * grid.width / 7 - width / 2)
                y: Math.floor(index / 7) * (grid.rowHeight + grid.rowSpacing)
                visible: day > 0
                onVisibleChanged: if (!visible)
                    focus = false
                onTap: calendar.dateSelected(date)
            }
        }
    }
}
