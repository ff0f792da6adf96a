// SPDX-License-Identifier: MIT
import QtQuick

/** Which dives the list shows. */
QtObject {
    property string search
    /** Id of a computer; 0 for any. */
    property real computer: 0
    /** A year; 0 for any. */
    property int year: 0
    property bool hidden: false
    readonly property bool active: search || computer || year || hidden
    readonly property var since: year ? new Date(year, 0, 1) : undefined
    readonly property var until: year ? new Date(year, 11, 31, 23, 59, 59) : undefined

    function clear() {
        search = "";
        computer = 0;
        year = 0;
        hidden = false;
    }
}
