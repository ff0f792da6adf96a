// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Logbook

/** What has failed, the one remedy, and the way to try again. */
Rectangle {
    id: root

    property string title
    property string remedy
    /** The library's own words, for whoever helps. */
    property string details
    property string retryText: qsTr("Try again")
    property bool retryable: true

    signal retry

    visible: title
    implicitHeight: column.implicitHeight + 3 * Theme.unit
    implicitWidth: 40 * Theme.unit
    radius: Theme.radius
    color: Theme.badSurface
    border {
        width: 1
        color: Theme.bad
    }
    Accessible.role: Accessible.AlertMessage
    Accessible.name: title
    Accessible.description: remedy

    ColumnLayout {
        id: column

        spacing: Theme.unit
        anchors {
            fill: parent
            margins: 1.5 * Theme.unit
        }

        RowLayout {
            spacing: Theme.unit

            Symbol {
                drawing: "warning"
                color: Theme.bad
                Layout.alignment: Qt.AlignTop
            }
            PlainText {
                text: root.title
                font.weight: Font.DemiBold
                color: Theme.bad
                Layout.fillWidth: true
            }
        }
        PlainText {
            visible: text
            text: root.remedy
            Layout.fillWidth: true
        }
        PlainText {
            visible: details.checked && text
            text: root.details
            font.pixelSize: Theme.small
            Layout.fillWidth: true
        }
        Flow {
            spacing: Theme.unit
            Layout.fillWidth: true

            ActionButton {
                visible: root.retryable
                text: root.retryText
                onClicked: root.retry()
            }
            ActionButton {
                id: details

                visible: root.details
                checkable: true
                Accessible.onToggleAction: press()
                text: checked ? qsTr("Hide details") : qsTr("Details")
            }
        }
    }
}
