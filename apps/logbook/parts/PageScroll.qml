// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Logbook

/** A page that is longer than the window. The keyboard scrolls to what it reaches. */
Flickable {
    id: root

    default property alias content: column.data
    property real widest: 116 * Theme.unit
    property real margin: width < Theme.textWidth ? 2 * Theme.unit : 3 * Theme.unit

    contentWidth: width
    contentHeight: column.height + 2 * margin
    boundsBehavior: Flickable.StopAtBounds
    clip: true
    ScrollBar.vertical: ScrollBar {
        Accessible.name: qsTr("Scroll")
    }

    /** Brings an item into view. */
    function reveal(item: Item) {
        const top = item.mapToItem(contentItem, 0, 0).y;
        const bottom = top + item.height;
        if (top < contentY + margin)
            contentY = Math.max(0, top - margin);
        else if (bottom > contentY + height - margin)
            contentY = Math.min(Math.max(0, contentHeight - height), bottom - height + margin);
    }

    Connections {
        target: root.Window.window
        function onActiveFocusItemChanged() {
            const item = root.Window.activeFocusItem;
            for (let each = item; each; each = each.parent) {
                if (each === column) {
                    root.reveal(item);
                    return;
                }
            }
        }
    }

    ColumnLayout {
        id: column

        x: (root.width - width) / 2
        y: root.margin
        width: Math.min(root.width - 2 * root.margin, root.widest)
        spacing: 2 * Theme.unit
    }
}
