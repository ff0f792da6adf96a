// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Logbook

/** The way to a simulated computer, and back. */
Card {
    id: root

    property bool failed: false

    title: qsTr("Simulated computer")

    PlainText {
        text: Preferences.simulated ? qsTr("You are using a simulated computer.")
                                    : qsTr("Try everything without a diving computer and without Bluetooth. "
                                           + "The app starts again; your own dives stay as they are.")
        color: Theme.faint
        Layout.fillWidth: true
    }
    ErrorBox {
        title: root.failed ? qsTr("The app could not start again") : ""
        remedy: qsTr("Install it again.")
        retryable: false
        Layout.fillWidth: true
    }
    ActionButton {
        text: Preferences.simulated ? qsTr("Back to real computers") : qsTr("Use a simulated computer")
        onClicked: root.failed = Preferences.simulated ? !Simulation.leave() : !Simulation.start()
    }
}
