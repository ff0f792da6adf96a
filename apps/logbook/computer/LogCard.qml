// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Varda
import Logbook

/** What the computer has noted about itself. */
Section {
    id: root

    property string fileError
    property bool saved: false
    readonly property bool wide: width >= 60 * Theme.unit

    function save(file: url) {
        const lines = [];
        for (let i = 0; i < log.count; ++i) {
            const each = log.get(i);
            lines.push(LocalTime.plain(each.time) + "  " + each.message);
        }
        fileError = LocalFile.write(file, lines.join("\n") + "\n");
        saved = !fileError;
    }

    heading: qsTr("System log")
    symbol: "log"
    about: qsTr("What the computer has noted about itself, for whoever helps you with it.")
    onRead: {
        saved = false;
        reading.start(() => AppComputer.readBinaryLog());
    }

    Connections {
        target: root.reading
        function onGot(index, records) {
            log.records = records;
            root.filled = true;
        }
    }
    LogModel {
        id: log
    }

    PlainText {
        objectName: "logCount"
        text: log.count ? qsTr("%n entry(ies), in English", "", log.count) : qsTr("The log is empty.")
        font.pixelSize: Theme.small
        color: Theme.faint
        Layout.fillWidth: true
    }
    Rectangle {
        visible: log.count
        implicitHeight: Math.min(list.contentHeight + 2, 44 * Theme.unit)
        color: "transparent"
        radius: Theme.half
        border {
            width: list.activeFocus ? 2 : 1
            color: list.activeFocus ? Theme.accent : Theme.line
        }
        Layout.fillWidth: true

        ListView {
            id: list

            objectName: "log"
            clip: true
            boundsBehavior: Flickable.StopAtBounds
            activeFocusOnTab: true
            keyNavigationEnabled: true
            highlightFollowsCurrentItem: true
            model: log
            Accessible.role: Accessible.List
            Accessible.name: root.heading
            anchors {
                fill: parent
                margins: 1
            }
            ScrollBar.vertical: ScrollBar {
                Accessible.name: qsTr("Scroll")
            }

            delegate: Rectangle {
                id: line

                required property int index
                required property real time
                required property string message

                width: list.width
                height: entry.height + 1.5 * Theme.unit
                color: ListView.isCurrentItem && list.activeFocus ? Theme.chosen
                                                                  : index % 2 ? "transparent" : Theme.sunken
                Accessible.role: Accessible.ListItem
                Accessible.name: LocalTime.text(time) + ": " + message

                GridLayout {
                    id: entry

                    columns: root.wide ? 2 : 1
                    columnSpacing: 2 * Theme.unit
                    rowSpacing: 0
                    y: 0.75 * Theme.unit
                    x: 1.5 * Theme.unit
                    width: parent.width - 3 * Theme.unit

                    PlainText {
                        text: LocalTime.text(line.time)
                        font.pixelSize: Theme.small
                        color: Theme.faint
                        Accessible.ignored: true
                        Layout.preferredWidth: 18 * Theme.unit
                        Layout.alignment: Qt.AlignTop
                        Layout.topMargin: root.wide ? 1 : 0
                    }
                    PlainText {
                        text: line.message
                        Accessible.ignored: true
                        Layout.fillWidth: true
                    }
                }
            }
        }
    }
    ActionButton {
        objectName: "saveLog"
        visible: log.count
        symbol: "export"
        text: qsTr("Save as text…")
        onClicked: dialog.open()
    }
    PlainText {
        objectName: "logSaved"
        visible: root.fileError || root.saved
        text: root.fileError || qsTr("Saved.")
        color: root.fileError ? Theme.bad : Theme.text
        Accessible.role: Accessible.AlertMessage
        Layout.fillWidth: true
    }

    SaveDialog {
        id: dialog

        title: qsTr("Save the log")
        defaultSuffix: "txt"
        nameFilters: [qsTr("Text (*.txt)"), qsTr("All files (*)")]
        onChosen: file => root.save(file)
    }
}
