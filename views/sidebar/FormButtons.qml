pragma ComponentBehavior: Bound

import QtQuick
import TimeTracker.Views.Controls

/// The end of a section's form: add it or not.
Row {
    id: buttons

    required property string addName
    required property bool canAdd

    signal add
    signal cancel

    SymbolButton {
        objectName: "addButton"
        enabled: buttons.canAdd
        opacity: buttons.canAdd ? 1 : 0.4
        label: buttons.addName
        symbol: "checkmark"
        symbolSize: 9
        symbolColor: Theme.green
        onClicked: buttons.add()
    }

    SymbolButton {
        objectName: "cancelButton"
        label: "Annuller"
        symbol: "xmark"
        symbolSize: 9
        symbolColor: Theme.red
        onClicked: buttons.cancel()
    }
}
