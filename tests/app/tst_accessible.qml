// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import VardaTest
import Logbook

/** Every page in both languages: each control has a name and a role. */
Page {
    name: "accessible"

    function test_walk_data() {
        const rows = [];
        for (const language of ["en", "fr"]) {
            for (const page of [Navigation.Dives, Navigation.Computer, Navigation.Settings]) {
                for (const width of [1200, 400])
                    rows.push({ tag: [language, page, width].join(" "), language: language, page: page, width: width });
            }
        }
        return rows;
    }
    function test_walk(row) {
        storeWithDives();
        Preferences.language = row.language;
        openWindow();
        window.width = row.width;
        Navigation.page = row.page;
        if (row.page === Navigation.Dives) {
            const list = wanted("dives");
            tryCompare(list, "count", 12);
            list.itemAtIndex(0).clicked();
            wanted("place");
        }
        const walk = World.walk(window);
        compare(walk.nameless, []);
        compare(walk.roleless, []);
        verify(walk.named >= 4, walk.named + " named controls");
    }
}
