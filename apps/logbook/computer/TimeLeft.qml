// SPDX-License-Identifier: MIT
import QtQuick
import Varda

/** How long a job will still take, by what it has taken. */
QtObject {
    id: root

    property VardaJob job: null
    /** Negative as long as nobody knows. */
    property real seconds: -1
    readonly property string text: seconds < 0 ? "" : seconds < 60 ? qsTr("less than a minute left")
                                                                   : qsTr("about %n minute(s) left", "", Math.round(seconds / 60))
    property real began: 0
    property real first: 0

    onJobChanged: {
        began = 0;
        seconds = -1;
    }

    property Connections progress: Connections {
        target: root.job
        function onProgressed(done, total) {
            const now = Date.now();
            if (!root.began && total > 0) {
                // An upload may go on where another has stopped.
                root.began = now;
                root.first = done;
            } else if (done > root.first && total > 0) {
                root.seconds = (now - root.began) / 1000 * (total - done) / (done - root.first);
            }
        }
    }
}
