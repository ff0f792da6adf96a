// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Varda
import Logbook

/** The computer and its connection; the way to its dives. */
Card {
    id: root

    readonly property bool wide: width >= 72 * Theme.unit
    readonly property alias syncing: sync.running
    /** Whether something asks the computer. */
    readonly property bool busy: AppComputer.currentJob
    /** The link went down and nobody has asked for it again. */
    property bool lost: false
    readonly property bool storeFailed: sync.failure !== null && sync.failure.reason === VardaJob.Reason.StoreFailed
    readonly property bool stopping: sync.running && sync.job && sync.job.state === VardaJob.Cancelling

    /** The computer has been reached. */
    signal reached
    signal otherWanted

    function synchronise() {
        sync.start(() => AppComputer.sync(AppStore));
    }
    function connectNow() {
        link.start(() => AppComputer.connectToComputer());
    }
    function disconnectNow() {
        link.start(() => AppComputer.disconnectFromComputer());
    }

    function stateName(state: int): string {
        switch (state) {
        case VardaComputer.Searching:
            return qsTr("Searching");
        case VardaComputer.Connecting:
            return qsTr("Connecting");
        case VardaComputer.Connected:
            return qsTr("Connected");
        case VardaComputer.Settling:
            return qsTr("Waiting for the end of an answer");
        case VardaComputer.Disconnecting:
            return qsTr("Disconnecting");
        default:
            return qsTr("Not connected");
        }
    }
    function outcome(): string {
        const job = sync.job as SyncJob;
        if (!job || sync.running)
            return "";
        const saved = job.added ? qsTr("%n new dive(s) saved.", "", job.added)
                                : sync.done ? qsTr("No new dives.") : "";
        // A list of numbers, of a type that is C++ only.
        const damaged = job.damaged.length // qmllint disable
                      ? qsTr("%n dive(s) arrived damaged. The next synchronisation asks for them again.", "",
                             job.damaged.length) : "";
        return Units.list([sync.cancelled ? qsTr("Cancelled.") : "", saved, damaged], " ");
    }
    function progressText(): string {
        const job = sync.job;
        if (!job || job.state === VardaJob.Finished)
            return "";
        if (sync.stateText)
            return sync.stateText;
        if (job.total < 0)
            return qsTr("Looking for new dives");
        return qsTr("Dive %1 of %2").arg(Units.count(Math.min(job.done + 1, job.total))).arg(Units.count(job.total));
    }

    Accessible.name: qsTr("Connection")

    Connections {
        target: AppComputer
        function onLinkLost() {
            root.lost = true;
        }
        function onStateChanged() {
            if (AppComputer.state === VardaComputer.Connected)
                root.lost = false;
        }
    }
    JobRun {
        id: sync

        onSucceeded: root.reached()
    }
    JobRun {
        id: link

        onSucceeded: {
            root.lost = false;
            if (AppComputer.state === VardaComputer.Connected)
                root.reached();
        }
    }
    TimeLeft {
        id: left

        job: sync.job
    }

    GridLayout {
        columns: root.wide ? 3 : 2
        columnSpacing: 2 * Theme.unit
        rowSpacing: 2 * Theme.unit
        Layout.fillWidth: true

        Rectangle {
            implicitWidth: 7 * Theme.unit
            implicitHeight: 7 * Theme.unit
            radius: width / 2
            color: Theme.chosen

            Symbol {
                anchors.centerIn: parent
                drawing: "computer"
                size: 4 * Theme.unit
                color: Theme.accent
            }
        }
        ColumnLayout {
            spacing: Theme.half
            Layout.fillWidth: true

            PlainText {
                objectName: "name"
                text: Preferences.device.name || Preferences.device.address
                font.pixelSize: Theme.headline
                font.weight: Font.DemiBold
                Accessible.role: Accessible.Heading
                Layout.fillWidth: true
            }
            RowLayout {
                spacing: Theme.unit

                Rectangle {
                    readonly property bool on: AppComputer.state === VardaComputer.Connected

                    implicitWidth: 1.25 * Theme.unit
                    implicitHeight: implicitWidth
                    radius: width / 2
                    color: on ? Theme.good : "transparent"
                    border {
                        width: 2
                        color: on ? Theme.good : root.lost ? Theme.bad : Theme.outline
                    }
                }
                PlainText {
                    objectName: "state"
                    text: root.stateName(AppComputer.state)
                    color: Theme.faint
                    Layout.fillWidth: true
                }
            }
        }
        ActionButton {
            objectName: "synchronise"
            primary: true
            symbol: "sync"
            text: sync.running ? qsTr("Synchronising") : qsTr("Synchronise")
            enabled: AppStore.open && !sync.running
            Layout.columnSpan: root.wide ? 1 : 2
            Layout.fillWidth: !root.wide
            Layout.alignment: Qt.AlignVCenter
            onClicked: root.synchronise()
        }
    }

    ColumnLayout {
        visible: sync.running
        spacing: Theme.unit
        Layout.fillWidth: true

        Progress {
            objectName: "progress"
            label: qsTr("Synchronisation")
            indeterminate: !sync.job || sync.job.total <= 0
            value: !sync.job || sync.job.total <= 0 ? 0 : sync.job.done / sync.job.total
            Accessible.description: root.progressText()
            Layout.fillWidth: true
        }
        RowLayout {
            spacing: Theme.unit

            PlainText {
                objectName: "progressText"
                text: Units.list([root.progressText(), sync.stateText ? "" : left.text], ", ")
                color: Theme.faint
                Layout.fillWidth: true
            }
            ActionButton {
                objectName: "cancel"
                text: qsTr("Cancel")
                enabled: !root.stopping
                Accessible.name: qsTr("Cancel the synchronisation")
                onClicked: sync.cancel()
            }
        }
    }

    // What has come in before a failure stays: that is said first.
    GridLayout {
        visible: outcome.text
        columns: root.wide ? 3 : 2
        columnSpacing: Theme.unit
        rowSpacing: Theme.unit

        Symbol {
            drawing: sync.done ? "check" : "dives"
            color: sync.done ? Theme.good : Theme.faint
        }
        PlainText {
            id: outcome

            objectName: "syncOutcome"
            text: root.outcome()
            Accessible.role: Accessible.AlertMessage
            Layout.fillWidth: true
        }
        ActionButton {
            objectName: "showDives"
            visible: sync.job && (sync.job as SyncJob).added > 0
            Layout.columnSpan: root.wide ? 1 : 2
            text: qsTr("Show the dives")
            onClicked: Navigation.page = Navigation.Dives
        }
    }
    ErrorBox {
        objectName: "syncError"
        // What is wrong with the file is said below.
        title: root.storeFailed && AppStore.error !== LogbookError.NoError ? "" : Reasons.titleOf(sync.failure)
        remedy: Reasons.remedyOf(sync.failure, "")
        details: Reasons.detailsOf(sync.failure)
        Layout.fillWidth: true
        onRetry: root.synchronise()
    }
    StoreError {
        objectName: "storeError"
        Layout.fillWidth: true
        onReopened: {
            if (root.storeFailed)
                root.synchronise();
        }
    }
    ErrorBox {
        objectName: "linkError"
        title: sync.running ? "" : Reasons.titleOf(link.failure)
        remedy: Reasons.remedyOf(link.failure, "")
        details: Reasons.detailsOf(link.failure)
        Layout.fillWidth: true
        onRetry: root.connectNow()
    }
    Examination {
        failure: sync.running || link.running ? null : link.failure || sync.failure
    }
    ErrorBox {
        id: lostBox

        objectName: "lostError"
        title: root.lost && !root.busy && !link.running && !link.failure && !sync.failure
               && AppComputer.state === VardaComputer.Unconnected
             ? Reasons.title(VardaJob.LinkLost, VardaJob.Reason.LinkFailed) : ""
        remedy: qsTr("Keep the computer switched on and near.")
        retryText: qsTr("Connect again")
        Layout.fillWidth: true
        onRetry: root.connectNow()
    }

    Flow {
        spacing: Theme.unit
        Layout.fillWidth: true

        ActionButton {
            objectName: "connect"
            visible: AppComputer.state === VardaComputer.Unconnected && !link.running && !link.failure && !lostBox.visible
            text: qsTr("Connect")
            enabled: !root.busy
            onClicked: root.connectNow()
        }
        ActionButton {
            objectName: "stopConnecting"
            visible: link.running
            text: qsTr("Stop connecting")
            onClicked: link.cancel()
        }
        ActionButton {
            objectName: "disconnect"
            visible: AppComputer.state === VardaComputer.Connected && !link.running
            text: qsTr("Disconnect")
            enabled: !sync.running
            onClicked: root.disconnectNow()
        }
        ActionButton {
            objectName: "other"
            text: qsTr("Another computer…")
            enabled: !sync.running
            onClicked: root.otherWanted()
        }
    }
}
