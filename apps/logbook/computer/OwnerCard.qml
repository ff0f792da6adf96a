// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Varda
import Logbook

/** Whose computer it is. */
Section {
    id: root

    property string owner
    readonly property bool changed: field.text !== owner

    function save() {
        if (changed && !writing.running)
            writing.start(() => AppComputer.writeOwner(field.text));
    }

    heading: qsTr("Owner")
    symbol: "owner"
    about: qsTr("The name that the computer shows, so that it finds its way back to you.")
    onRead: {
        writing.clear();
        reading.start(() => AppComputer.readOwner());
    }

    function take(owner: string) {
        root.owner = owner;
        field.text = owner;
        filled = true;
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

    TextBox {
        id: field

        objectName: "owner"
        label: qsTr("Owner")
        placeholderText: qsTr("Name, telephone")
        enabled: !writing.running
        Layout.fillWidth: true
        onTextEdited: writing.clear()
        onAccepted: root.save()
    }
    ActionButton {
        objectName: "saveOwner"
        text: qsTr("Save in the computer")
        enabled: root.changed && !writing.running
        onClicked: root.save()
    }
    JobStatus {
        run: writing
        busyText: qsTr("Saving")
        doneText: qsTr("Saved in the computer.")
        hint: qsTr("Enter a shorter name: computers keep about 30 letters, fewer with accents.")
        onRetry: writing.retry()
    }
}
