// SPDX-License-Identifier: MIT
import QtQuick
import Logbook

/** A text of the app; what comes from a computer or a file is never taken for markup. */
Text {
    color: Theme.text
    font.pixelSize: Theme.body
    textFormat: Text.PlainText
    wrapMode: Text.Wrap
    Accessible.role: Accessible.StaticText
    Accessible.name: text
}
