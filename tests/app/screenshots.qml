// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Varda
import VardaTest
import Logbook
import Logbook.Core

/** A picture of each page and of its empty, busy and error states; see ./dev screenshots. */
Page {
    id: root

    name: "screenshots"

    readonly property string folder: World.environment("VARDA_SCREENSHOTS")
    // Each prepares a page; what it returns is awaited.
    readonly property var scenes: ({
        "dives-list": () => wanted("dives").count === 12,
        "dives-dive": () => open(9),
        "dives-dive-below": () => {
            open(9);
            wanted("place").forceActiveFocus();
        },
        "dives-several": () => {
            wanted("several").clicked();
            for (const row of [0, 2, 3])
                wanted("dives").itemAtIndex(row).clicked();
            if (window.width < 800)
                wanted("goOn").clicked();
            wanted("profile");
        },
        "dives-statistics": () => {
            wanted("statistics").clicked();
            wanted("statisticsCount");
        },
        "dives-filter": () => wanted("filter").clicked(),
        "dives-nothing-found": () => {
            wanted("search").text = "xyz";
            wanted("search").textEdited();
        },
        "dives-hidden": () => {
            open(9);
            wanted("hide").clicked();
            wanted("notice");
        },
        "dives-export": () => {
            open(9);
            wanted("export").clicked();
        },
        "dives-keyboard": () => {
            wanted("dives").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Down);
        },
        "dives-empty": () => {
            AppStore.file = World.file("empty.sqlite");
            wanted("goToComputer");
        },
        "dives-error": () => {
            World.write("cat.sqlite", "meow");
            AppStore.file = World.file("cat.sqlite");
            tryVerify(() => AppStore.error !== LogbookError.NoError);
        },
        "computer-first": () => {
            Preferences.device = World.noComputer();
            Navigation.page = Navigation.Computer;
            wanted("search");
        },
        "computer": () => connect({}),
        "computer-syncing": () => {
            connect({ serial: "00420017-3138510D-37373935", dives: 200 });
            wanted("synchronise").clicked();
            tryVerify(() => wanted("progress").value > 0.02, 60000);
        },
        "computer-lost": () => {
            connect({});
            World.drop();
            tryVerify(() => AppComputer.state === VardaComputer.Unconnected, 20000);
            wanted("lostError");
        },
        "computer-delete": () => {
            connect({});
            wanted("deleteAll").clicked();
        },
        "settings": () => {
            Navigation.page = Navigation.Settings;
            wanted("language");
        }
    })

    function connect(keys) {
        compare(World.load(keys), "");
        // The link of the synchronisation before ends with its world.
        tryVerify(() => AppComputer.state === VardaComputer.Unconnected, 20000);
        Preferences.device = World.computer();
        Navigation.page = Navigation.Computer;
        wanted("connect").clicked();
        tryVerify(() => find("batteryType"), 60000);
        tryVerify(() => !AppComputer.currentJob, 60000);
    }
    function open(row) {
        const list = wanted("dives");
        list.itemAtIndex(row) || list.positionViewAtIndex(row, ListView.Center);
        tryVerify(() => list.itemAtIndex(row) !== null);
        list.itemAtIndex(row).clicked();
        const profile = wanted("profile");
        tryVerify(() => profile.dive.lines.length > 0);
    }
    function test_pictures_data() {
        const rows = [];
        for (const scene in scenes) {
            for (const dark of [false, true]) {
                for (const narrow of [false, true]) {
                    for (const language of ["en", "fr"])
                        rows.push({
                            tag: [scene, dark ? "dark" : "light", narrow ? "narrow" : "wide", language].join("-"),
                            scene: scene, dark: dark, narrow: narrow, language: language
                        });
                }
            }
        }
        return rows;
    }
    function test_pictures(row) {
        if (!folder)
            skip("VARDA_SCREENSHOTS names no folder");
        storeWithDives();
        Preferences.language = row.language;
        Preferences.animated = false;
        Theme.dark = row.dark;
        openWindow();
        window.width = row.narrow ? 390 : 1200;
        window.height = row.narrow ? 844 : 800;
        if (row.scene !== "dives-empty" && row.scene !== "dives-error")
            tryVerify(() => wanted("dives").count > 0);
        scenes[row.scene]();
        // Thumbnails are read a little later.
        tryVerify(() => {
            const list = find("dives");
            for (let row = 0; list && row < list.count; ++row) {
                const item = list.itemAtIndex(row);
                if (item && item.dive === undefined)
                    return false;
            }
            return true;
        });
        wait(300);
        grabImage(window.contentItem).save(folder + "/" + row.tag + ".png");
    }
}
