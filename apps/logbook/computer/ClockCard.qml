// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Varda
import Logbook

/** The clock of the computer, beside that of this machine. */
Section {
    id: root

    /** In seconds, as the job gives it, and what this machine's clock was then. */
    property real time: 0
    property real here: 0
    readonly property int difference: Math.round(time - here)
    /** What the transmission takes. */
    readonly property bool exact: Math.abs(difference) <= 2

    function take(time: real) {
        here = LocalTime.now();
        root.time = time;
        filled = true;
    }
    function differenceText(): string {
        const much = LocalTime.span(Math.abs(difference));
        return exact ? qsTr("The same as on this machine.")
                     : difference < 0 ? qsTr("%1 behind this machine.", "a time").arg(much)
                                      : qsTr("%1 ahead of this machine.", "a time").arg(much);
    }

    heading: qsTr("Clock")
    symbol: "clock"
    about: qsTr("Set it before a journey, and after one.")
    onRead: {
        writing.clear();
        reading.start(() => AppComputer.readClock());
    }

    Connections {
        target: root.reading
        function onGot(index, value) {
            root.take(value);
        }
    }
    JobRun {
        id: writing

        onGot: (index, value) => root.take(value)
    }

    PlainText {
        objectName: "time"
        text: LocalTime.text(root.time)
        font.pixelSize: Theme.figure
        font.weight: Font.DemiBold
        Layout.fillWidth: true
    }
    PlainText {
        objectName: "difference"
        text: root.differenceText()
        color: root.exact ? Theme.faint : Theme.text
        Layout.fillWidth: true
    }
    ActionButton {
        objectName: "setClock"
        text: qsTr("Set to now")
        enabled: !writing.running
        onClicked: writing.start(() => AppComputer.setClock())
    }
    JobStatus {
        run: writing
        busyText: qsTr("Setting the clock")
        doneText: qsTr("The clock is set.")
        onRetry: writing.retry()
    }
}
