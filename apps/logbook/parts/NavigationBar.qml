// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Logbook

/** The pages: at the left of a wide window, at the bottom of a narrow one. */
Rectangle {
    id: root

    property bool upright: true

    implicitWidth: 12 * Theme.unit
    implicitHeight: 8 * Theme.unit
    color: Theme.surface
    Accessible.role: Accessible.PageTabList
    Accessible.name: qsTr("Pages")

    Rectangle {
        x: root.upright ? parent.width - width : 0
        width: root.upright ? 1 : parent.width
        height: root.upright ? parent.height : 1
        color: Theme.line
    }

    GridLayout {
        columns: root.upright ? 1 : 3
        columnSpacing: 0
        rowSpacing: Theme.unit
        anchors {
            fill: parent
            topMargin: root.upright ? 2 * Theme.unit : 0
        }

        NavigationItem {
            text: qsTr("Dives")
            symbol: "dives"
            page: Navigation.Dives
        }
        NavigationItem {
            text: qsTr("Computer")
            symbol: "computer"
            page: Navigation.Computer
        }
        NavigationItem {
            text: qsTr("Settings")
            symbol: "settings"
            page: Navigation.Settings
        }
        Item {
            visible: root.upright
            Layout.fillHeight: true
        }
    }
}
