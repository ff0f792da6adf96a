// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Varda
import Logbook

/** What was breathed, and when. */
Card {
    id: root

    property var dive: null
    readonly property var gases: dive ? dive.gases : []
    readonly property var switches: dive ? dive.profile.switches : []

    function timeOf(gasIndex: int): string {
        const times = switches.filter(each => each.gasIndex === gasIndex)
                              .map(each => each.time ? qsTr("at %1", "a time").arg(Units.duration(each.time)) : qsTr("from the beginning"));
        return times.length > 6 ? times.slice(0, 6).join(", ") + "…" : times.join(", ");
    }
    function mixOf(gas: var): string {
        const oxygen = qsTr("%1 % oxygen").arg(Math.round(gas.oxygen * 100));
        const helium = Math.round(gas.helium * 100);
        return helium ? oxygen + ", " + qsTr("%1 % helium").arg(helium) : oxygen;
    }

    title: qsTr("Gases")

    Repeater {
        model: root.gases

        delegate: RowLayout {
            id: line

            required property var modelData
            required property int index
            readonly property string mix: root.mixOf(modelData) + (modelData.closedCircuit ? ", " + qsTr("diluent") : "")
            readonly property string times: root.timeOf(index) || qsTr("not used")

            spacing: 2 * Theme.unit
            Layout.fillWidth: true
            Accessible.role: Accessible.StaticText
            Accessible.name: Units.list([name.text, mix, times], ", ")

            ColumnLayout {
                spacing: 2
                Layout.fillWidth: true
                Layout.preferredWidth: 1

                PlainText {
                    id: name

                    text: Units.gas(line.modelData)
                    font.weight: Font.DemiBold
                    Accessible.ignored: true
                }
                PlainText {
                    text: line.mix
                    font.pixelSize: Theme.small
                    color: Theme.faint
                    Accessible.ignored: true
                    Layout.fillWidth: true
                }
            }
            PlainText {
                text: line.times
                horizontalAlignment: Text.AlignRight
                color: Theme.faint
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                Accessible.ignored: true
            }
        }
    }
    PlainText {
        visible: !root.gases.length
        text: qsTr("No gas was recorded.")
        color: Theme.faint
        Layout.fillWidth: true
    }
}
