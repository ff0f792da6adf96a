// SPDX-License-Identifier: MIT
import QtQuick
import Logbook

/** A figure and what it is. */
Item {
    id: root

    required property string name
    required property string value
    /** For a voice, where the value is an abbreviation. */
    property string spoken: value

    implicitWidth: Math.max(label.implicitWidth, figure.implicitWidth)
    implicitHeight: figure.y + figure.implicitHeight
    Accessible.role: Accessible.StaticText
    Accessible.name: qsTr("%1: %2", "a figure").arg(name).arg(spoken)

    PlainText {
        id: label

        width: parent.width
        text: root.name
        wrapMode: Text.NoWrap
        elide: Text.ElideRight
        color: Theme.faint
        font.pixelSize: Theme.small
        Accessible.ignored: true
    }
    PlainText {
        id: figure

        y: label.implicitHeight + Theme.half / 2
        width: parent.width
        text: root.value || "–"
        wrapMode: Text.NoWrap
        elide: Text.ElideRight
        font.pixelSize: Theme.figure
        font.weight: Font.DemiBold
        Accessible.ignored: true
    }
}
