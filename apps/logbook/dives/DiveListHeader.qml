// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Varda
import Logbook

/** What can be done with the list: search, filter, choose several. */
ColumnLayout {
    id: root

    required property LogbookModel dives
    required property DiveSelection selection
    required property DiveFilter filter
    required property bool wide

    signal statisticsRequested
    signal importRequested
    signal allRequested

    spacing: Theme.unit

    RowLayout {
        spacing: 0
        Layout.leftMargin: 2 * Theme.unit
        Layout.rightMargin: Theme.unit
        // Its title is on the same line as that of the pane beside it.
        Layout.topMargin: root.wide ? 2 * Theme.unit : Theme.unit

        PlainText {
            text: root.selection.chosen.length ? qsTr("%n chosen", "", root.selection.chosen.length)
                  : root.selection.several ? qsTr("Choose dives") : root.filter.hidden ? qsTr("Hidden dives") : qsTr("Dives")
            font.pixelSize: Theme.headline
            font.weight: Font.DemiBold
            wrapMode: Text.NoWrap
            elide: Text.ElideRight
            Accessible.role: Accessible.Heading
            Layout.fillWidth: true
        }
        ActionButton {
            visible: root.selection.several
            text: qsTr("All")
            onClicked: root.allRequested()
            Layout.rightMargin: Theme.half
        }
        IconButton {
            visible: root.selection.several
            symbol: "close"
            text: qsTr("Stop choosing")
            onClicked: root.selection.leave()
        }
        IconButton {
            objectName: "statistics"
            visible: !root.selection.several
            symbol: "statistics"
            text: qsTr("Statistics")
            onClicked: root.statisticsRequested()
        }
        IconButton {
            objectName: "several"
            visible: !root.selection.several
            enabled: root.dives.count
            symbol: "select"
            text: qsTr("Choose several")
            onClicked: root.selection.choose([])
        }
        IconButton {
            visible: !root.selection.several
            symbol: "import"
            text: qsTr("Import")
            onClicked: root.importRequested()
        }
    }
    RowLayout {
        spacing: Theme.half
        Layout.leftMargin: 2 * Theme.unit
        Layout.rightMargin: Theme.unit

        TextBox {
            objectName: "search"
            label: qsTr("Search")
            placeholderText: qsTr("Number, place or notes")
            text: root.filter.search
            leftPadding: 4.5 * Theme.unit
            Layout.fillWidth: true
            onTextEdited: root.filter.search = text
            Keys.onEscapePressed: event => {
                event.accepted = text;
                root.filter.search = "";
            }

            Symbol {
                x: Math.round(1.25 * Theme.unit)
                anchors.verticalCenter: parent.verticalCenter
                drawing: "search"
                size: Theme.icon
                color: Theme.faint
            }
        }
        IconButton {
            objectName: "filter"
            symbol: "filter"
            text: qsTr("Filter")
            checkable: true
            Accessible.onToggleAction: press()
            checked: filters.opened || root.filter.year || root.filter.computer || root.filter.hidden
            onClicked: filters.visible ? filters.close() : filters.open()

            FilterPopup {
                id: filters

                filter: root.filter
                y: parent.height + Theme.half
                x: parent.width - width
            }
        }
    }
    PlainText {
        text: root.filter.active ? qsTr("%n dive(s) found", "", root.dives.count)
                                 : qsTr("%n dive(s)", "", root.dives.count)
        visible: root.dives.count
        font.pixelSize: Theme.small
        color: Theme.faint
        Layout.leftMargin: 2 * Theme.unit
        Layout.fillWidth: true
    }
    Rectangle {
        color: Theme.line
        implicitHeight: 1
        Layout.fillWidth: true
    }
}
