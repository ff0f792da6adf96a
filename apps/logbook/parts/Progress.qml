// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import Logbook

/** How far something is. */
ProgressBar {
    id: root

    required property string label

    implicitHeight: Theme.unit
    Accessible.name: label

    background: Rectangle {
        radius: height / 2
        color: Theme.line
    }
    contentItem: Item {
        clip: true

        Rectangle {
            id: bar

            width: parent.width * (root.indeterminate ? 0.3 : root.visualPosition)
            height: parent.height
            radius: height / 2
            color: Theme.accent

            NumberAnimation on x {
                running: root.visible && root.indeterminate && Preferences.animated
                from: -bar.width
                to: root.width
                duration: 1600
                loops: Animation.Infinite
                onStopped: bar.x = 0
            }
        }
    }
}
