// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import Logbook

/** One of some words. */
ComboBox {
    id: root

    required property string label

    implicitHeight: Theme.touch
    implicitWidth: 26 * Theme.unit
    leftPadding: 1.5 * Theme.unit
    font.pixelSize: Theme.body
    displayText: currentIndex < 0 ? "–" : currentText
    Accessible.name: label
    Accessible.description: displayText
    Accessible.onPressAction: {
        if (!enabled)
            return;
        // Its list closes when it has not got the keyboard.
        forceActiveFocus(Qt.TabFocusReason);
        popup.open();
    }

    contentItem: PlainText {
        text: root.displayText
        verticalAlignment: Text.AlignVCenter
        elide: Text.ElideRight
        wrapMode: Text.NoWrap
        rightPadding: 4 * Theme.unit
        Accessible.ignored: true
    }
    indicator: Symbol {
        x: root.width - width - Theme.unit
        y: (root.height - height) / 2
        drawing: "down"
        color: Theme.faint
    }
    delegate: MenuLine {
        required property int index
        required property var model

        width: ListView.view ? ListView.view.width : 0
        text: root.textAt(index)
        checkable: true
        checked: root.currentIndex === index
        highlighted: root.highlightedIndex === index
    }
    background: FocusRing {
        control: root

        Rectangle {
            anchors.fill: parent
            radius: Theme.radius
            color: root.hovered ? Theme.hover : Theme.surface
            border {
                width: 1
                color: Theme.outline
            }
        }
    }
    popup.padding: Theme.half
    popup.background: Rectangle {
        radius: Theme.radius
        color: Theme.surface
        border {
            width: 1
            color: Theme.outline
        }
    }
}
