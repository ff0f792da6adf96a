// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Logbook

/** Why there is no dive, and the way to one. */
EmptyState {
    id: root

    required property bool filtered

    signal importRequested
    signal clearRequested

    icon: filtered ? "search" : "dives"
    title: filtered ? qsTr("No dive found") : qsTr("No dives yet")
    text: filtered ? qsTr("Change the search or the filter.")
                   : Preferences.simulated
                     ? qsTr("Synchronise the simulated computer to bring dives here.")
                     : qsTr("Switch on Bluetooth here and on your diving computer, then synchronise it.")

    ActionButton {
        objectName: "goToComputer"
        visible: !root.filtered
        primary: true
        symbol: "sync"
        text: qsTr("Go to the computer")
        Layout.fillWidth: true
        Layout.preferredWidth: 36 * Theme.unit
        onClicked: Navigation.page = Navigation.Computer
    }
    ActionButton {
        visible: !root.filtered
        symbol: "import"
        text: qsTr("Import a file")
        Layout.fillWidth: true
        Layout.preferredWidth: 36 * Theme.unit
        onClicked: root.importRequested()
    }
    ActionButton {
        objectName: "simulate"
        visible: !root.filtered && !Preferences.simulated && Simulation.available
        symbol: "computer"
        text: qsTr("Try a simulated computer")
        Layout.fillWidth: true
        Layout.preferredWidth: 36 * Theme.unit
        onClicked: Simulation.start()
    }
    ActionButton {
        visible: root.filtered
        text: qsTr("Show all dives")
        Layout.fillWidth: true
        Layout.preferredWidth: 36 * Theme.unit
        onClicked: root.clearRequested()
    }
}
