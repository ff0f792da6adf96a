// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Varda
import Logbook

/** Several chosen dives: their profiles over each other, and what can be done with all of them. */
Item {
    id: root

    required property var ids
    property bool closable: false
    property bool showsHidden: false
    /** More lines than these nobody can tell apart. */
    readonly property int most: 6
    // The dives that are drawn, each a logbookDive
    property var drawn: []
    readonly property var names: drawn.map(each => qsTr("Dive %1").arg(each.number) + ", " + Units.date(each.beginDate))

    signal back
    signal exportRequested
    signal hideRequested(hidden: bool)

    function read() {
        const wanted = ids.slice(0, most);
        const found = new Map();
        drawn = drawn.filter(each => wanted.includes(each.id));
        for (const id of wanted) {
            const call = AppStore.dive(id);
            call.finished.connect(() => {
                if (!root)
                    return;
                if (call.value)
                    found.set(id, call.value);
                root.drawn = wanted.filter(each => found.has(each) && root.ids.includes(each)).map(each => found.get(each));
            });
        }
    }

    /** The comparison, as a picture. */
    function save(file: url) {
        exporter.writeComparison(drawn, names, file);
    }

    onIdsChanged: {
        exporter.reset();
        read();
    }
    Component.onCompleted: read()

    EmptyState {
        visible: !root.ids.length
        icon: "select"
        title: qsTr("Choose dives in the list")
        text: qsTr("Then compare, export or hide them together.")
        width: Math.min(root.width - 4 * Theme.unit, Theme.textWidth)
        anchors.centerIn: parent
    }
    PageScroll {
        visible: root.ids.length
        anchors.fill: parent

        PaneHeader {
            title: qsTr("%n dive(s)", "", root.ids.length)
            closable: root.closable
            onBack: root.back()

            IconButton {
                objectName: "exportSeveral"
                symbol: "export"
                text: qsTr("Export")
                onClicked: root.exportRequested()
            }
            IconButton {
                objectName: "hideSeveral"
                symbol: root.showsHidden ? "show" : "hide"
                text: root.showsHidden ? qsTr("Restore") : qsTr("Hide")
                onClicked: root.hideRequested(!root.showsHidden)
            }
        }
        Card {
            title: qsTr("Compared")
            Layout.fillWidth: true

            PlainText {
                visible: root.ids.length > root.most
                text: qsTr("The first %n of them", "", root.most)
                color: Theme.faint
                Layout.fillWidth: true
            }
            ProfileView {
                dive: root.drawn.length ? root.drawn[0].dive : undefined
                others: root.drawn.slice(1).map(each => each.dive)
                names: root.names
                Layout.fillWidth: true
                Layout.preferredHeight: Math.max(42 * Theme.unit, Math.min(root.height * 0.5, root.width * 0.5))
            }
            ErrorBox {
                title: exporter.failed ? qsTr("The picture could not be saved") : ""
                remedy: exporter.unclear ? qsTr("End its name with .svg, .png or .pdf.")
                                         : qsTr("Choose another place, or make room there.")
                details: exporter.errorText
                Layout.fillWidth: true
                onRetry: dialog.open()
            }
            PlainText {
                objectName: "comparisonSaved"
                visible: exporter.done && !exporter.failed
                text: qsTr("Saved as %1").arg(exporter.place)
                wrapMode: Text.Wrap
                Accessible.role: Accessible.AlertMessage
                Layout.fillWidth: true
            }
            ActionButton {
                objectName: "saveComparison"
                visible: !exporter.failed
                enabled: root.drawn.length
                symbol: "export"
                text: qsTr("Save as a picture…")
                onClicked: dialog.open()
            }
        }
    }

    DiveExporter {
        id: exporter
    }
    SaveDialog {
        id: dialog

        title: qsTr("Save the comparison")
        nameFilters: ["SVG (*.svg)", "PNG (*.png)", "PDF (*.pdf)"]
        // Qt 6.4 describes it to no linter.
        defaultSuffix: ["svg", "png", "pdf"][selectedNameFilter.index] // qmllint disable
        onChosen: file => root.save(file)
    }
}
