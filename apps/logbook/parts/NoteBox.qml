// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import Logbook

/** Some lines of text that can be changed. Tab leads on to the next control. */
TextArea {
    id: root

    required property string label

    implicitHeight: Math.max(contentHeight + topPadding + bottomPadding, 12 * Theme.unit)
    leftPadding: 1.5 * Theme.unit
    rightPadding: 1.5 * Theme.unit
    topPadding: 1.25 * Theme.unit
    bottomPadding: 1.25 * Theme.unit
    font.pixelSize: Theme.body
    color: Theme.text
    placeholderTextColor: Theme.faint
    selectionColor: Theme.accent
    selectedTextColor: Theme.accentInk
    selectByMouse: true
    textFormat: TextEdit.PlainText
    wrapMode: TextEdit.Wrap
    KeyNavigation.priority: KeyNavigation.BeforeItem
    Keys.onTabPressed: nextItemInFocusChain(true).forceActiveFocus(Qt.TabFocusReason)
    Keys.onBacktabPressed: nextItemInFocusChain(false).forceActiveFocus(Qt.BacktabFocusReason)
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
