// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Logbook

/** Bars below each other, each with its name at the left and its words at the right. */
ColumnLayout {
    id: root

    /** Each with name, value and text. */
    required property var bars
    readonly property real greatest: bars.reduce((most, each) => Math.max(most, each.value), 1)
    readonly property real nameWidth: bars.reduce((most, each) => Math.max(most, metrics.advanceWidth(each.name)), 0)
    readonly property real textWidth: bars.reduce((most, each) => Math.max(most, metrics.advanceWidth(each.text)), 0)

    spacing: Theme.unit

    FontMetrics {
        id: metrics

        font.pixelSize: Theme.body
    }
    Repeater {
        model: root.bars

        delegate: Item {
            id: bar

            required property var modelData
            readonly property real room: Math.max(0, width - root.nameWidth - root.textWidth - 4 * Theme.unit)

            implicitHeight: 3 * Theme.unit
            Layout.fillWidth: true
            Accessible.role: Accessible.StaticText
            Accessible.name: qsTr("%1: %2", "a figure").arg(modelData.name).arg(modelData.text)

            PlainText {
                width: Math.ceil(root.nameWidth)
                text: bar.modelData.name
                wrapMode: Text.NoWrap
                horizontalAlignment: Text.AlignRight
                color: Theme.faint
                anchors.verticalCenter: parent.verticalCenter
                Accessible.ignored: true
            }
            Rectangle {
                id: line

                x: Math.ceil(root.nameWidth) + 2 * Theme.unit
                width: bar.modelData.value ? Math.max(Theme.half, bar.room * bar.modelData.value / root.greatest) : 0
                height: 2 * Theme.unit
                radius: Theme.half / 2
                color: Theme.accent
                anchors.verticalCenter: parent.verticalCenter
            }
            PlainText {
                x: line.x + line.width + (line.width ? Theme.unit : 0)
                text: bar.modelData.text
                wrapMode: Text.NoWrap
                anchors.verticalCenter: parent.verticalCenter
                Accessible.ignored: true
            }
        }
    }
}
