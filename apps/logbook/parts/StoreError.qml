// SPDX-License-Identifier: MIT
import QtQuick
import Varda
import Logbook

/** What is wrong with the file of the dives, in plain words. */
ErrorBox {
    id: root

    /** A LogbookError.Kind and the library's words. */
    property int kind: AppStore.error
    property string text: AppStore.errorText

    /** The file can be used again. */
    signal reopened

    function titleOf(kind: int): string {
        switch (kind) {
        case LogbookError.NoError:
            return "";
        case LogbookError.ReadOnly:
            return qsTr("The file with the dives cannot be changed");
        case LogbookError.DiskFull:
            return qsTr("The disk is full, so this was not saved");
        case LogbookError.Damaged:
            return qsTr("The file with the dives is damaged");
        case LogbookError.NotADatabase:
        case LogbookError.NotALogbook:
            return qsTr("This file does not hold dives of this app");
        case LogbookError.NewerSchema:
            return qsTr("A newer version of the app has written this file");
        case LogbookError.Busy:
            return qsTr("Another program is using the file with the dives");
        case LogbookError.NoDriver:
            return qsTr("A part of the app is missing: the driver for SQLite");
        case LogbookError.NoSuchDive:
            return qsTr("This dive is no longer in the file");
        case LogbookError.NotOpen:
        case LogbookError.Closed:
        case LogbookError.CannotOpen:
            return qsTr("The file with the dives could not be opened");
        default:
            return qsTr("The file with the dives could not be used");
        }
    }
    function remedyOf(kind: int): string {
        switch (kind) {
        case LogbookError.NoError:
            return "";
        case LogbookError.ReadOnly:
            return qsTr("Allow yourself to write the file and its folder, or choose another file in the settings.");
        case LogbookError.DiskFull:
            return qsTr("Make room on the disk, then try again.");
        case LogbookError.Damaged:
            return qsTr("Put a copy from a backup in its place, or choose another file in the settings.");
        case LogbookError.NotADatabase:
        case LogbookError.NotALogbook:
            return qsTr("Choose another file in the settings.");
        case LogbookError.NewerSchema:
            return qsTr("Update this app.");
        case LogbookError.Busy:
            return qsTr("Wait until the other program has finished, then try again.");
        case LogbookError.NoDriver:
            return qsTr("Install the SQLite driver of Qt, then start the app again.");
        case LogbookError.NoSuchDive:
            return qsTr("Choose another dive.");
        default:
            return qsTr("Look whether its folder exists and may be read, then try again.");
        }
    }

    title: titleOf(kind)
    remedy: remedyOf(kind)
    details: text
    onRetry: {
        const call = AppStore.reopen();
        call.finished.connect(() => {
            if (root && call.error === LogbookError.NoError)
                root.reopened();
        });
    }
}
