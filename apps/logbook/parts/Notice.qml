// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Logbook

/** One line about what has just been done, with the way back. */
Rectangle {
    id: root

    property string text
    property string actionText

    signal action

    function show(text: string, actionText: string) {
        root.text = text;
        root.actionText = actionText;
    }

    visible: text
    implicitWidth: row.implicitWidth + 3 * Theme.unit
    implicitHeight: Math.max(6 * Theme.unit, row.implicitHeight + 2 * Theme.unit)
    radius: Theme.radius
    color: Theme.surface
    border {
        width: 1
        color: Theme.outline
    }
    Accessible.role: Accessible.AlertMessage
    Accessible.name: text

    RowLayout {
        id: row

        spacing: Theme.unit
        anchors {
            fill: parent
            leftMargin: 2 * Theme.unit
            rightMargin: Theme.unit
        }

        PlainText {
            text: root.text
            Layout.fillWidth: true
            Accessible.ignored: true
        }
        ActionButton {
            visible: root.actionText
            text: root.actionText
            onClicked: {
                root.text = "";
                root.action();
            }
        }
        IconButton {
            symbol: "close"
            text: qsTr("Close")
            onClicked: root.text = ""
        }
    }
}
