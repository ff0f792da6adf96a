// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Varda
import Logbook

/** The air pressure that the computer reckons with. */
Section {
    id: root

    property var sensors: null
    // In millibar. From the highest lakes down to the Dead Sea; what is outside is a slip.
    readonly property int lowest: 500
    readonly property int highest: 1100
    readonly property real perUnit: Units.metric ? 1 : 33.8639
    readonly property int wanted: {
        try {
            return Math.round(Number.fromLocaleString(Units.locale, field.text.trim()) * perUnit);
        } catch (error) {
            return -1; // no number
        }
    }
    readonly property bool plausible: wanted >= lowest && wanted <= highest

    function take(sensors: var) {
        root.sensors = sensors;
        field.text = Units.metric ? String(Math.round(sensors.psurf)) : Units.number(sensors.psurf / perUnit, 2);
        filled = true;
    }
    function write() {
        const millibar = wanted;
        writing.start(() => AppComputer.writeSurfacePressure(millibar));
    }

    heading: qsTr("Surface pressure")
    symbol: "pressure"
    about: qsTr("The air pressure at the water, which depth and decompression depend on.")
    onRead: {
        writing.clear();
        reading.start(() => AppComputer.readSensors());
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

    Field {
        objectName: "surfacePressure"
        name: qsTr("At the surface")
        value: root.sensors ? Units.pressure(root.sensors.psurf) : ""
    }
    Field {
        name: qsTr("Around the computer")
        value: root.sensors ? Units.pressure(root.sensors.pamb) : ""
    }
    RowLayout {
        spacing: Theme.unit

        TextBox {
            id: field

            objectName: "pressure"
            label: qsTr("New surface pressure")
            enabled: !writing.running
            inputMethodHints: Qt.ImhFormattedNumbersOnly
            Layout.preferredWidth: 12 * Theme.unit
            onTextEdited: writing.clear()
        }
        PlainText {
            text: Units.metric ? "mbar" : "inHg"
            color: Theme.faint
        }
        ActionButton {
            objectName: "setPressure"
            text: qsTr("Set…")
            enabled: root.plausible && !writing.running
            Accessible.name: qsTr("Set the surface pressure")
            onClicked: confirm.open()
        }
    }
    PlainText {
        objectName: "implausible"
        visible: !root.plausible && field.text
        text: qsTr("Enter a pressure from %1 to %2.").arg(Units.pressure(root.lowest)).arg(Units.pressure(root.highest))
        font.pixelSize: Theme.small
        color: Theme.bad
        Accessible.role: Accessible.AlertMessage
        Layout.fillWidth: true
    }
    JobStatus {
        run: writing
        busyText: qsTr("Setting the pressure")
        doneText: qsTr("The surface pressure is set.")
        onRetry: writing.retry()
    }

    ConfirmDialog {
        id: confirm

        objectName: "confirmPressure"
        title: qsTr("Set the surface pressure?")
        text: qsTr("The computer reckons depth and decompression with %1 from now on. A wrong pressure makes both wrong.")
                  .arg(Units.pressure(root.wanted))
        actionText: qsTr("Set it")
        danger: false
        onConfirmed: root.write()
    }
}
