// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Varda
import Logbook

/** The type of the battery and its history, as they were read. */
Section {
    id: root

    property string type
    property var records: []
    // A record has some fields or others, by its kind.
    readonly property var fieldsOfKinds: [
        ["value12", "code4", "flag16", "flag17", "flag18", "offsetValue", "scaledValue"],
        ["value20", "code2", "flag28", "flag29"]]
    readonly property var extraFields: ["extra15", "extra12", "extraCode2", "extraFlag29", "extraFlag30"]
    readonly property var columns: {
        const has = kind => records.some(each => each.kind === kind);
        return ["kind", ...(has(0) ? fieldsOfKinds[0] : []), ...(has(1) ? fieldsOfKinds[1] : []),
                ...(records.some(each => each.hasExtra) ? extraFields : [])];
    }
    readonly property real cell: 13 * Theme.unit

    function valueOf(record: var, column: string): string {
        const has = column === "kind" || fieldsOfKinds[record.kind].includes(column)
                    || (record.hasExtra && extraFields.includes(column));
        return has ? Units.count(record[column]) : "";
    }
    function spoken(record: var): string {
        return columns.map(each => [each, valueOf(record, each)]).filter(each => each[1])
                      .map(each => each.join(" ")).join(", ");
    }
    function typeName(type: string): string {
        switch (type) {
        case "Alcaline":
            return qsTr("Alkaline");
        case "NiMH":
            return qsTr("Nickel metal hydride, rechargeable");
        case "Lion36":
            return qsTr("Lithium ion, 3.6 V, rechargeable");
        default:
            return qsTr("Unknown");
        }
    }

    heading: qsTr("Battery")
    symbol: "battery"
    about: qsTr("The type of the battery, and what the computer has noted about it.")
    onRead: reading.start(() => AppComputer.readConfiguration(), () => AppComputer.readBatteryHistory())

    Connections {
        target: root.reading
        function onGot(index, value) {
            if (index === 0)
                root.type = value.computer.battery;
            else
                root.records = value;
        }
        function onSucceeded() {
            root.filled = true;
        }
    }

    Field {
        objectName: "batteryType"
        name: qsTr("Type")
        value: root.typeName(root.type)
    }
    PlainText {
        visible: !root.records.length
        text: qsTr("The computer has noted nothing yet.")
        color: Theme.faint
        Layout.fillWidth: true
    }
    PlainText {
        visible: root.records.length
        text: qsTr("History: %n record(s)", "", root.records.length)
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
        Layout.topMargin: Theme.half
        Layout.fillWidth: true
    }
    PlainText {
        visible: root.records.length
        text: qsTr("As the computer sends it; what the numbers mean is not known.")
        font.pixelSize: Theme.small
        color: Theme.faint
        Layout.fillWidth: true
    }
    Rectangle {
        visible: root.records.length
        implicitHeight: header.height + list.height + 2
        color: "transparent"
        radius: Theme.half
        border {
            width: list.activeFocus ? 2 : 1
            color: list.activeFocus ? Theme.accent : Theme.line
        }
        Layout.fillWidth: true

        Flickable {
            id: sideways

            contentWidth: root.cell * root.columns.length
            contentHeight: height
            flickableDirection: Flickable.HorizontalFlick
            boundsBehavior: Flickable.StopAtBounds
            clip: true
            anchors {
                fill: parent
                margins: 1
            }
            ScrollBar.horizontal: ScrollBar {
                policy: size < 1 ? ScrollBar.AlwaysOn : ScrollBar.AlwaysOff
                Accessible.name: qsTr("Scroll")
            }

            Row {
                id: header

                Repeater {
                    model: root.columns

                    delegate: PlainText {
                        required property string modelData

                        width: root.cell
                        padding: Theme.unit
                        text: modelData
                        font.pixelSize: Theme.small
                        font.weight: Font.DemiBold
                        color: Theme.faint
                        horizontalAlignment: Text.AlignRight
                        elide: Text.ElideRight
                        wrapMode: Text.NoWrap
                        Accessible.role: Accessible.ColumnHeader
                    }
                }
            }
            ListView {
                id: list

                objectName: "battery"
                y: header.height
                width: sideways.contentWidth
                height: Math.min(contentHeight, 40 * Theme.unit) + 1.5 * Theme.unit
                clip: true
                boundsBehavior: Flickable.StopAtBounds
                activeFocusOnTab: true
                model: root.records
                Accessible.role: Accessible.Table
                Accessible.name: qsTr("History of the battery")
                Keys.onLeftPressed: sideways.contentX = Math.max(0, sideways.contentX - root.cell)
                Keys.onRightPressed: sideways.contentX = Math.max(0, Math.min(sideways.contentWidth - sideways.width,
                                                                              sideways.contentX + root.cell))

                delegate: Rectangle {
                    id: line

                    required property int index
                    required property var modelData

                    width: sideways.contentWidth
                    height: cells.height
                    color: index % 2 ? "transparent" : Theme.sunken
                    Accessible.role: Accessible.Row
                    Accessible.name: root.spoken(modelData)

                    Row {
                        id: cells

                        Repeater {
                            model: root.columns

                            delegate: PlainText {
                                required property string modelData

                                width: root.cell
                                padding: Theme.unit
                                topPadding: Theme.half
                                bottomPadding: Theme.half
                                text: root.valueOf(line.modelData, modelData)
                                horizontalAlignment: Text.AlignRight
                                Accessible.ignored: true
                            }
                        }
                    }
                }
            }
        }
    }
}
