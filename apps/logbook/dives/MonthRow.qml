// SPDX-License-Identifier: MIT
import QtQuick
import Logbook

/** The heading of a month. */
Rectangle {
    id: root

    required property string section

    width: ListView.view ? ListView.view.width : 0
    height: text.implicitHeight + 2 * Theme.unit
    color: Theme.window

    PlainText {
        id: text

        text: Units.month(root.section)
        wrapMode: Text.NoWrap
        elide: Text.ElideRight
        font.pixelSize: Theme.small
        font.weight: Font.DemiBold
        color: Theme.faint
        Accessible.role: Accessible.Heading
        anchors {
            left: parent.left
            right: parent.right
            leftMargin: 2 * Theme.unit
            rightMargin: 2 * Theme.unit
            verticalCenter: parent.verticalCenter
        }
    }
}
