// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Varda
import Logbook

/** The list of the dives, and beside it what is chosen of them. */
FocusScope {
    id: root

    enum Detail { Statistics, Dive, Several }

    readonly property bool wide: width >= Theme.wide - 12 * Theme.unit
    /** In a narrow window, the detail covers the list. */
    property bool detailShown: false
    property int detail: DivesPage.Statistics
    readonly property alias model: dives
    readonly property alias selection: selection
    readonly property alias filter: filter

    function showDive(id: real) {
        selection.current = id;
        detail = DivesPage.Dive;
        detailShown = true;
    }
    function showStatistics() {
        selection.leave();
        selection.current = 0;
        detail = DivesPage.Statistics;
        detailShown = true;
    }
    function showSeveral() {
        detail = DivesPage.Several;
        detailShown = true;
    }
    function back() {
        detailShown = false;
        if (!wide && detail === DivesPage.Dive)
            selection.current = 0;
        list.forceActiveFocus();
    }
    function hide(ids: var, hidden: bool) {
        for (const id of ids)
            AppStore.setHidden(id, hidden);
        selection.leave();
        if (!wide || ids.includes(selection.current))
            detailShown = false;
        if (ids.includes(selection.current))
            showStatisticsBeside();
        notice.undone = { ids: ids, hidden: !hidden };
        notice.show(hidden ? qsTr("%n dive(s) hidden", "", ids.length)
                           : qsTr("%n dive(s) restored", "", ids.length), qsTr("Undo"));
    }
    function showStatisticsBeside() {
        selection.current = 0;
        detail = DivesPage.Statistics;
    }

    LogbookModel {
        id: dives

        store: AppStore
        search: filter.search
        computer: filter.computer
        onlyHidden: filter.hidden
        since: filter.since
        until: filter.until
    }
    DiveFilter {
        id: filter
    }
    DiveCache {
        id: divesRead
    }
    DiveSelection {
        id: selection

        onSeveralChanged: {
            if (several)
                root.detail = DivesPage.Several;
            else if (root.detail === DivesPage.Several)
                root.detail = current ? DivesPage.Dive : DivesPage.Statistics;
        }
    }
    Keys.onEscapePressed: event => {
        if (selection.several)
            selection.leave();
        else if (detailShown && !wide)
            back();
        else
            event.accepted = false;
    }

    // Nothing to list, and nothing to show beside it
    readonly property bool bare: wide && !dives.count && !list.loading && !filter.active

    StoreError {
        visible: root.bare && list.failed
        width: Math.min(root.width - 4 * Theme.unit, Theme.textWidth)
        anchors.centerIn: parent
    }
    EmptyList {
        visible: root.bare && !list.failed
        filtered: false
        width: Math.min(root.width - 4 * Theme.unit, Theme.textWidth)
        anchors.centerIn: parent
        onImportRequested: importDialog.ask()
    }
    RowLayout {
        visible: !root.bare
        anchors.fill: parent
        spacing: 0

        DiveList {
            id: list

            visible: root.wide || !root.detailShown
            dives: root.model
            selection: root.selection
            filter: root.filter
            cache: divesRead
            wide: root.wide
            focus: true
            Layout.fillHeight: true
            Layout.fillWidth: !root.wide
            Layout.preferredWidth: root.wide ? Theme.listWidth : -1
            onDiveOpened: id => root.showDive(id)
            onStatisticsRequested: root.showStatistics()
            onImportRequested: importDialog.ask()
            onSeveralRequested: root.showSeveral()
        }
        Rectangle {
            visible: root.wide
            color: Theme.line
            Layout.fillHeight: true
            implicitWidth: 1
        }
        Loader {
            id: pane

            visible: root.wide || root.detailShown
            active: visible
            sourceComponent: root.detail === DivesPage.Dive ? divePane
                                                            : root.detail === DivesPage.Several ? severalPane : statisticsPane
            Layout.fillWidth: true
            Layout.fillHeight: true
        }
    }

    Component {
        id: divePane

        DivePane {
            diveId: selection.current
            closable: !root.wide
            onBack: root.back()
            onExportRequested: exportDialog.ask([selection.current])
            onHideRequested: hidden => root.hide([selection.current], hidden)
        }
    }
    Component {
        id: severalPane

        SeveralPane {
            ids: selection.chosen
            closable: !root.wide
            showsHidden: filter.hidden
            onBack: root.back()
            onExportRequested: exportDialog.ask(selection.chosen)
            onHideRequested: hidden => root.hide(selection.chosen, hidden)
        }
    }
    Component {
        id: statisticsPane

        StatisticsPane {
            dives: root.model
            filtered: filter.active
            closable: !root.wide
            onBack: root.back()
            onImportRequested: importDialog.ask()
        }
    }

    ExportDialog {
        id: exportDialog

        objectName: "exportDialog"
    }
    ImportDialog {
        id: importDialog

        objectName: "importDialog"
    }
    Notice {
        id: notice

        property var undone: null

        objectName: "notice"
        width: Math.min(implicitWidth, root.width - 4 * Theme.unit)
        anchors {
            horizontalCenter: parent.horizontalCenter
            bottom: parent.bottom
            bottomMargin: 2 * Theme.unit
        }
        onAction: {
            for (const id of undone.ids)
                AppStore.setHidden(id, undone.hidden);
        }
    }
}
