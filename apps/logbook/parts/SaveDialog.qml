// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Dialogs
import Logbook

/** Asks where to save. A file that is there is replaced only after a question. */
Item {
    id: root

    property alias title: dialog.title
    property alias nameFilters: dialog.nameFilters
    property alias selectedNameFilter: dialog.selectedNameFilter
    property alias defaultSuffix: dialog.defaultSuffix

    signal chosen(file: url)

    function open() {
        dialog.open();
    }
    /** What was named. */
    function take(file: url) {
        replace.file = file;
        if (LocalFile.exists(file))
            replace.open();
        else
            chosen(file);
    }

    visible: false

    FileDialog {
        id: dialog

        fileMode: FileDialog.SaveFile
        // That of Qt 6.4 would not ask. (Qt 6.4 describes the options to no linter.)
        options: FileDialog.DontConfirmOverwrite // qmllint disable
        acceptLabel: qsTr("Save")
        onAccepted: root.take(selectedFile)
    }
    ConfirmDialog {
        id: replace

        property url file

        objectName: "replace"
        title: qsTr("Replace this file?")
        text: qsTr("“%1” is there already.").arg(LocalFile.path(file))
        actionText: qsTr("Replace")
        onConfirmed: root.chosen(file)
    }
}
