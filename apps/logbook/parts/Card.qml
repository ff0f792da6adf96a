// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Logbook

/** A group of things that belong together, with a heading. */
Rectangle {
    id: root

    property string title
    default property alias content: column.data
    property alias spacing: column.spacing

    implicitWidth: column.implicitWidth + 4 * Theme.unit
    implicitHeight: column.implicitHeight + 4 * Theme.unit
    radius: 1.5 * Theme.radius
    color: Theme.surface
    border {
        width: 1
        color: Theme.line
    }
    Accessible.role: Accessible.Grouping
    Accessible.name: title

    ColumnLayout {
        id: column

        spacing: 1.5 * Theme.unit
        // Not down to the bottom: the height of the card follows from this one.
        anchors {
            left: parent.left
            right: parent.right
            top: parent.top
            margins: 2 * Theme.unit
        }

        PlainText {
            visible: root.title
            Layout.fillWidth: true
            text: root.title
            font.pixelSize: Theme.title
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
        }
    }
}
