pragma ComponentBehavior: Bound

import QtQuick

/// The place of something that exists only while it is needed: a field, or a popup. As high as that,
/// which takes its width from here. When it goes, the keyboard focus is where it was before. (In Qt
/// 6.4 a Loader refuses components that are bound to their context.)
Item {
    id: place

    /// Whether it is needed.
    property bool active: false
    default property Component component
    /// What is there now, or null.
    property QtObject item: null

    property Item focusBefore: null

    function make() {
        focusBefore = Window.activeFocusItem;
        item = component.createObject(place);
    }

    function drop() {
        // A popup has let go of the focus by now; a field may have lost it to another.
        const givesFocusBack = !(item instanceof Item) || item.activeFocus;
        item.parent = null;
        item.destroy();
        item = null;
        if (givesFocusBack)
            focusBefore?.forceActiveFocus();
    }

    implicitHeight: (item as Item)?.implicitHeight ?? 0

    onActiveChanged: active ? make() : drop()
}
