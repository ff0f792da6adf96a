// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import VardaTest
import Logbook

/** Some scenes look as they did: see pictures/ and ./dev screenshots. */
Scenes {
    name: "pictures"

    function test_looks_data() {
        return [
            { tag: "dive", width: 1100, height: 660, language: "en", dark: false },
            { tag: "several", width: 1100, height: 560, language: "fr", dark: true },
            { tag: "dives-list", width: 390, height: 700, language: "fr", dark: true },
            { tag: "dives-empty", width: 390, height: 560, language: "en", dark: false },
            { tag: "statistics", width: 390, height: 800, language: "fr", dark: false },
            { tag: "export", width: 390, height: 640, language: "en", dark: true },
            { tag: "computer-found", width: 390, height: 560, language: "fr", dark: false },
            { tag: "computer-lost", width: 390, height: 480, language: "en", dark: true }
        ];
    }
    function test_looks(row) {
        failOnWarning(/Polish loop/);
        show(row.tag, row.width, row.height, row.language);
        Theme.dark = row.dark;
        compare(World.comparePicture(window, row.tag), "");
    }
}
