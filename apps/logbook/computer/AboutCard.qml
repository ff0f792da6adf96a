// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Varda
import Logbook

/** What the computer is. */
Section {
    id: root

    property var identity: null
    readonly property bool inBootloader: identity !== null && identity.mode === CurrentMode.BootLoader
    readonly property string serialNumber: identity ? identity.serialNumber : ""

    heading: qsTr("About the computer")
    symbol: "computer"
    about: qsTr("Its model, its versions and its serial number.")
    onRead: reading.start(() => AppComputer.readIdentity())

    Connections {
        target: root.reading
        function onGot(index, identity) {
            root.identity = identity;
            root.filled = true;
        }
    }

    Field {
        name: qsTr("Model")
        value: root.identity ? Units.model(root.identity.model) : ""
    }
    Field {
        objectName: "firmware"
        name: qsTr("Firmware")
        value: root.identity ? root.identity.firmwareVersionStr : ""
    }
    Field {
        name: qsTr("Bootloader")
        value: root.identity ? root.identity.bootloaderVersionStr : ""
    }
    Field {
        name: qsTr("Serial number")
        value: root.serialNumber
    }
    Field {
        name: qsTr("Address")
        value: Preferences.device.address
    }
    PlainText {
        objectName: "inBootloader"
        visible: root.inBootloader
        text: qsTr("The computer is waiting for firmware. Everything else works once its firmware is installed.")
        color: Theme.bad
        Layout.fillWidth: true
    }
}
