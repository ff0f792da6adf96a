// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Logbook

/** The heading of a pane, with the way back in a narrow window. */
RowLayout {
    id: root

    required property string title
    property string subtitle
    property bool closable: false
    default property alias actions: actions.data

    signal back

    spacing: Theme.unit
    Layout.fillWidth: true

    IconButton {
        objectName: "back"
        visible: root.closable
        symbol: "back"
        text: qsTr("Back")
        onClicked: root.back()
    }
    ColumnLayout {
        spacing: Theme.half / 2
        Layout.fillWidth: true

        PlainText {
            objectName: "paneTitle"
            text: root.title
            font.pixelSize: Theme.headline
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
            Layout.fillWidth: true
        }
        PlainText {
            visible: text
            text: root.subtitle
            color: Theme.faint
            Layout.fillWidth: true
        }
    }
    Row {
        id: actions

        spacing: 0
        Layout.alignment: Qt.AlignTop
    }
}
