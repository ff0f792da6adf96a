// SPDX-License-Identifier: MIT
pragma Singleton
import QtQuick
import Logbook.Core

/** Times of a computer: seconds since 1970, as if its clock showed UTC. */
QtObject {
    /** What such a clock shows now if it is right. */
    function now(): real {
        const date = new Date();
        return date.getTime() / 1000 - date.getTimezoneOffset() * 60;
    }
    /** One whose local fields are those of the computer's clock. */
    function shown(seconds: real): var {
        const utc = new Date(seconds * 1000);
        return new Date(utc.getUTCFullYear(), utc.getUTCMonth(), utc.getUTCDate(),
                        utc.getUTCHours(), utc.getUTCMinutes(), utc.getUTCSeconds());
    }
    function text(seconds: real): string {
        const locale = Qt.locale(Preferences.localeName);
        const date = shown(seconds);
        return date.toLocaleDateString(locale, Locale.ShortFormat) + " " + date.toLocaleTimeString(locale, "HH:mm:ss");
    }
    /** For files: the same everywhere. */
    function plain(seconds: real): string {
        return new Date(seconds * 1000).toISOString().slice(0, 19).replace("T", " ");
    }
    function span(seconds: real): string {
        if (seconds < 60)
            return qsTr("%n second(s)", "", Math.round(seconds));
        if (seconds < 3600)
            return qsTr("%n minute(s)", "", Math.round(seconds / 60));
        if (seconds < 172800)
            return qsTr("%n hour(s)", "", Math.round(seconds / 3600));
        return qsTr("%n day(s)", "", Math.round(seconds / 86400));
    }
}
