pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls

/// A project code on a coloured ground. What is too long elides.
Rectangle {
    id: badge

    required property string code
    required property int fontSize
    required property real horizontalPadding
    required property real verticalPadding
    /// Whether assistive technology is told the code here, and not by what the badge is a part of.
    property bool isSpoken: true

    implicitWidth: label.implicitWidth + 2 * horizontalPadding
    implicitHeight: label.implicitHeight + 2 * verticalPadding
    color: Qt.alpha(Theme.brandAccent, 0.15)

    ElidingLabel {
        id: label

        objectName: "badgeText"
        x: badge.horizontalPadding
        y: badge.verticalPadding
        width: badge.width - 2 * badge.horizontalPadding
        text: badge.code
        font.pixelSize: badge.fontSize
        font.weight: Font.Medium
        color: Theme.brandAccent
        Accessible.ignored: !badge.isSpoken
    }
}
