import QtQuick

/// The empty window with one text in it: what it costs to have fonts.
EmptyWindow {
    Text {
        text: "Ny opgave"
        renderType: Text.NativeRendering
    }
}
