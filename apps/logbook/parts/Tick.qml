// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import Logbook

/** Yes or no. */
CheckBox {
    id: root

    function press() {
        if (!enabled)
            return;
        toggle();
        toggled();
        clicked();
    }

    implicitHeight: Math.max(Theme.touch, implicitContentHeight)
    spacing: Theme.unit
    padding: 0
    font.pixelSize: Theme.body
    Accessible.name: text
    // Qt 6.4 ticks it by itself, and no more.
    Accessible.onPressAction: press()
    Accessible.onToggleAction: press()

    indicator: TickMark {
        y: (root.height - height) / 2
        ticked: root.checked
    }
    contentItem: PlainText {
        leftPadding: root.indicator.width + root.spacing
        text: root.text
        verticalAlignment: Text.AlignVCenter
        Accessible.ignored: true
    }
    background: FocusRing {
        control: root
    }
}
