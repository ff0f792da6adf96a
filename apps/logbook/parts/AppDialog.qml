// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls
import QtQuick.Layouts
import Logbook

/** A question that has to be answered first. Escape closes it. */
Dialog {
    id: root

    /** Buttons at the bottom, the primary one last. */
    property alias buttons: buttons.data

    anchors.centerIn: Overlay.overlay
    width: Overlay.overlay ? Math.min(Overlay.overlay.width - 4 * Theme.unit, 60 * Theme.unit) : 0
    modal: true
    dim: true
    focus: true
    padding: 3 * Theme.unit
    topPadding: Theme.unit
    font.pixelSize: Theme.body

    Overlay.modal: Rectangle {
        color: Theme.shade
    }
    enter: Transition {
        NumberAnimation {
            property: "opacity"
            from: 0
            to: 1
            duration: Theme.quick
        }
    }
    exit: null
    header: PlainText {
        text: root.title
        padding: 3 * Theme.unit
        bottomPadding: Theme.unit
        font.pixelSize: Theme.headline
        font.weight: Font.DemiBold
        Accessible.role: Accessible.Heading
    }
    footer: Item {
        implicitHeight: buttons.implicitHeight + 3 * Theme.unit

        Flow {
            id: buttons

            layoutDirection: Qt.RightToLeft
            spacing: Theme.unit
            anchors {
                fill: parent
                leftMargin: 3 * Theme.unit
                rightMargin: 3 * Theme.unit
                bottomMargin: 3 * Theme.unit
            }
        }
    }
    background: Rectangle {
        radius: 1.5 * Theme.radius
        color: Theme.surface
        border {
            width: 1
            color: Theme.line
        }
    }
}
