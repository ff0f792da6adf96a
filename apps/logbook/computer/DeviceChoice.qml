// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Varda
import Logbook

/** Which computer it is: those in reach, of which one is remembered. */
PageScroll {
    id: root

    /** There is one already, to go back to. */
    property bool cancellable: false
    readonly property alias searching: run.running
    readonly property bool empty: devices.count === 0

    signal chosen
    signal cancelled

    function search() {
        run.start(() => {
            const job = AppComputer.search();
            devices.search = job;
            return job;
        });
    }
    function choose(device: var) {
        run.cancel();
        Preferences.device = device;
        root.chosen();
    }

    widest: 80 * Theme.unit

    JobRun {
        id: run
    }
    DeviceModel {
        id: devices
    }

    EmptyState {
        visible: root.empty && !run.running && !run.failure
        icon: "computer"
        title: run.done ? qsTr("No computer in reach") : qsTr("Choose your computer")
        text: run.done ? Reasons.remedy(VardaJob.NotFound, VardaJob.Reason.Silent)
                       : qsTr("Switch your diving computer on, choose its Bluetooth mode, and keep it near this "
                              + "machine. Then search for it.")
        Layout.topMargin: Math.max(6 * Theme.unit, (root.height - implicitHeight) / 2 - 6 * Theme.unit)
        Layout.fillWidth: true

        ActionButton {
            objectName: "search"
            primary: true
            symbol: "search"
            text: run.done ? qsTr("Search again") : qsTr("Search")
            Layout.fillWidth: true
            onClicked: root.search()
        }
        ActionButton {
            objectName: "simulated"
            visible: Simulation.available && !Preferences.simulated
            text: qsTr("Try a simulated computer")
            Layout.fillWidth: true
            onClicked: Simulation.start()
        }
    }

    Card {
        visible: !root.empty || run.running || run.failure
        title: qsTr("Computers in reach")
        Layout.fillWidth: true

        JobStatus {
            run: run
            busyText: qsTr("Searching")
            stoppable: false
            onRetry: root.search()
        }
        ColumnLayout {
            visible: !root.empty
            spacing: Theme.half
            Layout.fillWidth: true

            Repeater {
                model: devices

                delegate: DeviceLine {
                    Layout.fillWidth: true
                    onClicked: root.choose(record)
                }
            }
        }
        Flow {
            visible: run.running || !run.failure
            spacing: Theme.unit
            Layout.fillWidth: true

            ActionButton {
                objectName: "stopSearch"
                visible: run.running
                text: qsTr("Stop searching")
                onClicked: (run.job as SearchJob).finishNow()
            }
            ActionButton {
                objectName: "searchAgain"
                visible: !run.running && !run.failure
                symbol: "search"
                text: qsTr("Search again")
                onClicked: root.search()
            }
        }
    }
    ActionButton {
        objectName: "back"
        visible: root.cancellable
        symbol: "back"
        text: qsTr("Back to %1").arg(Preferences.device.name || Preferences.device.address)
        Layout.alignment: root.empty && !run.running && !run.failure ? Qt.AlignHCenter : Qt.AlignLeft
        Layout.maximumWidth: parent.width
        onClicked: {
            run.cancel();
            root.cancelled();
        }
    }
}
