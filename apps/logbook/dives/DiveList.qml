// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Varda
import Logbook

/** The list of the dives, by month, with search and filter. */
FocusScope {
    id: root

    required property LogbookModel dives
    required property DiveSelection selection
    required property DiveFilter filter
    required property DiveCache cache
    required property bool wide
    readonly property bool failed: AppStore.error !== LogbookError.NoError && !AppStore.open
    readonly property bool loading: !failed && !dives.count && (dives.loading || !AppStore.open)

    signal diveOpened(id: real)
    signal statisticsRequested
    signal importRequested
    signal severalRequested

    function idsOfAll(): var {
        const ids = [];
        for (let row = 0; row < dives.count; ++row)
            ids.push(dives.get(row).id);
        return ids;
    }

    ColumnLayout {
        anchors.fill: parent
        spacing: 0

        DiveListHeader {
            dives: root.dives
            selection: root.selection
            filter: root.filter
            wide: root.wide
            Layout.fillWidth: true
            onStatisticsRequested: root.statisticsRequested()
            onImportRequested: root.importRequested()
            onAllRequested: root.selection.choose(root.idsOfAll())
        }
        StoreError {
            // Where that dive is looked at, it says so itself.
            visible: title && kind !== LogbookError.NoSuchDive && (root.failed || root.dives.count)
            Layout.fillWidth: true
            Layout.margins: 2 * Theme.unit
        }
        Item {
            Layout.fillWidth: true
            Layout.fillHeight: true

            ListView {
                id: list

                objectName: "dives"
                anchors.fill: parent
                visible: count > 0
                model: root.dives
                reuseItems: true
                clip: true
                focus: true
                activeFocusOnTab: true
                currentIndex: -1
                cacheBuffer: 40 * Theme.unit
                boundsBehavior: Flickable.StopAtBounds
                keyNavigationEnabled: true
                Accessible.role: Accessible.List
                Accessible.name: qsTr("Dives")
                ScrollBar.vertical: ScrollBar {
                    Accessible.name: qsTr("Scroll")
                }
                onActiveFocusChanged: {
                    if (activeFocus && currentIndex < 0 && count)
                        currentIndex = 0;
                }

                section.property: "month"
                section.labelPositioning: ViewSection.InlineLabels | ViewSection.CurrentLabelAtStart
                section.delegate: MonthRow {}
                delegate: DiveRow {
                    selection: root.selection
                    cache: root.cache
                    onOpened: root.diveOpened(model.id)
                }

                Keys.onReturnPressed: if (currentItem) (currentItem as DiveRow).clicked()
                Keys.onEnterPressed: if (currentItem) (currentItem as DiveRow).clicked()
                Keys.onSpacePressed: if (currentItem) (currentItem as DiveRow).clicked()
                Keys.onPressed: event => {
                    const page = Math.max(1, Math.floor(height / (9 * Theme.unit)) - 1);
                    if (event.key === Qt.Key_Home)
                        currentIndex = 0;
                    else if (event.key === Qt.Key_End)
                        currentIndex = count - 1;
                    else if (event.key === Qt.Key_PageDown)
                        currentIndex = Math.min(count - 1, currentIndex + page);
                    else if (event.key === Qt.Key_PageUp)
                        currentIndex = Math.max(0, currentIndex - page);
                    else if (event.matches(StandardKey.SelectAll))
                        root.selection.choose(root.idsOfAll());
                    else
                        return;
                    event.accepted = true;
                }
            }
            Busy {
                objectName: "loading"
                visible: root.loading
                anchors.centerIn: parent
                text: qsTr("Loading the dives")
            }
            EmptyList {
                visible: !root.loading && !root.dives.count && !root.failed
                filtered: root.filter.active
                onImportRequested: root.importRequested()
                onClearRequested: root.filter.clear()
                anchors {
                    verticalCenter: parent.verticalCenter
                    left: parent.left
                    right: parent.right
                    margins: 3 * Theme.unit
                }
            }
        }
        RowLayout {
            visible: root.selection.chosen.length && !root.wide
            spacing: Theme.unit
            Layout.margins: 2 * Theme.unit

            ActionButton {
                objectName: "goOn"
                primary: true
                text: qsTr("Go on with %n dive(s)", "", root.selection.chosen.length)
                Layout.fillWidth: true
                onClicked: root.severalRequested()
            }
        }
    }
}
