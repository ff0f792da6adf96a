// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Dialogs
import QtQuick.Layouts
import Varda
import Logbook

/** Adds the dives of a file, and says how many were new. */
AppDialog {
    id: root

    function ask() {
        fileDialog.open();
    }
    function read(file: url) {
        importer.read(file);
        open();
    }

    title: qsTr("Import")
    closePolicy: importer.busy ? AppDialog.NoAutoClose : AppDialog.CloseOnEscape
    buttons: [
        ActionButton {
            visible: !importer.busy
            primary: true
            text: qsTr("Close")
            onClicked: root.close()
        },
        ActionButton {
            visible: importer.busy
            text: qsTr("Cancel")
            onClicked: importer.cancel()
        }
    ]

    DiveImporter {
        id: importer
    }
    contentItem: ColumnLayout {
        spacing: Theme.unit

        Progress {
            visible: importer.busy
            label: qsTr("Import")
            value: importer.progress
            Layout.fillWidth: true
        }
        ErrorBox {
            title: importer.unreadable ? qsTr("This file could not be read") : ""
            remedy: qsTr("Choose a UDDF, CSV or JSON file that this app has written.")
            details: importer.errorText
            retryText: qsTr("Another file…")
            onRetry: fileDialog.open()
            Layout.fillWidth: true
        }
        StoreError {
            kind: importer.storeError
            text: importer.errorText
            onRetry: importer.again()
            Layout.fillWidth: true
        }
        PlainText {
            objectName: "imported"
            visible: importer.done && !importer.unreadable
            text: qsTr("%n dive(s) added", "", importer.added)
                  + (importer.known ? "\n" + qsTr("%n dive(s) here already", "", importer.known) : "")
            Accessible.role: Accessible.AlertMessage
            Layout.fillWidth: true
        }
    }

    FileDialog {
        id: fileDialog

        title: qsTr("Import")
        nameFilters: [qsTr("Dives (*.uddf *.csv *.json)"), qsTr("All files (*)")]
        onAccepted: root.read(selectedFile)
    }
}
