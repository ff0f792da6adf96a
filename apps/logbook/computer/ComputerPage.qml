// SPDX-License-Identifier: MIT
import QtQuick
import Logbook

/** All that is done with a computer: first which one, then what is in it. */
Item {
    id: root

    readonly property string title: qsTr("Computer")
    readonly property bool chosen: Preferences.device.valid
    property bool choosing: false

    Accessible.role: Accessible.Pane
    Accessible.name: title

    DeviceChoice {
        anchors.fill: parent
        visible: !root.chosen || root.choosing
        cancellable: root.chosen
        onChosen: {
            root.choosing = false;
            if (cards.item)
                (cards.item as ComputerCards).connectNow();
        }
        onCancelled: root.choosing = false
    }
    Loader {
        id: cards

        property string address: Preferences.device.address

        anchors.fill: parent
        visible: root.chosen && !root.choosing
        active: root.chosen
        sourceComponent: ComputerCards {
            onOtherWanted: root.choosing = true
        }

        // What was read from another computer is not shown for this one.
        onAddressChanged: {
            active = false;
            active = Qt.binding(() => root.chosen);
        }
    }
}
