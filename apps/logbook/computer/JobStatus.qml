// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Varda
import Logbook

/** Where the user has asked for it: that it runs, that it is done, or why it is not. */
ColumnLayout {
    id: root

    required property JobRun run
    property string busyText: qsTr("Reading")
    /** Said after success. */
    property string doneText
    /** What to do if the computer refuses what was entered. */
    property string hint
    property string retryText: qsTr("Try again")
    property bool stoppable: true

    signal retry

    spacing: Theme.unit
    visible: run.running || run.failure || run.cancelled || (run.done && doneText)
    Layout.fillWidth: true

    RowLayout {
        visible: root.run.running
        spacing: Theme.unit

        Busy {
            text: root.run.stateText || root.busyText
            Layout.fillWidth: true
        }
        ActionButton {
            objectName: "stop"
            visible: root.stoppable
            text: qsTr("Cancel")
            onClicked: root.run.cancel()
        }
    }
    ErrorBox {
        objectName: "error"
        title: Reasons.titleOf(root.run.failure)
        remedy: Reasons.remedyOf(root.run.failure, root.hint)
        details: Reasons.detailsOf(root.run.failure)
        retryText: root.retryText
        Layout.fillWidth: true
        onRetry: root.retry()
    }
    Examination {
        failure: root.run.failure
    }
    RowLayout {
        visible: !root.run.running && (root.run.cancelled || (root.run.done && root.doneText))
        spacing: Theme.unit

        Symbol {
            drawing: root.run.done ? "check" : "close"
            color: root.run.done ? Theme.good : Theme.faint
            Layout.alignment: Qt.AlignTop
        }
        PlainText {
            objectName: "outcome"
            text: root.run.done ? root.doneText : qsTr("Cancelled")
            color: root.run.done ? Theme.text : Theme.faint
            Accessible.role: Accessible.AlertMessage
            Layout.fillWidth: true
        }
    }
}
