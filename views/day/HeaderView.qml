pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import TimeTracker.Model
import TimeTracker.Timer
import TimeTracker.Views.Controls
import TimeTracker.Views.Day

/// The strip above the day: start/pause, the date with its steps, and the billable switch.
Rectangle {
    id: header

    required property TimerManager timerManager
    required property DayTasks tasks

    readonly property string dateText: viewModel.dateText

    signal stopAll
    signal startFirst

    implicitHeight: Math.max(startButton.height, navigation.height) + 12 + 12 + 2
    color: Theme.controlBackground

    HeaderViewModel {
        id: viewModel

        timerManager: header.timerManager
        tasks: header.tasks
        dateFont: Qt.font({
            family: Application.font.family,
            pixelSize: 16,
            weight: Font.Medium
        })
        dateRoom: middle.width - previousDay.width - nextDay.width - 2 * navigation.spacing
        onStopAll: header.stopAll()
        onStartFirst: header.startFirst()
    }

    component ChevronButton: SymbolButton {
        width: 32
        height: 32
        symbolSize: 14
        symbolColor: Theme.primary
    }

    // A radio button of Qt's own: another button cannot take that role.
    component Segment: T.RadioButton {
        id: segment

        readonly property real radius: 6

        width: billableSwitch.width / 2
        height: implicitContentHeight + 12
        topPadding: 6
        bottomPadding: 6
        focusPolicy: Qt.TabFocus
        Accessible.name: text
        Accessible.onPressAction: if (enabled)
            clicked()
        Accessible.onToggleAction: if (enabled)
            clicked()

        ButtonKeys {
        }

        LazyFocusRing {
        }

        contentItem: TextLabel {
            text: segment.text
            horizontalAlignment: Text.AlignHCenter
            font.pixelSize: 11
            font.weight: Font.Medium
            color: segment.checked ? "white" : Theme.primary
            Accessible.ignored: true
        }
    }

    Item {
        id: content

        anchors.fill: parent
        anchors.leftMargin: 16
        anchors.rightMargin: 16
        anchors.topMargin: 12 + 2
        anchors.bottomMargin: 12

        SymbolButton {
            id: startButton

            objectName: "startPauseButton"
            anchors.verticalCenter: parent.verticalCenter
            width: 44
            height: 44
            enabled: viewModel.isButtonEnabled
            opacity: viewModel.isButtonEnabled ? 1 : 0.5
            label: viewModel.helpText
            symbol: header.timerManager.isAnyTaskRunning ? "pause.fill" : "play.fill"
            symbolSize: 20
            symbolColor: "white"
            circleColor: header.timerManager.isAnyTaskRunning ? Theme.brandBackground : Theme.brandAccent
            onClicked: viewModel.startOrPause()
        }

        // Around the button: a disabled one says why, too.
        HelpArea {
            anchors.fill: startButton
            text: viewModel.helpText
        }

        // The flexible spacers, the gaps beside them and the date between them.
        Item {
            id: middle

            anchors.left: startButton.right
            anchors.right: billableSwitch.left
            height: parent.height

            Row {
                id: navigation

                objectName: "dateNavigation"
                anchors.centerIn: parent
                spacing: 8

                ChevronButton {
                    id: previousDay

                    objectName: "previousDay"
                    anchors.verticalCenter: parent.verticalCenter
                    label: "Forrige dag"
                    symbol: "chevron.left"
                    onClicked: header.timerManager.goToPreviousDay()
                }

                TextLabel {
                    id: date

                    objectName: "dateText"
                    anchors.verticalCenter: parent.verticalCenter
                    width: viewModel.dateWidth
                    text: viewModel.shownDate
                    Accessible.name: viewModel.dateText
                    wrapMode: Text.Wrap
                    horizontalAlignment: Text.AlignHCenter
                    font.pixelSize: viewModel.datePixelSize
                    font.weight: Font.Medium
                }

                ChevronButton {
                    id: nextDay

                    objectName: "nextDay"
                    anchors.verticalCenter: parent.verticalCenter
                    label: "Næste dag"
                    symbol: "chevron.right"
                    onClicked: header.timerManager.goToNextDay()
                }
            }
        }

        Item {
            id: billableSwitch

            objectName: "billableSwitch"
            anchors.right: parent.right
            anchors.verticalCenter: parent.verticalCenter
            width: 150
            height: actual.height

            Rectangle {
                anchors.fill: parent
                radius: 6
                color: Theme.separator
                opacity: 0.3
            }

            // The selected half: round at the switch's end, square in its middle.
            Rectangle {
                objectName: "selectedSegment"
                x: header.timerManager.showBillableTime ? width : 0
                width: parent.width / 2
                height: parent.height
                radius: 6
                color: Theme.brandAccent

                Rectangle {
                    x: header.timerManager.showBillableTime ? 0 : width
                    width: parent.width / 2
                    height: parent.height
                    color: parent.color
                }
            }

            Segment {
                id: actual

                objectName: "actualSegment"
                text: "Faktisk"
                checked: !header.timerManager.showBillableTime
                onClicked: header.timerManager.showBillableTime = false
            }

            Segment {
                objectName: "billableSegment"
                anchors.right: parent.right
                text: "Fakturerbar"
                checked: header.timerManager.showBillableTime
                onClicked: header.timerManager.showBillableTime = true
            }
        }
    }
}
