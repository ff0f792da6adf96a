// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Varda
import Logbook

/** Which computer has recorded the dive. */
Card {
    id: root

    property var saved: null
    readonly property var dive: saved ? saved.dive : null

    title: qsTr("Recorded by")

    Field {
        name: qsTr("Model")
        value: root.dive ? Units.model(root.dive.model) : ""
    }
    Field {
        name: qsTr("Serial number")
        value: root.dive ? root.dive.serialNumber : ""
    }
    Field {
        name: qsTr("Firmware")
        value: root.dive ? root.dive.firmwareVersion : ""
    }
    Field {
        name: qsTr("Owner")
        value: root.dive ? root.dive.ownerName : ""
    }
    Field {
        name: qsTr("Samples")
        value: root.dive ? qsTr("%1, every %2 s").arg(Units.count(root.dive.lines.length)).arg(root.dive.sampleInterval) : ""
    }
    Field {
        name: qsTr("Saved")
        value: root.saved ? Units.date(root.saved.stored) : ""
    }
}
