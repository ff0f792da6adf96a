// SPDX-License-Identifier: MIT
pragma Singleton
import QtQuick
import Varda
import Logbook.Core

/** The diver's computer, shared by all pages; the one that was chosen last, if any. */
VardaComputer {
    device: Preferences.device
    // A reading often follows another, and a computer on a link stays awake.
    linger: 30000
}
