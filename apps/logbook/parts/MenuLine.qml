// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import Logbook

/** A line of a list that opens. */
ItemDelegate {
    id: root

    implicitHeight: Theme.touch
    leftPadding: 1.5 * Theme.unit
    rightPadding: 1.5 * Theme.unit
    font.pixelSize: Theme.body
    Accessible.name: text
    Accessible.onPressAction: clicked()

    contentItem: PlainText {
        text: root.text
        font.weight: root.checked ? Font.DemiBold : Font.Normal
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        wrapMode: Text.NoWrap
        Accessible.ignored: true
    }
    background: FocusRing {
        control: root

        Rectangle {
            anchors.fill: parent
            radius: Theme.half
            color: root.highlighted || root.hovered ? Theme.hover : "transparent"
        }
    }
}
