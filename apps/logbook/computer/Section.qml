// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Logbook

/** A card with something that was read from the computer. */
Card {
    id: root

    default property alias body: body.data
    property string heading
    property string symbol
    /** Fills it. */
    property JobRun reading: JobRun {}
    /** Something was read. */
    property bool filled: false
    /** What to see here, before it is read. */
    property string about

    /** Asks the computer. */
    signal read

    Layout.fillWidth: true
    Accessible.name: heading

    RowLayout {
        spacing: Theme.unit

        Symbol {
            drawing: root.symbol
            color: Theme.accent
        }
        PlainText {
            text: root.heading
            font.pixelSize: Theme.title
            font.weight: Font.DemiBold
            Accessible.role: Accessible.Heading
            Layout.fillWidth: true
        }
        ActionButton {
            objectName: "readFirst"
            visible: !root.filled
            enabled: !root.reading.running
            text: qsTr("Read")
            Accessible.name: qsTr("Read from the computer: %1").arg(root.heading)
            onClicked: root.read()
        }
        IconButton {
            objectName: "readAgain"
            visible: root.filled
            enabled: !root.reading.running
            symbol: "sync"
            text: qsTr("Read again: %1").arg(root.heading)
            Layout.margins: -Theme.unit
            Layout.leftMargin: 0
            onClicked: root.read()
        }
    }
    PlainText {
        visible: text && !root.filled
        text: root.about
        color: Theme.faint
        Layout.fillWidth: true
    }
    JobStatus {
        run: root.reading
        onRetry: root.read()
    }
    ColumnLayout {
        id: body

        visible: root.filled
        spacing: Theme.unit
        Layout.fillWidth: true
    }
}
