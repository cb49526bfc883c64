pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls
import TimeTracker.Views.Row

/// Shows a task's project code, and opens the menu of all codes.
Item {
    id: picker

    /// The code's text, or undefined for none. An empty text is a code, too.
    required property var selectedCode
    required property ProjectCodeMenuModel codeMenu
    /// A longer code elides, but for its first letters.
    property real maximumWidth: 160
    /// The least that it takes, whatever its maximum.
    readonly property real minimumWidth: hasCode ? Math.min(badge.implicitWidth, 36) : tag.width

    readonly property bool hasCode: selectedCode !== undefined
    readonly property string codeText: hasCode ? selectedCode : ""

    /// The user has chosen a code's text, or none (undefined).
    signal codeChosen(var code)

    function open(atChoice: bool) {
        menu.opensAtChoice = atChoice;
        menu.active = true;
    }

    implicitWidth: hasCode ? badge.width : tag.width
    implicitHeight: hasCode ? badge.height : tag.height
    activeFocusOnTab: true

    Accessible.role: Accessible.ButtonMenu
    Accessible.name: "Projektkode: " + (hasCode ? codeText : "Ingen")
    Accessible.onPressAction: if (enabled)
        open(true)
    Keys.onSpacePressed: open(true)

    ButtonKeys {
    }

    MouseArea {
        anchors.fill: parent
        containmentMask: ClickArea {
        }
        onClicked: picker.open(false)
    }

    LazyFocusRing {
        isNeeded: picker.activeFocus
        radius: Metrics.cornerRadius
    }

    SymbolImage {
        id: tag

        objectName: "tag"
        visible: !picker.hasCode
        name: "tag"
        fontSize: 12
        color: Theme.secondary
        opacity: 0.6
    }

    CodeBadge {
        id: badge

        objectName: "badge"
        visible: picker.hasCode
        width: Math.max(picker.minimumWidth, Math.min(implicitWidth, picker.maximumWidth))
        radius: Metrics.cornerRadius
        code: picker.codeText
        fontSize: 10
        horizontalPadding: 6
        verticalPadding: 2
        isSpoken: false
    }

    OnDemand {
        id: menu

        property bool opensAtChoice: false

        ProjectCodeMenu {
            opensAtChoice: menu.opensAtChoice
            y: picker.height + 4
            selectedCode: picker.selectedCode
            codeMenu: picker.codeMenu
            onCodeChosen: code => picker.codeChosen(code)
            onClosed: menu.active = false
            // It is shown only once it has its parent, which Qt 6.8 wants.
            Component.onCompleted: open()
        }
    }
}
