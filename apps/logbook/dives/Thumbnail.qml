// SPDX-License-Identifier: MIT
import QtQuick
import Varda
import Logbook

/** The profile of a dive in the size of a stamp. */
Rectangle {
    id: root

    property var dive: undefined

    radius: Theme.half
    color: Theme.sunken

    Loader {
        active: root.dive !== undefined
        anchors {
            fill: parent
            margins: Theme.half
        }
        sourceComponent: DiveProfile {
            dive: root.dive
            thumbnail: true
            interactive: false
            theme: Theme.dark ? DiveProfile.Dark : DiveProfile.Light
            Accessible.ignored: true
        }
    }
}
