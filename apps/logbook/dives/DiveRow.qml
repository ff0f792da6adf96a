// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import Logbook

/** A dive in the list. */
ItemDelegate {
    id: root

    required property int index
    required property var model
    required property DiveSelection selection
    required property DiveCache cache
    readonly property real diveId: model.id
    readonly property bool ticked: selection.several && selection.chosen.includes(diveId)
    readonly property bool shown: !selection.several && selection.current === diveId
    property var dive: undefined

    signal opened

    function load() {
        dive = cache.find(diveId);
        if (dive)
            reading.stop();
        else
            reading.restart();
    }

    width: ListView.view ? ListView.view.width : 0
    height: 9 * Theme.unit
    padding: 0
    text: qsTr("Dive %1").arg(model.number)
    Accessible.role: Accessible.ListItem
    Accessible.name: [text, Units.date(model.beginDate), Units.spokenDuration(model.duration),
        Units.depth(model.greatestDepth), dive ? Units.gases(dive) : "", model.place].filter(each => each).join(", ")
    Accessible.selected: ticked || shown
    Accessible.onPressAction: clicked()
    onDiveIdChanged: load()
    Component.onCompleted: load()
    onClicked: {
        ListView.view.currentIndex = index;
        if (selection.several)
            selection.toggle(diveId);
        else
            opened();
    }
    onPressAndHold: {
        if (!selection.several)
            selection.choose([diveId]);
    }

    TapHandler {
        acceptedModifiers: Qt.ControlModifier
        onTapped: {
            if (!root.selection.several)
                root.selection.choose(root.selection.current ? [root.selection.current] : []);
            root.selection.toggle(root.diveId);
        }
    }
    // A list that flies by reads none.
    Timer {
        id: reading

        interval: 60
        onTriggered: {
            const id = root.diveId;
            cache.read(id, dive => {
                if (root && root.diveId === id)
                    root.dive = dive;
            });
        }
    }

    contentItem: Item {
        TickMark {
            id: tick

            visible: root.selection.several
            ticked: root.ticked
            anchors {
                left: parent.left
                leftMargin: 2 * Theme.unit
                verticalCenter: parent.verticalCenter
            }
        }
        Thumbnail {
            id: thumbnail

            dive: root.dive
            width: 9 * Theme.unit
            height: 6 * Theme.unit
            anchors {
                left: tick.visible ? tick.right : parent.left
                leftMargin: 2 * Theme.unit
                verticalCenter: parent.verticalCenter
            }
        }
        Column {
            spacing: Theme.half
            anchors {
                left: thumbnail.right
                leftMargin: 1.5 * Theme.unit
                right: figures.left
                rightMargin: Theme.unit
                verticalCenter: parent.verticalCenter
            }

            Text {
                width: parent.width
                text: root.model.place ? root.text + " · " + root.model.place : root.text
                textFormat: Text.PlainText
                elide: Text.ElideRight
                font.pixelSize: Theme.body
                font.weight: Font.DemiBold
                color: Theme.text
                Accessible.ignored: true
            }
            Text {
                width: parent.width
                text: Units.shortDay(root.model.beginDate) + (root.dive ? " · " + Units.gases(root.dive) : "")
                textFormat: Text.PlainText
                elide: Text.ElideRight
                font.pixelSize: Theme.small
                color: Theme.faint
                Accessible.ignored: true
            }
        }
        Column {
            id: figures

            spacing: Theme.half
            anchors {
                right: parent.right
                rightMargin: 2 * Theme.unit
                verticalCenter: parent.verticalCenter
            }

            Text {
                anchors.right: parent.right
                text: Units.depth(root.model.greatestDepth)
                font.pixelSize: Theme.body
                font.weight: Font.DemiBold
                color: Theme.text
                Accessible.ignored: true
            }
            Text {
                anchors.right: parent.right
                text: Units.duration(root.model.duration)
                font.pixelSize: Theme.small
                color: Theme.faint
                Accessible.ignored: true
            }
        }
    }
    background: Rectangle {
        color: root.shown || root.ticked ? Theme.chosen : root.hovered ? Theme.hover : Theme.surface

        Rectangle {
            width: parent.width
            height: 1
            anchors.bottom: parent.bottom
            color: Theme.line
        }
        // The list has the keyboard, and this is where it is.
        Rectangle {
            visible: root.ListView.isCurrentItem && root.ListView.view.activeFocus
            anchors.fill: parent
            anchors.margins: 2
            radius: Theme.half
            color: "transparent"
            border {
                width: 2
                color: Theme.accent
            }
        }
    }
}
