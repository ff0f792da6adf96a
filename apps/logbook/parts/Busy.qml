// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Logbook

/** Something is under way, and nobody knows how far. */
RowLayout {
    id: root

    property string text: qsTr("Loading")

    spacing: Theme.unit
    // A voice on Linux says nothing of an indicator.
    Accessible.role: Accessible.StaticText
    Accessible.name: text

    BusyIndicator {
        running: root.visible && Preferences.animated
        visible: Preferences.animated
        implicitWidth: 3 * Theme.unit
        implicitHeight: 3 * Theme.unit
        padding: 0
        palette.dark: Theme.accent
        Accessible.ignored: true
    }
    PlainText {
        text: root.text
        color: Theme.faint
        Layout.fillWidth: true
        Accessible.ignored: true
    }
}
