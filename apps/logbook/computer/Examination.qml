// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Varda
import Logbook

/** Behind a failed connection: everything on the way to the computer, looked at one by one. */
ColumnLayout {
    id: root

    /** The job that has failed, if any. */
    property var failure: null
    property VardaDoctor doctor: null
    property bool running: false
    property var found: []
    readonly property bool useful: failure && isOfTheConnection(failure)

    function isOfTheConnection(job: var): bool {
        const errors = [VardaJob.NoBluetooth, VardaJob.NotFound, VardaJob.NotConnected, VardaJob.LinkLost,
                        VardaJob.TimedOut, VardaJob.Repeated, VardaJob.InUse];
        return errors.includes(job.error) || job.reason === VardaJob.Reason.SmallMtu;
    }
    function start() {
        found = [];
        running = true;
        doctor = AppComputer.examine();
    }

    spacing: Theme.unit
    visible: useful
    Layout.fillWidth: true
    onUsefulChanged: found = []

    ActionButton {
        objectName: "findOut"
        visible: !root.running
        text: qsTr("Find out why")
        onClicked: root.start()
    }
    RowLayout {
        visible: root.running
        spacing: Theme.unit

        Busy {
            text: qsTr("Looking at everything between here and the computer")
            Layout.fillWidth: true
        }
        ActionButton {
            objectName: "stopFinding"
            text: qsTr("Cancel")
            onClicked: root.doctor.cancel()
        }
    }
    Repeater {
        model: root.found

        RowLayout {
            id: row

            required property var modelData
            readonly property bool bad: modelData.state === VardaCheck.State.Fault
            readonly property bool warns: modelData.state === VardaCheck.State.Warning

            objectName: bad ? "fault" : warns ? "warning" : "sound"
            spacing: Theme.unit
            Layout.fillWidth: true
            Accessible.role: bad ? Accessible.AlertMessage : Accessible.StaticText
            Accessible.name: title.text
            Accessible.description: remedy.text

            Symbol {
                drawing: row.bad || row.warns ? "warning" : "check"
                color: row.bad ? Theme.bad : row.warns ? Theme.text : Theme.good
                Layout.alignment: Qt.AlignTop
            }
            ColumnLayout {
                spacing: 0
                Layout.fillWidth: true

                PlainText {
                    id: title

                    objectName: "finding"
                    text: Findings.title(row.modelData)
                    color: row.bad ? Theme.bad : Theme.text
                    Accessible.ignored: true
                    Layout.fillWidth: true
                }
                PlainText {
                    id: remedy

                    objectName: "remedy"
                    visible: text
                    text: Findings.remedy(row.modelData)
                    Accessible.ignored: true
                    Layout.fillWidth: true
                }
            }
        }
    }

    Connections {
        target: root.doctor

        function onChecked(check) {
            if (check.state !== VardaCheck.State.Skipped)
                root.found = root.found.concat([check]);
        }
        function onFinished() {
            root.running = false;
        }
    }
}
