// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import Logbook

/** One of some, with a word about each. */
RadioButton {
    id: root

    property string description

    function press() {
        if (!enabled)
            return;
        if (!checked)
            toggle();
        toggled();
        clicked();
    }

    implicitHeight: Math.max(Theme.touch, implicitContentHeight + Theme.unit)
    spacing: Theme.unit
    padding: 0
    font.pixelSize: Theme.body
    Accessible.name: text
    Accessible.description: description
    // Qt 6.4 ticks it by itself, and no more.
    Accessible.onPressAction: press()
    Accessible.onToggleAction: press()

    indicator: Rectangle {
        y: (root.height - height) / 2
        implicitWidth: 2.5 * Theme.unit
        implicitHeight: 2.5 * Theme.unit
        radius: width / 2
        color: Theme.surface
        border {
            width: root.checked ? 2 : 1
            color: root.checked ? Theme.accent : Theme.outline
        }

        Rectangle {
            visible: root.checked
            anchors.centerIn: parent
            width: parent.width / 2
            height: width
            radius: width / 2
            color: Theme.accent
        }
    }
    contentItem: Item {
        implicitWidth: 30 * Theme.unit
        implicitHeight: words.implicitHeight

        Column {
            id: words

            x: root.indicator.width + root.spacing
            width: parent.width - x
            spacing: 2
            anchors.verticalCenter: parent.verticalCenter

            PlainText {
                width: parent.width
                text: root.text
                Accessible.ignored: true
            }
            PlainText {
                visible: text
                width: parent.width
                text: root.description
                font.pixelSize: Theme.small
                color: Theme.faint
                Accessible.ignored: true
            }
        }
    }
    background: FocusRing {
        control: root
    }
}
