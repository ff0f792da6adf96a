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
    function test_keys() {
        freshStore();
        openWindow();
        keyClick(Qt.Key_2, Qt.ControlModifier);
        compare(Navigation.page, Navigation.Computer);
        keyClick(Qt.Key_Q, Qt.ControlModifier);
        verify(!window.visible);
    }
    function press(name: string) {
        tryVerify(() => World.canPress(window, name), 10000, name + " cannot be pressed");
        World.press(window, name);
    }
    /** Each kind of control does what a click does. */
    function test_pressed() {
        storeWithDives();
        openWindow();
        tryCompare(wanted("dives"), "count", 12);
        press("Settings");
        compare(Navigation.page, Navigation.Settings);
        press("Imperial");
        compare(Preferences.units, Preferences.Imperial);
        press("Animations");
        verify(!Preferences.animated);
        press("Animations");
        verify(Preferences.animated);
        press("Language");
        press("Français");
        compare(Preferences.language, "fr");
        press("Langue");
        press("English");
        compare(Preferences.language, "en");
        press("Dives");
        compare(Navigation.page, Navigation.Dives);
        press("Filter");
        press("Hidden dives");
        tryVerify(() => !find("several").enabled);
        press("Choose several");
        verify(find("several"), "what is disabled stays as it is");
        press("Show all dives");
        tryCompare(wanted("dives"), "count", 12);
    }
}
