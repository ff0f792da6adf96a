// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Logbook

/** Instead of a list that has nothing: why, and what to do about it. */
ColumnLayout {
    id: root

    property string icon
    required property string title
    property string text
    default property alias actions: actions.data

    spacing: Theme.unit

    Rectangle {
        visible: root.icon
        Layout.alignment: Qt.AlignHCenter
        Layout.bottomMargin: Theme.unit
        implicitWidth: 9 * Theme.unit
        implicitHeight: 9 * Theme.unit
        radius: width / 2
        color: Theme.chosen

        Symbol {
            anchors.centerIn: parent
            drawing: root.icon
            size: 5 * Theme.unit
            color: Theme.accent
        }
    }
    PlainText {
        Layout.fillWidth: true
        horizontalAlignment: Text.AlignHCenter
        text: root.title
        font.pixelSize: Theme.headline
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
    }
    PlainText {
        // Lines of about the same length, instead of a last word on its own
        readonly property real most: Math.min(root.width, Theme.textWidth)
        readonly property int lines: Math.max(1, Math.ceil(implicitWidth / most))

        visible: text
        Layout.fillWidth: true
        Layout.maximumWidth: lines > 1 ? Math.min(most, 1.15 * implicitWidth / lines) : most
        Layout.alignment: Qt.AlignHCenter
        horizontalAlignment: Text.AlignHCenter
        text: root.text
        color: Theme.faint
        lineHeight: 1.3
    }
    ColumnLayout {
        id: actions

        visible: children.length > 0
        spacing: Theme.unit
        Layout.topMargin: 2 * Theme.unit
        Layout.alignment: Qt.AlignHCenter
        Layout.maximumWidth: Math.min(root.width, 40 * Theme.unit)
    }
}
