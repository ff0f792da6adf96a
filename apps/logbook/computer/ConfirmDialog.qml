// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Logbook

/** Asks before something that cannot be undone; says what is lost by it. */
AppDialog {
    id: root

    default property alias extra: column.data
    property string text
    required property string actionText
    property bool danger: true

    signal confirmed

    onOpened: cancel.forceActiveFocus(Qt.TabFocusReason)

    contentItem: ColumnLayout {
        id: column

        spacing: 1.5 * Theme.unit

        PlainText {
            objectName: "question"
            visible: text
            text: root.text
            lineHeight: 1.2
            Layout.fillWidth: true
        }
    }
    buttons: [
        ActionButton {
            objectName: "confirm"
            primary: true
            danger: root.danger
            text: root.actionText
            onClicked: {
                root.close();
                root.confirmed();
            }
        },
        ActionButton {
            id: cancel

            objectName: "decline"
            text: qsTr("Cancel")
            onClicked: root.close()
        }
    ]
}
