// SPDX-License-Identifier: MIT
pragma Singleton
import QtQuick
import Varda
import Logbook.Core

/** The file with the dives, shared by all pages. */
LogbookStore {
    file: Preferences.storeFile
}
