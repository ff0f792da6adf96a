// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import Logbook

/** A line of text that can be changed. */
TextField {
    id: root

    /** What it is for; there is a label beside it, or the placeholder says so. */
    required property string label

    implicitHeight: Theme.touch
    leftPadding: 1.5 * Theme.unit
    rightPadding: 1.5 * Theme.unit
    font.pixelSize: Theme.body
    color: Theme.text
    placeholderTextColor: Theme.faint
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentInk
    selectByMouse: true
    Accessible.name: label

    background: Rectangle {
        radius: Theme.radius
        color: Theme.surface
        border {
            width: root.activeFocus ? 2 : 1
            color: root.activeFocus ? Theme.accent : Theme.outline
        }
    }
}
