// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Varda
import Logbook

/** The figures of a dive. */
Card {
    id: root

    property var saved: null
    readonly property var profile: saved ? saved.dive.profile : null

    GridLayout {
        columns: Math.max(2, Math.min(5, Math.floor(root.width / (18 * Theme.unit))))
        columnSpacing: 2 * Theme.unit
        rowSpacing: 2 * Theme.unit
        Layout.fillWidth: true

        Figure {
            name: qsTr("Duration")
            value: root.saved ? Units.duration(root.saved.duration) : ""
            spoken: root.saved ? Units.spokenDuration(root.saved.duration) : ""
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            Layout.alignment: Qt.AlignTop
        }
        Figure {
            name: qsTr("Greatest depth")
            value: root.saved ? Units.depth(root.saved.greatestDepth) : ""
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            Layout.alignment: Qt.AlignTop
        }
        Figure {
            name: qsTr("Average depth")
            value: root.saved ? Units.depth(root.saved.meanDepth) : ""
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            Layout.alignment: Qt.AlignTop
        }
        Figure {
            name: qsTr("Temperature")
            value: root.profile ? Units.temperatures(root.profile.lowestTemperature, root.profile.highestTemperature) : ""
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            Layout.alignment: Qt.AlignTop
        }
        Figure {
            name: qsTr("Circuit")
            value: !root.saved ? "" : root.saved.dive.kindByte ? qsTr("Closed") : qsTr("Open")
            Layout.fillWidth: true
            Layout.preferredWidth: 1
            Layout.alignment: Qt.AlignTop
        }
    }
}
