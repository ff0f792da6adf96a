// SPDX-License-Identifier: MIT
import QtQuick
import Logbook

/** All that is done with a computer. */
Item {
    id: root

    readonly property string title: qsTr("Computer")

    EmptyState {
        anchors.centerIn: parent
        width: Math.min(parent.width - 4 * Theme.unit, Theme.textWidth)
        icon: "computer"
        title: root.title
    }
}
