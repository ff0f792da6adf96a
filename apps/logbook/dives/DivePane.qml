// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Layouts
import Varda
import Logbook

/** One dive with all that is known about it. */
Item {
    id: root

    required property real diveId
    property bool closable: false
    /** A logbookDive, or null as long as it is read. */
    property var saved: null
    property int error: LogbookError.NoError
    property string errorText
    readonly property bool readable: saved !== null && error === LogbookError.NoError
    readonly property bool roomy: width >= 84 * Theme.unit

    signal back
    signal exportRequested
    signal hideRequested(hidden: bool)

    function read() {
        const id = diveId;
        if (!id)
            return;
        error = LogbookError.NoError;
        const call = AppStore.dive(id);
        call.finished.connect(() => {
            if (!root || root.diveId !== id)
                return;
            root.error = call.error;
            root.errorText = call.errorText;
            if (call.error === LogbookError.NoError)
                root.saved = call.value;
        });
    }

    // The one before stays until the next is there, so that nothing flickers.
    onDiveIdChanged: read()
    Component.onCompleted: read()

    Connections {
        target: AppStore
        function onChanged(id) {
            if (!id || id === root.diveId)
                root.read();
        }
    }
    Busy {
        visible: !root.saved && !problem.visible
        anchors.centerIn: parent
        text: qsTr("Loading the dive")
    }
    StoreError {
        id: problem

        // Above the page, which has only its way back then
        z: 1
        kind: root.error
        text: root.errorText
        width: Math.min(root.width - 4 * Theme.unit, 60 * Theme.unit)
        anchors.centerIn: parent
        onRetry: root.read()
    }
    PageScroll {
        anchors.fill: parent
        // There is always a way back.
        visible: root.readable || root.closable

        readonly property real shownId: root.saved ? root.saved.id : 0

        onShownIdChanged: contentY = 0

        PaneHeader {
            title: root.readable ? qsTr("Dive %1").arg(root.saved.number) : ""
            subtitle: root.readable ? [Units.longDate(root.saved.beginDate), Units.time(root.saved.beginDate)]
                                   .filter(each => each).join(", ") : ""
            closable: root.closable
            onBack: root.back()

            IconButton {
                objectName: "export"
                visible: root.readable
                symbol: "export"
                text: qsTr("Export")
                onClicked: root.exportRequested()
            }
            IconButton {
                objectName: "hide"
                visible: root.readable
                readonly property bool hidden: root.saved ? root.saved.hidden : false

                symbol: hidden ? "show" : "hide"
                text: hidden ? qsTr("Restore") : qsTr("Hide")
                onClicked: root.hideRequested(!hidden)
            }
        }
        PlainText {
            visible: root.readable && root.saved.hidden
            text: qsTr("This dive is hidden. Restore it to see it in the list again.")
            color: Theme.faint
            Layout.fillWidth: true
        }
        DiveFigures {
            visible: root.readable
            saved: root.saved
            Layout.fillWidth: true
        }
        Card {
            visible: root.readable
            title: qsTr("Profile")
            Layout.fillWidth: true

            ProfileView {
                dive: root.saved ? root.saved.dive : undefined
                Layout.fillWidth: true
                Layout.preferredHeight: Math.max(42 * Theme.unit, Math.min(root.height * 0.5, root.width * 0.5))
            }
        }
        GridLayout {
            visible: root.readable
            columns: root.roomy ? 2 : 1
            columnSpacing: 2 * Theme.unit
            rowSpacing: 2 * Theme.unit
            Layout.fillWidth: true

            GasCard {
                dive: root.saved ? root.saved.dive : null
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                Layout.fillHeight: true
            }
            RecorderCard {
                saved: root.saved
                Layout.fillWidth: true
                Layout.preferredWidth: 1
                Layout.fillHeight: true
            }
        }
        NotesCard {
            visible: root.readable
            saved: root.saved
            Layout.fillWidth: true
        }
    }
}
