// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Dialogs
import QtQuick.Layouts
import Varda
import Logbook

/** The screen layouts, and which one each dive mode uses. */
Section {
    id: root

    property var layouts: []
    property var active: []
    property int removing: -1
    /** What was read may not hold any more. */
    readonly property bool busy: writing.running || reading.running
    property string fileError
    /** Where the layout goes that is being read. */
    property url saving

    function add(file: url) {
        const opened = LocalFile.read(file);
        fileError = opened.error;
        if (!opened.error)
            writing.start(() => AppComputer.addLayout(opened.bytes));
    }
    function save(index: int, file: url) {
        saving = file;
        writing.start(() => AppComputer.readLayout(index));
    }
    function remove(index: int) {
        writing.start(() => AppComputer.removeLayout(index));
    }
    function activate(mode: int, index: int) {
        writing.start(() => AppComputer.activateLayout(mode, index));
    }
    function nameOf(index: int): string {
        const found = layouts.find(each => each.first === index);
        return found ? found.name || qsTr("Layout %1").arg(index) : "";
    }

    heading: qsTr("Screens")
    symbol: "layout"
    about: qsTr("The screen layouts in the computer, and the one of each dive mode.")
    onRead: reading.start(() => AppComputer.readLayouts(), () => AppComputer.readActiveLayouts())

    Connections {
        target: root.reading
        function onGot(index, value) {
            if (index === 0)
                root.layouts = value;
            else
                root.active = value;
        }
        function onSucceeded() {
            root.filled = true;
        }
    }
    JobRun {
        id: writing

        onGot: (index, layout) => {
            if (String(root.saving))
                root.fileError = LocalFile.write(root.saving, layout);
        }
        onSucceeded: {
            if (!String(root.saving))
                root.read();
        }
        onEnded: root.saving = ""
    }

    PlainText {
        visible: !root.layouts.length
        text: qsTr("There are no layouts in the computer.")
        color: Theme.faint
        Layout.fillWidth: true
    }
    ColumnLayout {
        spacing: 0
        Layout.fillWidth: true

        Repeater {
            model: root.layouts

            delegate: RowLayout {
                id: line

                required property var modelData
                readonly property string name: modelData.name || qsTr("Layout %1").arg(modelData.first)

                spacing: 0

                PlainText {
                    text: line.name
                    elide: Text.ElideRight
                    maximumLineCount: 2
                    Layout.fillWidth: true
                }
                IconButton {
                    symbol: "export"
                    text: qsTr("Save %1 in a file").arg(line.name)
                    enabled: !root.busy
                    onClicked: {
                        saveDialog.index = line.modelData.first;
                        saveDialog.open();
                    }
                }
                IconButton {
                    objectName: "remove " + line.modelData.first
                    symbol: "delete"
                    text: qsTr("Remove %1").arg(line.name)
                    enabled: !root.busy
                    onClicked: {
                        root.removing = line.modelData.first;
                        confirm.open();
                    }
                }
            }
        }
    }
    ActionButton {
        objectName: "addLayout"
        symbol: "import"
        text: qsTr("Add from a file…")
        enabled: !root.busy
        onClicked: openDialog.open()
    }

    PlainText {
        text: qsTr("In use")
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
        Layout.topMargin: Theme.unit
        Layout.fillWidth: true
    }
    Repeater {
        model: root.active.length

        delegate: RowLayout {
            id: mode

            required property int index
            readonly property var choices: [{ text: qsTr("None"), value: -1 },
                ...root.layouts.map(each => ({ text: root.nameOf(each.first), value: each.first }))]

            spacing: Theme.unit

            PlainText {
                text: qsTr("Dive mode %1").arg(mode.index + 1)
                color: Theme.faint
                Layout.fillWidth: true
                Accessible.ignored: true
            }
            ChoiceBox {
                objectName: "mode " + mode.index
                label: qsTr("Layout of dive mode %1").arg(mode.index + 1)
                model: mode.choices
                textRole: "text"
                valueRole: "value"
                currentIndex: mode.choices.findIndex(each => each.value === root.active[mode.index])
                enabled: !root.busy
                Layout.preferredWidth: 24 * Theme.unit
                onActivated: index => root.activate(mode.index, mode.choices[index].value)
            }
        }
    }
    PlainText {
        objectName: "fileError"
        visible: text
        text: root.fileError
        color: Theme.bad
        Accessible.role: Accessible.AlertMessage
        Layout.fillWidth: true
    }
    JobStatus {
        run: writing
        busyText: String(root.saving) ? qsTr("Reading the layout") : qsTr("Changing the layouts")
        hint: qsTr("Choose another layout, or remove one to make room.")
        onRetry: writing.retry()
    }

    FileDialog {
        id: openDialog

        title: qsTr("Add a layout")
        onAccepted: root.add(selectedFile)
    }
    SaveDialog {
        id: saveDialog

        property int index: -1

        title: qsTr("Save the layout")
        defaultSuffix: "layout"
        onChosen: file => root.save(index, file)
    }
    ConfirmDialog {
        id: confirm

        objectName: "confirmRemove"
        title: qsTr("Remove this layout?")
        text: qsTr("“%1” is lost unless you have saved it in a file. Dive modes that use it are left without a layout.")
                  .arg(root.nameOf(root.removing))
        actionText: qsTr("Remove")
        onConfirmed: root.remove(root.removing)
    }
}
