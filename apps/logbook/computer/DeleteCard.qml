// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Varda
import Logbook

/** Makes room in the computer. */
Card {
    id: root

    property bool all: false

    /** First the dives are to be saved. */
    signal syncWanted

    function ask(all: bool) {
        root.all = all;
        confirm.open();
    }
    function erase() {
        if (all)
            run.start(() => AppComputer.eraseDives());
        else
            run.start(() => AppComputer.deleteLastDive());
    }

    Layout.fillWidth: true
    Accessible.name: qsTr("Delete dives")

    RowLayout {
        spacing: Theme.unit

        Symbol {
            drawing: "delete"
            color: Theme.accent
        }
        PlainText {
            text: qsTr("Delete dives")
            font.pixelSize: Theme.title
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
            Layout.fillWidth: true
        }
    }
    PlainText {
        text: qsTr("In the computer only: the dives in this app stay.")
        color: Theme.faint
        Layout.fillWidth: true
    }
    Flow {
        spacing: Theme.unit
        Layout.fillWidth: true

        ActionButton {
            objectName: "deleteLast"
            danger: true
            text: qsTr("Delete the last dive…")
            enabled: !run.running
            onClicked: root.ask(false)
        }
        ActionButton {
            objectName: "deleteAll"
            danger: true
            text: qsTr("Delete all dives…")
            enabled: !run.running
            onClicked: root.ask(true)
        }
    }
    JobStatus {
        run: run
        busyText: qsTr("Deleting")
        doneText: root.all ? qsTr("All dives in the computer are deleted.")
                           : qsTr("The last dive in the computer is deleted.")
        stoppable: false
        onRetry: root.ask(root.all)
    }

    JobRun {
        id: run
    }
    ConfirmDialog {
        id: confirm

        objectName: "confirmDelete"
        title: root.all ? qsTr("Delete all dives in the computer?") : qsTr("Delete the last dive in the computer?")
        text: root.all ? qsTr("Dives that you have not synchronised are lost for good, with their profiles. "
                              + "Those that are saved in this app stay.")
                       : qsTr("If you have not synchronised this dive, it is lost for good, with its profile. "
                              + "If it is saved in this app, it stays there.")
        actionText: root.all ? qsTr("Delete all") : qsTr("Delete")
        onConfirmed: root.erase()

        ActionButton {
            objectName: "syncFirst"
            symbol: "sync"
            text: qsTr("Synchronise first")
            onClicked: {
                confirm.close();
                root.syncWanted();
            }
        }
    }
}
