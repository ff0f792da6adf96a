// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import Logbook

/** A button with words. One of a group is the primary one. */
Button {
    id: root

    property bool primary: false
    /** What it does cannot be undone. */
    property bool danger: false
    property string symbol
    readonly property color ink: !enabled ? Theme.faint : danger ? (primary ? Theme.badInk : Theme.bad)
                                                                 : primary ? Theme.accentInk : Theme.accent

    function press() {
        if (!enabled)
            return;
        if (checkable)
            toggle();
        clicked();
    }

    implicitHeight: Theme.touch
    leftPadding: 2 * Theme.unit
    rightPadding: 2 * Theme.unit
    font.pixelSize: Theme.body
    font.weight: Font.DemiBold
    Accessible.name: text
    // Qt 6.4 does nothing by itself.
    Accessible.onPressAction: press()
    Keys.onReturnPressed: press()
    Keys.onEnterPressed: press()

    contentItem: Item {
        implicitWidth: label.implicitWidth + (root.symbol ? Theme.icon + Theme.unit : 0)
        implicitHeight: row.implicitHeight

        Row {
            id: row

            anchors.centerIn: parent
            spacing: Theme.unit

            Symbol {
                visible: root.symbol
                anchors.verticalCenter: parent.verticalCenter
                drawing: root.symbol
                color: root.ink
            }
            Text {
                id: label

                anchors.verticalCenter: parent.verticalCenter
                // As wide as the text, but not wider than the button leaves.
                width: Math.min(implicitWidth, root.availableWidth - (root.symbol ? Theme.icon + Theme.unit : 0))
                text: root.text
                font: root.font
                color: root.ink
                elide: Text.ElideRight
                Accessible.ignored: true
            }
        }
    }
    background: FocusRing {
        control: root

        Rectangle {
            readonly property color fill: root.danger ? Theme.bad : Theme.accent

            anchors.fill: parent
            radius: Theme.radius
            color: !root.primary ? (root.hovered || root.down ? Theme.hover : Theme.surface)
                                 : !root.enabled ? Theme.hover
                                                 : root.down ? Qt.darker(fill, Theme.dark ? 1.1 : 1.2)
                                                             : root.hovered ? Qt.darker(fill, Theme.dark ? 1.05 : 1.1) : fill
            border {
                width: root.primary ? 0 : 1
                color: Theme.line
            }
        }
    }
}
