// SPDX-License-Identifier: MIT
import QtQuick
import Logbook

/** The dives that a list has shown lately, so that scrolling back reads nothing again. */
QtObject {
    id: root

    readonly property int most: 150
    // Ids in the order of their last use
    readonly property var dives: new Map()

    /** The dive, or undefined. */
    function find(id: real): var {
        const dive = dives.get(id);
        if (!dive)
            return undefined;
        dives.delete(id);
        dives.set(id, dive);
        return dive;
    }
    /** Calls back with the dive; not at all if it cannot be read. */
    function read(id: real, callback: var) {
        const call = AppStore.dive(id);
        call.finished.connect(() => {
            // The page may be gone by now.
            if (!root || !call.value)
                return;
            root.dives.set(id, call.value.dive);
            if (root.dives.size > root.most)
                root.dives.delete(root.dives.keys().next().value);
            callback(call.value.dive);
        });
    }

    readonly property Connections connections: Connections {
        target: AppStore
        function onChanged(id) {
            if (id)
                root.dives.delete(id);
            else
                root.dives.clear();
        }
        function onFileChanged() {
            root.dives.clear();
        }
    }
}
