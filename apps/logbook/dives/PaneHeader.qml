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

    spacing: 0
    Layout.fillWidth: true

    // A layout does not see that an item appears while its page is hidden, but it sees its size.
    Loader {
        active: root.closable
        sourceComponent: IconButton {
            objectName: "back"
            symbol: "back"
            text: qsTr("Back")
            onClicked: root.back()
        }
        Layout.rightMargin: active ? Theme.unit : 0
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
        Layout.leftMargin: Theme.unit
        Layout.alignment: Qt.AlignTop
    }
}
