// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Dialogs
import QtQuick.Layouts
import Varda
import Logbook

/** New firmware from a file: what it is, whether it fits, and how far it is. */
Card {
    id: root

    /** What the computer has; it may not be known. */
    property string installed
    /** What was chosen: the image and what it says about itself. */
    property var file: null
    readonly property bool usable: file !== null && !file.error
    readonly property bool sameVersion: run.failure && run.failure.reason === VardaJob.Reason.SameVersion
    readonly property real fraction: run.job && run.job.total > 0 ? run.job.done / run.job.total : 0
    property bool force: false

    /** The versions have changed. */
    signal updated

    function open(address: url) {
        run.clear();
        force = false;
        file = Firmware.read(address);
    }
    function upload() {
        const image = file;
        const again = force;
        run.start(() => AppComputer.uploadFirmware(image.data, image.fileName, again));
    }
    function kindName(kind: int): string {
        switch (kind) {
        case Firmware.WithHeader:
            return qsTr("Firmware");
        case Firmware.WithoutHeader:
            return qsTr("Firmware of the older kind");
        case Firmware.Bootloader:
            return qsTr("Bootloader");
        default:
            return qsTr("Unknown");
        }
    }
    function refusal(): string {
        if (!file || usable)
            return "";
        return file.kind === Firmware.Empty ? qsTr("The file is empty or could not be read")
                                            : Reasons.title(VardaJob.Rejected, VardaJob.Reason.UnknownImage);
    }

    Layout.fillWidth: true
    Accessible.name: qsTr("Firmware")

    RowLayout {
        spacing: Theme.unit

        Symbol {
            drawing: "firmware"
            color: Theme.accent
        }
        PlainText {
            text: qsTr("Firmware")
            font.pixelSize: Theme.title
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
            Layout.fillWidth: true
        }
    }
    PlainText {
        visible: !root.file
        text: qsTr("Installs new firmware from a file that is made for your model.")
        color: Theme.faint
        Layout.fillWidth: true
    }
    ColumnLayout {
        visible: root.usable
        spacing: Theme.unit
        Layout.fillWidth: true

        Field {
            name: qsTr("File")
            value: root.file ? root.file.fileName : ""
        }
        Field {
            objectName: "kind"
            name: qsTr("Kind")
            value: root.usable ? root.kindName(root.file.kind) : ""
        }
        Field {
            name: qsTr("Name")
            value: root.usable ? root.file.name : ""
        }
        Field {
            objectName: "version"
            name: qsTr("Version")
            value: root.usable ? root.file.versionStr || qsTr("not known") : ""
        }
        Field {
            name: qsTr("In the computer")
            value: root.installed
        }
        Field {
            name: qsTr("Size")
            value: root.usable ? Units.size(root.file.size) : ""
        }
        Field {
            objectName: "checksum"
            name: qsTr("Checksum")
            value: root.usable ? root.file.checksum.toString(16).toUpperCase().padStart(4, "0") : ""
        }
    }
    ErrorBox {
        objectName: "fileRefused"
        title: root.refusal()
        remedy: root.file && root.file.kind === Firmware.Empty ? qsTr("Look whether you may read it, or choose another one.")
                                             : qsTr("Choose a file that is made for this model.")
        details: root.file ? root.file.error : ""
        retryText: qsTr("Choose another file…")
        Layout.fillWidth: true
        onRetry: dialog.open()
    }
    Flow {
        visible: !run.running && (!root.file || root.usable)
        spacing: Theme.unit
        Layout.fillWidth: true

        ActionButton {
            objectName: "install"
            visible: root.usable && !run.done && !run.failure
            primary: true
            text: qsTr("Install…")
            onClicked: confirm.open()
        }
        ActionButton {
            objectName: "choose"
            text: root.file ? qsTr("Choose another file…") : qsTr("Choose a file…")
            onClicked: dialog.open()
        }
    }
    Progress {
        objectName: "firmwareProgress"
        visible: run.running
        label: qsTr("Installation")
        indeterminate: root.fraction === 0
        value: root.fraction
        Layout.fillWidth: true
    }
    JobStatus {
        run: run
        busyText: root.fraction === 0 ? qsTr("Preparing")
                                      : [qsTr("%1 of %2", "sizes").arg(Units.size(run.job.done))
                                                                  .arg(Units.size(run.job.total)),
                                         left.text].filter(each => each).join(", ")
        doneText: qsTr("Installed. The computer may restart now.")
        retryText: root.sameVersion ? qsTr("Install it again…") : qsTr("Try again")
        onRetry: {
            root.force = root.sameVersion;
            confirm.open();
        }
    }
    PlainText {
        visible: run.running
        text: qsTr("Leave the computer switched on and near until this is finished.")
        color: Theme.faint
        Layout.fillWidth: true
    }

    JobRun {
        id: run

        onSucceeded: root.updated()
    }
    TimeLeft {
        id: left

        job: run.job
    }
    FileDialog {
        id: dialog

        title: qsTr("Firmware")
        nameFilters: [qsTr("Firmware (*.bin)"), qsTr("All files (*)")]
        onAccepted: root.open(selectedFile)
    }
    ConfirmDialog {
        id: confirm

        objectName: "confirmFirmware"
        title: !root.usable ? "" : root.file.kind === Firmware.Bootloader
               ? qsTr("Replace the bootloader?") : qsTr("Replace the firmware?")
        text: (root.usable && root.file.versionStr
               ? qsTr("%1 gets version %2.").arg(Preferences.device.name || Preferences.device.address)
                                            .arg(root.file.versionStr) + " " : "")
              + qsTr("Synchronise first, so that your dives are safe. See that the battery is charged, and do not "
                     + "interrupt the installation.")
        actionText: qsTr("Install")
        onConfirmed: root.upload()
    }
}
