// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Templates as T
import Logbook

/** Shows which control has the keyboard. */
Item {
    id: root

    required property T.Control control
    property real radius: Theme.radius

    Rectangle {
        visible: root.control && root.control.visualFocus
        radius: root.radius + 2
        color: "transparent"
        border {
            width: 2
            color: Theme.accent
        }
        anchors {
            fill: parent
            margins: -2
        }
    }
}
