// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Varda
import Logbook

/** All about the computer that was chosen. */
PageScroll {
    id: root

    readonly property bool wide: width >= Theme.wide
    /** Those that are still to be read, one after the other. */
    property var toRead: []

    signal otherWanted

    function connectNow() {
        syncCard.connectNow();
    }
    /** Fills what was never read. */
    function readAll() {
        const running = toRead.length > 0;
        toRead = [about, clock, owner, pressure, screens, battery].filter(each => !each.filled && !each.reading.running);
        if (!running)
            readNext();
    }
    function readNext() {
        if (!toRead.length)
            return;
        // In its bootloader a computer answers nothing else; without a link each would fail on its own.
        if (about.inBootloader || AppComputer.state !== VardaComputer.Connected) {
            toRead = [];
            return;
        }
        const card = toRead[0];
        card.read();
        if (!card.reading.running)
            next();
    }
    function next() {
        toRead = toRead.slice(1);
        readNext();
    }

    Connections {
        target: root.toRead.length ? root.toRead[0].reading : null
        function onEnded() {
            Qt.callLater(root.next); // qmllint disable
        }
    }

    SyncCard {
        id: syncCard

        Layout.fillWidth: true
        onReached: root.readAll()
        onOtherWanted: root.otherWanted()
    }
    GridLayout {
        columns: root.wide ? 2 : 1
        columnSpacing: 2 * Theme.unit
        rowSpacing: 2 * Theme.unit
        Layout.fillWidth: true

        ColumnLayout {
            spacing: 2 * Theme.unit
            Layout.alignment: Qt.AlignTop
            Layout.fillWidth: true
            Layout.preferredWidth: 1

            AboutCard {
                id: about
            }
            ClockCard {
                id: clock
            }
            OwnerCard {
                id: owner
            }
            PressureCard {
                id: pressure
            }
        }
        ColumnLayout {
            spacing: 2 * Theme.unit
            Layout.alignment: Qt.AlignTop
            Layout.fillWidth: true
            Layout.preferredWidth: 1

            ScreensCard {
                id: screens
            }
            FirmwareCard {
                installed: about.identity ? about.identity.firmwareVersionStr : ""
                onUpdated: about.read()
            }
            DeleteCard {
                onSyncWanted: {
                    root.contentY = 0;
                    syncCard.synchronise();
                }
            }
        }
    }
    BatteryCard {
        id: battery
    }
    LogCard {}
    ExpertCard {}
}
