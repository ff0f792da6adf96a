// SPDX-License-Identifier: MIT
import QtQuick

/** Which dives of a list are chosen: one that is shown, or several with a tick. */
QtObject {
    id: root

    /** Id of the dive that is shown; 0 for none. */
    property real current: 0
    property bool several: false
    /** Ids in the order in which they were chosen. */
    property var chosen: []

    function toggle(id: real) {
        const at = chosen.indexOf(id);
        chosen = at < 0 ? chosen.concat(id) : chosen.filter(each => each !== id);
    }
    function choose(ids: var) {
        several = true;
        chosen = ids;
    }
    function leave() {
        several = false;
        chosen = [];
    }
}
