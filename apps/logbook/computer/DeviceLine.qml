// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Logbook

/** A computer in reach. */
AbstractButton {
    id: root

    required property string name
    required property string address
    required property int rssi
    required property var record
    readonly property bool isRemembered: Preferences.device.valid && Preferences.device.address === address
    readonly property string signal: rssi === 0 ? "" : rssi >= -60 ? qsTr("Strong signal")
                                                 : rssi >= -80 ? qsTr("Medium signal") : qsTr("Weak signal")

    objectName: "device " + address
    implicitHeight: Math.max(7 * Theme.unit, implicitContentHeight + 2 * Theme.unit)
    padding: Theme.unit
    Accessible.name: name || address
    Accessible.description: Units.list([address, root.signal, isRemembered ? qsTr("chosen now") : ""], ", ")
    Accessible.onPressAction: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    contentItem: RowLayout {
        spacing: 1.5 * Theme.unit

        Symbol {
            drawing: "computer"
            size: 3 * Theme.unit
            color: Theme.accent
        }
        ColumnLayout {
            spacing: 2
            Layout.fillWidth: true

            PlainText {
                text: root.name || root.address
                font.weight: Font.DemiBold
                elide: Text.ElideRight
                maximumLineCount: 2
                Layout.fillWidth: true
                Accessible.ignored: true
            }
            PlainText {
                text: Units.list([root.address, root.signal], " · ")
                font.pixelSize: Theme.small
                color: Theme.faint
                Layout.fillWidth: true
                Accessible.ignored: true
            }
        }
        Symbol {
            visible: root.isRemembered
            drawing: "check"
            color: Theme.accent
        }
    }
    background: FocusRing {
        control: root

        Rectangle {
            anchors.fill: parent
            radius: Theme.radius
            color: root.isRemembered ? Theme.chosen : root.hovered || root.down ? Theme.hover : Theme.surface
            border {
                width: 1
                color: Theme.line
            }
        }
    }
}
