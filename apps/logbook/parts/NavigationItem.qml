// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Logbook

/** The way to one page. */
TabButton {
    id: root

    required property int page
    required property string symbol

    Layout.fillWidth: true
    Layout.preferredWidth: 1
    implicitHeight: 8 * Theme.unit
    padding: 0
    checked: Navigation.page === page
    Accessible.name: text
    // Qt 6.4 ticks it by itself, and no more.
    Accessible.onPressAction: clicked()
    Accessible.onToggleAction: clicked()
    onClicked: Navigation.page = page

    contentItem: Column {
        spacing: Theme.half / 2
        topPadding: Theme.half

        Item {
            anchors.horizontalCenter: parent.horizontalCenter
            width: 7 * Theme.unit
            height: 4 * Theme.unit

            Rectangle {
                anchors.fill: parent
                radius: height / 2
                color: root.checked ? Theme.chosen : root.hovered ? Theme.hover : "transparent"
            }
            Symbol {
                anchors.centerIn: parent
                drawing: root.symbol
                color: root.checked ? Theme.accent : Theme.faint
            }
        }
        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            width: root.width - Theme.unit
            horizontalAlignment: Text.AlignHCenter
            elide: Text.ElideRight
            text: root.text
            font.pixelSize: Theme.small
            font.weight: root.checked ? Font.DemiBold : Font.Normal
            color: root.checked ? Theme.text : Theme.faint
            Accessible.ignored: true
        }
    }
    background: FocusRing {
        control: root
        anchors.margins: Theme.half
    }
}
