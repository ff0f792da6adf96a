// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Dialogs
import QtQuick.Layouts
import Varda
import Logbook

/** Writes the chosen dives to a file: what kind, where, and how it ended. */
AppDialog {
    id: root

    property var ids: []
    property string format: "uddf"
    readonly property alias writer: exporter

    function ask(ids: var) {
        root.ids = ids;
        exporter.reset();
        open();
    }
    function choosePlace() {
        if (exporter.isPicture(format) && ids.length > 1)
            folderDialog.open();
        else
            fileDialog.open();
    }

    title: qsTr("Export %n dive(s)", "", ids.length)
    closePolicy: exporter.busy ? AppDialog.NoAutoClose : AppDialog.CloseOnEscape
    buttons: [
        ActionButton {
            visible: !exporter.done
            enabled: !exporter.busy
            primary: true
            text: qsTr("Choose a place…")
            onClicked: root.choosePlace()
        },
        ActionButton {
            visible: !exporter.busy
            text: exporter.done ? qsTr("Close") : qsTr("Cancel")
            onClicked: root.close()
        },
        ActionButton {
            visible: exporter.busy
            text: qsTr("Cancel")
            onClicked: exporter.cancel()
        }
    ]

    DiveExporter {
        id: exporter
    }
    contentItem: ColumnLayout {
        spacing: Theme.half

        Repeater {
            model: [
                { format: "uddf", name: "UDDF", text: qsTr("For other dive logs") },
                { format: "csv", name: "CSV", text: qsTr("For a spreadsheet, one line a dive") },
                { format: "samples", name: qsTr("CSV with samples"), text: qsTr("For a spreadsheet, one line a sample") },
                { format: "json", name: "JSON", text: qsTr("Everything that the computer said") },
                { format: "svg", name: "SVG", text: qsTr("A picture of the profile") },
                { format: "pdf", name: "PDF", text: qsTr("A page to print") }
            ]

            delegate: Choice {
                required property var modelData

                objectName: modelData.format
                visible: !exporter.done && !exporter.busy
                text: modelData.name
                description: modelData.text
                checked: root.format === modelData.format
                Layout.fillWidth: true
                onToggled: root.format = modelData.format
            }
        }
        Progress {
            visible: exporter.busy
            label: qsTr("Export")
            value: exporter.progress
            Layout.fillWidth: true
        }
        ErrorBox {
            title: exporter.failed ? qsTr("The dives could not be written") : ""
            remedy: qsTr("Choose another place, or make room there.")
            details: exporter.errorText
            onRetry: root.choosePlace()
            Layout.fillWidth: true
        }
        PlainText {
            objectName: "written"
            visible: exporter.done && !exporter.failed
            text: qsTr("%n dive(s) written to %1", "", root.ids.length).arg(exporter.place)
            wrapMode: Text.Wrap
            Accessible.role: Accessible.AlertMessage
            Layout.fillWidth: true
        }
        Repeater {
            model: exporter.messages

            delegate: PlainText {
                required property string modelData

                text: modelData
                color: Theme.faint
                Layout.fillWidth: true
            }
        }
    }

    SaveDialog {
        id: fileDialog

        title: root.title
        defaultSuffix: exporter.suffixOf(root.format)
        nameFilters: [exporter.suffixOf(root.format).toUpperCase() + " (*." + exporter.suffixOf(root.format) + ")"]
        onChosen: file => exporter.write(root.format, root.ids, file)
    }
    FolderDialog {
        id: folderDialog

        title: root.title
        onAccepted: exporter.writePictures(root.format, root.ids, selectedFolder)
    }
}
