// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Varda
import Logbook

/** Narrows the list down. */
Popup {
    id: root

    required property DiveFilter filter
    readonly property var years: {
        const all = [0];
        for (let year = new Date().getFullYear(); year >= 2000; --year)
            all.push(year);
        return all;
    }

    width: 38 * Theme.unit
    padding: 2 * Theme.unit
    focus: true
    modal: true
    dim: false
    background: Rectangle {
        radius: 1.5 * Theme.radius
        color: Theme.surface
        border {
            width: 1
            color: Theme.outline
        }
        Accessible.role: Accessible.Grouping
        Accessible.name: qsTr("Filter")
    }
    contentItem: ColumnLayout {
        spacing: 1.5 * Theme.unit

        ColumnLayout {
            spacing: Theme.half

            PlainText {
                text: qsTr("Computer")
                font.pixelSize: Theme.small
                color: Theme.faint
            }
            ChoiceBox {
                label: qsTr("Computer")
                model: computers.names
                currentIndex: Math.max(0, computers.ids.indexOf(root.filter.computer))
                Layout.fillWidth: true
                onActivated: index => root.filter.computer = computers.ids[index]
            }
        }
        ColumnLayout {
            spacing: Theme.half

            PlainText {
                text: qsTr("Year")
                font.pixelSize: Theme.small
                color: Theme.faint
            }
            ChoiceBox {
                objectName: "year"
                label: qsTr("Year")
                model: root.years.map(year => year || qsTr("Every year"))
                currentIndex: root.years.indexOf(root.filter.year)
                Layout.fillWidth: true
                onActivated: index => root.filter.year = root.years[index]
            }
        }
        Tick {
            objectName: "hidden"
            text: qsTr("Hidden dives")
            checked: root.filter.hidden
            Layout.fillWidth: true
            onToggled: root.filter.hidden = checked
        }
        ActionButton {
            text: qsTr("Show all dives")
            enabled: root.filter.active
            Layout.fillWidth: true
            onClicked: {
                root.filter.clear();
                root.close();
            }
        }
    }

    QtObject {
        id: computers

        property var ids: [0]
        property var names: [qsTr("Every computer")]

        function read() {
            const call = AppStore.computers();
            call.finished.connect(() => {
                const found = call.value || [];
                ids = [0].concat(found.map(each => each.id));
                names = [qsTr("Every computer")].concat(found.map(each => {
                    const serial = each.identity.serialNumber;
                    return (each.name || Units.model(each.identity.model)) + (serial ? " · " + serial : "");
                }));
            });
        }
    }
    onAboutToShow: computers.read()
}
