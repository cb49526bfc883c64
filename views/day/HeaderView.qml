pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T
import TimeTracker.Views.Controls
import TimeTracker.Views.Day

/// The strip above the day: start/pause, the date with its steps, and the billable switch.
Rectangle {
    id: header

    required property HeaderViewModel viewModel

    implicitHeight: Math.max(startButton.height, navigation.height) + 2 * Metrics.padding + Metrics.accentBarHeight
    color: Theme.controlBackground

    Binding {
        target: header.viewModel
        property: "dateFont"
        value: Qt.font({
            family: Application.font.family,
            pixelSize: 16,
            weight: Font.Medium
        })
    }

    Binding {
        target: header.viewModel
        property: "dateRoom"
        value: middle.width - previousDay.width - nextDay.width - 2 * navigation.spacing
    }

    component ChevronButton: SymbolButton {
        width: 32
        height: 32
        symbolSize: 14
        symbolColor: Theme.primary
    }

    // This is Qt's own radio button, as no other button can take that role.
    component Segment: T.RadioButton {
        id: segment

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
            isNeeded: segment.visualFocus
            radius: 6
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
        anchors.leftMargin: Metrics.stripMargin
        anchors.rightMargin: Metrics.stripMargin
        anchors.topMargin: Metrics.padding + Metrics.accentBarHeight
        anchors.bottomMargin: Metrics.padding

        SymbolButton {
            id: startButton

            objectName: "startPauseButton"
            anchors.verticalCenter: parent.verticalCenter
            width: 44
            height: 44
            enabled: header.viewModel.isButtonEnabled
            opacity: header.viewModel.isButtonEnabled ? 1 : 0.5
            label: header.viewModel.helpText
            symbol: header.viewModel.isAnyTaskRunning ? "pause.fill" : "play.fill"
            symbolSize: 20
            symbolColor: "white"
            circleColor: header.viewModel.isAnyTaskRunning ? Theme.brandBackground : Theme.brandAccent
            onClicked: header.viewModel.startOrPause()
        }

        // The area lies around the button, because a disabled one shows its tooltip, too.
        HelpArea {
            anchors.fill: startButton
            text: header.viewModel.helpText
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
                spacing: Metrics.spacing

                ChevronButton {
                    id: previousDay

                    objectName: "previousDay"
                    anchors.verticalCenter: parent.verticalCenter
                    label: "Forrige dag"
                    symbol: "chevron.left"
                    onClicked: header.viewModel.goToPreviousDay()
                }

                TextLabel {
                    id: date

                    objectName: "dateText"
                    anchors.verticalCenter: parent.verticalCenter
                    width: header.viewModel.dateWidth
                    text: header.viewModel.shownDate
                    Accessible.name: header.viewModel.dateText
                    wrapMode: Text.Wrap
                    horizontalAlignment: Text.AlignHCenter
                    font.pixelSize: header.viewModel.datePixelSize
                    font.weight: Font.Medium
                }

                ChevronButton {
                    id: nextDay

                    objectName: "nextDay"
                    anchors.verticalCenter: parent.verticalCenter
                    label: "Næste dag"
                    symbol: "chevron.right"
                    onClicked: header.viewModel.goToNextDay()
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

            // The selected half is round at the switch's end and square in its middle.
            Rectangle {
                objectName: "selectedSegment"
                x: header.viewModel.showBillableTime ? width : 0
                width: parent.width / 2
                height: parent.height
                radius: 6
                color: Theme.brandAccent

                Rectangle {
                    x: header.viewModel.showBillableTime ? 0 : width
                    width: parent.width / 2
                    height: parent.height
                    color: parent.color
                }
            }

            Segment {
                id: actual

                objectName: "actualSegment"
                text: "Faktisk"
                checked: !header.viewModel.showBillableTime
                onClicked: header.viewModel.showBillableTime = false
            }

            Segment {
                objectName: "billableSegment"
                anchors.right: parent.right
                text: "Fakturerbar"
                checked: header.viewModel.showBillableTime
                onClicked: header.viewModel.showBillableTime = true
            }
        }
    }
}
