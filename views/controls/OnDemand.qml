pragma ComponentBehavior: Bound

import QtQuick

/// The place of something that exists only while it is needed. As high as that, which takes its
/// width from here. (In Qt 6.4 a Loader refuses components that are bound to their context.)
Item {
    id: place

    /// Whether it is needed.
    property bool active: false
    default property Component component
    /// What is there now, or null.
    property QtObject item: null

    function make() {
        item = component.createObject(place);
    }

    function drop() {
        item.parent = null;
        item.destroy();
        item = null;
    }

    implicitHeight: childrenRect.height

    onActiveChanged: active ? make() : drop()
}
