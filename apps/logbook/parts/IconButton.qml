// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import Logbook

/** A button with a symbol; its text stands beside it when it is pointed at. */
ToolButton {
    id: root

    required property string symbol
    property color color: checked ? Theme.accent : Theme.faint

    function press() {
        if (!enabled)
            return;
        if (checkable)
            toggle();
        clicked();
    }

    implicitWidth: Theme.touch
    implicitHeight: Theme.touch
    display: AbstractButton.IconOnly
    icon {
        source: "../icons/" + symbol + ".svg"
        width: Theme.icon
        height: Theme.icon
        color: !enabled ? Theme.line : hovered && !checked ? Theme.text : root.color
    }
    Accessible.name: text
    // Qt 6.4 does nothing by itself.
    Accessible.onPressAction: press()
    ToolTip.visible: hovered || visualFocus
    ToolTip.delay: 600
    ToolTip.text: text
    Keys.onReturnPressed: press()
    Keys.onEnterPressed: press()

    background: FocusRing {
        control: root

        Rectangle {
            anchors.fill: parent
            radius: Theme.radius
            color: root.checked ? Theme.chosen : root.hovered || root.down ? Theme.hover : "transparent"
        }
    }
}
