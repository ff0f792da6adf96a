// SPDX-License-Identifier: MIT
import QtQuick
import QtQuick.Controls.impl
import Logbook

/** A drawing of icons/ in any colour. A text beside it has its meaning. */
IconImage {
    id: root

    /** The name of a file of icons/. */
    property string drawing
    property real size: Theme.icon

    source: drawing ? "../icons/" + drawing + ".svg" : ""
    width: size
    height: size
    sourceSize {
        width: size
        height: size
    }
    Accessible.ignored: true
}
