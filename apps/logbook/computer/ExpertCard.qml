// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Varda
import Logbook

/** Eight settings without names, for those who know them. */
Card {
    id: root

    // As MarloSettings has them
    readonly property var names: ["byte1", "byte2", "float1", "byte3", "float2", "byte4", "byte5", "byte6"]
    property var texts: ["", "", "", "", "", "", "", ""]
    readonly property bool complete: names.every((name, i) => valid(i))

    function isReal(i: int): bool {
        return names[i].startsWith("float");
    }
    function number(i: int): real {
        try {
            return Number.fromLocaleString(Units.locale, texts[i].trim());
        } catch (error) {
            return NaN;
        }
    }
    function valid(i: int): bool {
        const value = texts[i].trim() ? number(i) : NaN;
        return isReal(i) ? isFinite(value) && Math.abs(value) <= 3.4e38
                         : Number.isInteger(value) && value >= 0 && value <= 255;
    }
    function setText(i: int, text: string) {
        const all = [...texts];
        all[i] = text;
        texts = all;
        run.clear();
    }
    function summary(): string {
        return names.map((name, i) => name + " = " + texts[i].trim()).join(", ");
    }
    function write() {
        const settings = {};
        names.forEach((name, i) => settings[name] = number(i));
        run.start(() => AppComputer.writeSettings(settings));
    }

    Layout.fillWidth: true
    Accessible.name: qsTr("Expert")

    RowLayout {
        spacing: Theme.unit

        Symbol {
            drawing: "expert"
            color: Theme.accent
        }
        PlainText {
            text: qsTr("Expert")
            font.pixelSize: Theme.title
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
            Layout.fillWidth: true
        }
    }
    Tick {
        objectName: "expert"
        text: qsTr("Show settings without a known meaning")
        checked: Preferences.expert
        Layout.fillWidth: true
        onToggled: Preferences.expert = checked
    }
    ColumnLayout {
        objectName: "expertSettings"
        visible: Preferences.expert
        spacing: 1.5 * Theme.unit
        Layout.fillWidth: true

        PlainText {
            text: qsTr("These eight settings cannot be read from the computer, and what they do depends on the model. "
                       + "Write them only if you know them.")
            color: Theme.faint
            Layout.fillWidth: true
        }
        GridLayout {
            columns: Math.max(1, Math.min(4, Math.floor(root.width / (18 * Theme.unit))))
            columnSpacing: 2 * Theme.unit
            rowSpacing: 1.5 * Theme.unit
            Layout.fillWidth: true

            Repeater {
                model: root.names

                delegate: ColumnLayout {
                    id: setting

                    required property int index
                    required property string modelData

                    spacing: Theme.half
                    Layout.fillWidth: true
                    Layout.preferredWidth: 1

                    PlainText {
                        text: setting.modelData
                        font.pixelSize: Theme.small
                        color: Theme.faint
                        Accessible.ignored: true
                    }
                    TextBox {
                        objectName: setting.modelData
                        label: setting.modelData
                        placeholderText: root.isReal(setting.index) ? qsTr("a number") : qsTr("0 to 255")
                        text: root.texts[setting.index]
                        inputMethodHints: Qt.ImhFormattedNumbersOnly
                        Accessible.description: placeholderText
                        Layout.fillWidth: true
                        onTextEdited: root.setText(setting.index, text)
                    }
                    PlainText {
                        visible: root.texts[setting.index] && !root.valid(setting.index)
                        text: root.isReal(setting.index) ? qsTr("Enter a number.")
                                                         : qsTr("Enter a whole number from 0 to 255.")
                        font.pixelSize: Theme.small
                        color: Theme.bad
                        Layout.fillWidth: true
                    }
                }
            }
        }
        ActionButton {
            objectName: "writeSettings"
            danger: true
            text: qsTr("Write to the computer…")
            enabled: root.complete && !run.running
            onClicked: confirm.open()
        }
        JobStatus {
            run: run
            busyText: qsTr("Writing")
            doneText: qsTr("The computer has accepted the settings.")
            stoppable: false
            onRetry: confirm.open()
        }
    }

    JobRun {
        id: run
    }
    ConfirmDialog {
        id: confirm

        objectName: "confirmSettings"
        title: qsTr("Write these settings?")
        text: qsTr("They replace those of the computer. What it has now cannot be read, so there is no way back.")
              + "\n\n" + root.summary()
        actionText: qsTr("Write")
        onConfirmed: root.write()
    }
}
