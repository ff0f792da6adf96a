// SPDX-License-Identifier: MIT
import QtQuick

/** The least that a list of dives can be: rows of text. */
Window {
    id: root

    property int dives: 0

    visible: true
    width: 1120
    height: 752

    ListView {
        objectName: "dives"
        anchors.fill: parent
        model: root.dives
        reuseItems: true
        delegate: Text {
            required property int index

            height: 72
            text: "Dive " + index + " · 24.3 m · 45:20"
        }
    }
}
