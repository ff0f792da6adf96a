// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Logbook

ApplicationWindow {
    id: root

    readonly property bool wide: width >= Theme.wide

    title: Preferences.simulated ? qsTr("Logbook – simulated computer") : qsTr("Logbook")
    visible: true
    width: Math.max(140 * Theme.unit, 1120)
    height: 94 * Theme.unit
    minimumWidth: 40 * Theme.unit
    minimumHeight: 56 * Theme.unit
    color: Theme.window
    font.pixelSize: Theme.body
    palette {
        window: Theme.window
        windowText: Theme.text
        base: Theme.surface
        alternateBase: Theme.sunken
        text: Theme.text
        button: Theme.surface
        buttonText: Theme.text
        highlight: Theme.accent
        highlightedText: Theme.accentInk
        placeholderText: Theme.faint
        toolTipBase: Theme.text
        toolTipText: Theme.surface
        link: Theme.accent
        mid: Theme.outline
        dark: Theme.outline
        light: Theme.surface
        disabled.text: Theme.faint
        disabled.windowText: Theme.faint
        disabled.buttonText: Theme.faint
    }

    // As on each platform: Ctrl+1, Ctrl+2, Ctrl+3
    Repeater {
        model: 3

        delegate: Item {
            id: entry

            required property int index

            Shortcut {
                sequence: "Ctrl+" + (entry.index + 1)
                onActivated: Navigation.page = entry.index
            }
        }
    }
    Shortcut {
        // That of the system is nothing on some desktops.
        sequence: "Ctrl+Q"
        onActivated: root.close()
    }

    GridLayout {
        anchors.fill: parent
        columns: root.wide ? 2 : 1
        rowSpacing: 0
        columnSpacing: 0

        NavigationBar {
            upright: root.wide
            Layout.row: root.wide ? 0 : 1
            Layout.column: 0
            Layout.fillWidth: !root.wide
            Layout.fillHeight: root.wide
        }
        StackLayout {
            currentIndex: Navigation.page
            Layout.row: 0
            Layout.column: root.wide ? 1 : 0
            Layout.fillWidth: true
            Layout.fillHeight: true

            DivesPage {}
            // Built when it is first looked at.
            Loader {
                active: false
                sourceComponent: ComputerPage {}

                onVisibleChanged: active = active || visible
                Component.onCompleted: active = visible
            }
            Loader {
                active: false
                sourceComponent: SettingsPage {}

                onVisibleChanged: active = active || visible
                Component.onCompleted: active = visible
            }
        }
    }
}
