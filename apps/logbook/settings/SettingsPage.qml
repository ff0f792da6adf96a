// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import QtQuick.Dialogs
import QtQuick.Layouts
import Varda
import Logbook

/** Units, language, and where the dives are. */
PageScroll {
    id: root

    widest: 80 * Theme.unit

    PlainText {
        text: qsTr("Settings")
        font.pixelSize: Theme.headline
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
        Layout.fillWidth: true
    }

    Card {
        title: qsTr("Units")
        spacing: Theme.half
        Layout.fillWidth: true

        Choice {
            objectName: "metric"
            text: qsTr("Metric")
            description: qsTr("Metres, degrees Celsius")
            checked: Preferences.units === Preferences.Metric
            Layout.fillWidth: true
            onToggled: Preferences.units = Preferences.Metric
        }
        Choice {
            objectName: "imperial"
            text: qsTr("Imperial")
            description: qsTr("Feet, degrees Fahrenheit")
            checked: Preferences.units === Preferences.Imperial
            Layout.fillWidth: true
            onToggled: Preferences.units = Preferences.Imperial
        }
    }

    Card {
        title: qsTr("Language")
        Layout.fillWidth: true

        ChoiceBox {
            id: language

            readonly property var codes: ["", "en", "fr"]

            objectName: "language"
            label: qsTr("Language")
            // Each is named in itself, so that whoever needs it can read it.
            model: [{ text: qsTr("As the system"), value: "" }, { text: "English", value: "en" },
                { text: "Français", value: "fr" }]
            textRole: "text"
            valueRole: "value"
            currentIndex: codes.indexOf(Preferences.language)
            // Another language brings other texts, and another list begins at its first.
            onModelChanged: currentIndex = Qt.binding(() => codes.indexOf(Preferences.language))
            Layout.fillWidth: true
            Layout.maximumWidth: 40 * Theme.unit
            onActivated: index => Preferences.language = codes[index]
        }
    }

    Card {
        title: qsTr("Appearance")
        Layout.fillWidth: true

        Tick {
            text: qsTr("Animations")
            checked: Preferences.animated
            Layout.fillWidth: true
            onToggled: Preferences.animated = checked
        }
        PlainText {
            text: qsTr("Light or dark, and the size of texts, are those of your system.")
            color: Theme.faint
            Layout.fillWidth: true
        }
    }

    StoreCard {
        Layout.fillWidth: true
    }
    SimulationCard {
        visible: Simulation.available
        Layout.fillWidth: true
    }
}
