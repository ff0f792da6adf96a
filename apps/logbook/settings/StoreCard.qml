// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Dialogs
import QtQuick.Layouts
import Varda
import Logbook

/** Where the dives are, and whether the file is sound. */
Card {
    id: root

    property var checking: null
    property string checked

    function check() {
        checked = "";
        const call = AppStore.check();
        checking = call;
        call.finished.connect(() => {
            root.checking = null;
            root.checked = call.error === LogbookError.NoError ? qsTr("Everything in the file is sound.")
                                                               : call.errorText;
        });
    }

    title: qsTr("File with the dives")

    PlainText {
        objectName: "storeFile"
        text: Preferences.storeFile
        wrapMode: Text.WrapAnywhere
        Layout.fillWidth: true
    }
    PlainText {
        visible: Preferences.simulated
        text: qsTr("Dives of simulated computers are kept apart from your own.")
        color: Theme.faint
        Layout.fillWidth: true
    }
    StoreError {
        Layout.fillWidth: true
    }
    Flow {
        spacing: Theme.unit
        Layout.fillWidth: true

        ActionButton {
            visible: !Preferences.simulated
            text: qsTr("Another file…")
            onClicked: fileDialog.open()
        }
        ActionButton {
            visible: !Preferences.simulated && Preferences.storeFile !== Preferences.defaultStoreFile
            text: qsTr("The usual file")
            onClicked: Preferences.storeFile = Preferences.defaultStoreFile
        }
        ActionButton {
            objectName: "check"
            text: qsTr("Check the file")
            enabled: AppStore.open && !root.checking
            onClicked: root.check()
        }
    }
    Busy {
        visible: root.checking
        text: qsTr("Checking")
        Layout.fillWidth: true
    }
    PlainText {
        objectName: "checked"
        visible: text
        text: root.checked
        Accessible.role: Accessible.AlertMessage
        Layout.fillWidth: true
    }

    FileDialog {
        id: fileDialog

        title: qsTr("File with the dives")
        // A file that is not there is made.
        fileMode: FileDialog.SaveFile
        // Qt 6.4 describes them to no linter.
        options: FileDialog.DontConfirmOverwrite // qmllint disable
        currentFolder: Preferences.folderOf(Preferences.storeFile)
        nameFilters: [qsTr("Dives (*.sqlite *.db)"), qsTr("All files (*)")]
        onAccepted: Preferences.storeFile = LocalFile.path(selectedFile)
    }
}
