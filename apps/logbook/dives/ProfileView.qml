// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Varda
import Logbook

/** The profile of a dive, or of several over each other, with the values under the cursor. */
ColumnLayout {
    id: root

    property var dive: undefined
    property var others: []
    property var names: []
    readonly property alias profile: profile

    spacing: Theme.unit

    DiveProfile {
        id: profile

        objectName: "profile"
        dive: root.dive
        others: root.others
        names: root.names
        textSize: Theme.small
        background: Theme.surface
        units: Units.metric ? DiveProfile.Metric : DiveProfile.Imperial
        theme: Theme.dark ? DiveProfile.Dark : DiveProfile.Light
        activeFocusOnTab: true
        Accessible.role: Accessible.Chart
        Accessible.name: qsTr("Profile")
        Accessible.description: summary
        Layout.fillWidth: true
        Layout.fillHeight: true
    }
    Flow {
        spacing: 3 * Theme.unit
        Layout.fillWidth: true

        readonly property bool pointing: !isNaN(profile.cursorTime)

        PlainText {
            objectName: "reading"
            readonly property var parts: !parent.pointing ? [] : [Units.duration(profile.cursorTime),
                Units.depth(profile.cursorDepth),
                isNaN(profile.cursorTemperature) ? "" : Units.temperature(profile.cursorTemperature),
                profile.cursorGas]

            width: Math.min(implicitWidth, parent.width)
            height: reset.visible ? Math.max(implicitHeight, reset.implicitHeight) : implicitHeight
            verticalAlignment: Text.AlignVCenter
            text: parent.pointing ? parts.filter(each => each).join("   ·   ")
                                  : qsTr("Point at the profile, or use the arrow keys, to read the values. Zoom with + and −.")
            color: parent.pointing ? Theme.text : Theme.faint
            font.weight: parent.pointing ? Font.DemiBold : Font.Normal
        }
        ActionButton {
            id: reset

            visible: profile.zoomed
            symbol: "reset"
            text: qsTr("Whole dive")
            onClicked: profile.resetZoom()
        }
    }
}
