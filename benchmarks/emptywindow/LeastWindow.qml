pragma ComponentBehavior: Bound

import QtQuick
import QtQuick.Templates as T

/// The empty window with the least that the program's layout asks of Qt: its fonts, a text in each,
/// and one button.
EmptyWindow {
    component Sample: Text {
        text: "Ny opgave 01:23:45"
        renderType: Text.NativeRendering
    }

    T.AbstractButton {
        width: 44
        height: 44
    }

    Column {
        Repeater {
            model: [[9, Font.Medium], [10, Font.Normal], [11, Font.Normal], [11, Font.Medium],
                [11, Font.Bold], [12, Font.DemiBold], [13, Font.Medium], [14, Font.Normal],
                [16, Font.Medium]]

            Sample {
                required property var modelData

                font.pixelSize: modelData[0]
                font.weight: modelData[1]
            }
        }

        Repeater {
            model: [Font.Normal, Font.DemiBold]

            Sample {
                required property int modelData

                font.family: "monospace"
                font.pixelSize: 14
                font.weight: modelData
            }
        }
    }
}
