// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Logbook

/** A line of a record: its name at the left, its value at the right. */
RowLayout {
    id: root

    required property string name
    required property string value

    visible: value
    spacing: 2 * Theme.unit
    Layout.fillWidth: true
    Accessible.role: Accessible.StaticText
    Accessible.name: qsTr("%1: %2", "a figure").arg(name).arg(value)

    PlainText {
        text: root.name
        color: Theme.faint
        Layout.alignment: Qt.AlignTop
        Accessible.ignored: true
    }
    PlainText {
        // A long number may go on in the next line after a dash.
        text: root.value.replace(/-/g, "-\u200b")
        horizontalAlignment: Text.AlignRight
        Layout.fillWidth: true
        Accessible.ignored: true
    }
}
