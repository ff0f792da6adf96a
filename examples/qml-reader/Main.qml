// SPDX-License-Identifier: MIT
import QtQuick
import Varda

Window {
    visible: true

    Text {
        id: text

        text: "Looking for a computer"
    }

    VardaComputer {
        id: computer

        Component.onCompleted: downloadDives().diveRead.connect(dive => {
            text.text = "Dive " + dive.diveNumber + ": " + dive.profile.maximumDepth.toFixed(1) + " m";
        })
    }
}
