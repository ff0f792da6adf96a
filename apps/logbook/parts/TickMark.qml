// SPDX-License-Identifier: MIT
import QtQuick
import Logbook

/** The square of a yes or no. */
Rectangle {
    id: root

    property bool ticked: false

    implicitWidth: 2.5 * Theme.unit
    implicitHeight: 2.5 * Theme.unit
    radius: Theme.half
    color: ticked ? Theme.accent : Theme.surface
    border {
        width: ticked ? 0 : 1
        color: Theme.outline
    }

    Symbol {
        visible: root.ticked
        anchors.centerIn: parent
        drawing: "check"
        size: 2.25 * Theme.unit
        color: Theme.accentInk
    }
}
