import QtQuick

Window {
    width: 650
    height: 450
    visible: true
    title: "TULO Time Tracker"
}
