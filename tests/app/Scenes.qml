// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Varda
import VardaTest
import Logbook
import Logbook.Core

/** Each page and its empty, busy and error states, to take pictures of. */
Page {
    id: root

    /** Each prepares the window. */
    readonly property var scenes: ({
        "dives-list": () => compare(wanted("dives").count, 12),
        "dives-filter": () => wanted("filter").clicked(),
        "dives-nothing-found": () => {
            wanted("search").text = "xyz";
            wanted("search").textEdited();
        },
        "dives-keyboard": () => {
            wanted("dives").forceActiveFocus(Qt.TabFocusReason);
            keyClick(Qt.Key_Down);
        },
        "dives-loading": () => {
            // It is grabbed as it is then, so it has to be laid out before.
            wait(200);
            AppStore.file = World.file("all.sqlite");
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
        "dive": () => open(9),
        "dive-all": () => open(9),
        "dive-cursor": () => {
            open(9);
            wait(200);
            wanted("profile").forceActiveFocus(Qt.TabFocusReason);
            wanted("profile").cursorTime = 1500;
        },
        "dive-hidden": () => {
            open(9);
            wanted("hide").clicked();
            wanted("notice");
        },
        "dive-error": () => {
            let page = wanted("dives");
            while (!page.showDive)
                page = page.parent;
            page.showDive(4711);
            tryVerify(() => AppStore.error !== LogbookError.NoError);
        },
        "several-none": () => {
            wanted("several").clicked();
            wanted("dives");
        },
        "several": () => {
            wanted("several").clicked();
            for (const row of [0, 2, 3])
                wanted("dives").itemAtIndex(row).clicked();
            if (window.width < 800)
                wanted("goOn").clicked();
            tryVerify(() => wanted("profile").others.length === 2);
        },
        "statistics": () => {
            wanted("statistics").clicked();
            wanted("statisticsCount");
        },
        "statistics-empty": () => {
            wanted("statistics").clicked();
            wanted("search").text = "xyz";
            wanted("search").textEdited();
            if (window.width < 800)
                wanted("statistics").clicked();
        },
        "export": () => {
            open(9);
            wanted("export").clicked();
            tryVerify(() => dialog("exportDialog").opened);
        },
        "export-several": () => {
            root.scenes["several"]();
            wanted("exportSeveral").clicked();
            tryVerify(() => dialog("exportDialog").opened);
        },
        "export-done": () => {
            root.scenes["export"]();
            dialog("exportDialog").writer.write("uddf", dialog("exportDialog").ids, World.url("dive.uddf"));
            tryVerify(() => dialog("exportDialog").writer.done);
        },
        "export-error": () => {
            root.scenes["export"]();
            dialog("exportDialog").writer.write("uddf", dialog("exportDialog").ids, World.url("nowhere/dive.uddf"));
            tryVerify(() => dialog("exportDialog").writer.failed);
        },
        "import-done": () => {
            open(9);
            const file = World.url("dives.uddf");
            compare(DiveFormats.write(DiveFormats.Uddf, [wanted("profile").dive], file).error, "");
            dialog("importDialog").read(file);
            tryVerify(() => dialog("importDialog").opened);
        },
        "import-error": () => {
            World.write("cat.json", "meow");
            dialog("importDialog").read(World.url("cat.json"));
        },
        "computer-first": () => {
            Preferences.device = World.noComputer();
            Navigation.page = Navigation.Computer;
            wanted("search");
        },
        "computer-off": () => {
            choose('{"adapter": {"powered": false}, "devices": [{}]}');
            tryVerify(() => find("searchAgain") === null && find("stopSearch") === null);
            wanted("error");
        },
        "computer-found": () => {
            choose('{"devices": [{"name": "Varda"}, {"name": "Tidemar", "model": "tidemar", "rssi": -85}, {"name": ""}]}');
            wanted("device 00:AA:01:01:00:02");
        },
        "computer-none-found": () => {
            choose('{"devices": []}');
            wanted("stopSearch").clicked();
            wanted("search");
        },
        "computer-unconnected": () => {
            remember({});
            wanted("connect");
        },
        "computer-connecting": () => {
            remember({ faults: [{ step: "connect", nth: 1, times: 9, kind: "silent" }] });
            wanted("connect").clicked();
            wanted("stopConnecting");
        },
        "computer": () => connect({}),
        "computer-all": () => {
            connect({});
            Preferences.expert = true;
            within("logCount", "readFirst").clicked();
            wanted("log");
        },
        "computer-empty-all": () => {
            connect({ layouts: [], battery: [], log: [], owner: "" });
            within("logCount", "readFirst").clicked();
            wanted("logCount");
        },
        "computer-unreachable": () => {
            remember({ faults: [{ step: "connect", nth: 1, times: 99, kind: "refuse" }] });
            wanted("connect").clicked();
            tryVerify(() => find("linkError"), 120000);
        },
        "computer-examined": () => {
            root.scenes["computer-unreachable"]();
            wanted("findOut").clicked();
            tryVerify(() => find("findOut") && find("finding"), 120000);
        },
        "computer-card-error": () => {
            connect({});
            World.load({ faults: [{ step: "answer", command: "Owner", nth: 1, times: 4, kind: "wrongCrc" }] });
            within("saveOwner", "readAgain").clicked();
            tryVerify(() => within("saveOwner", "readAgain").enabled, 60000);
        },
        "computer-syncing": () => {
            connect({ serial: "00420017-3138510D-37373935", dives: 200 });
            wanted("synchronise").clicked();
            tryVerify(() => wanted("progress").value > 0.02, 60000);
        },
        "computer-synchronised": () => {
            connect({ serial: "00420018-3138510D-37373935", dives: 5 });
            wanted("synchronise").clicked();
            tryVerify(() => find("showDives"), 60000);
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
        "firmware-chosen-all": () => chooseImage("1.4.2.b"),
        "firmware-refused-all": () => {
            connect({});
            firmware().open(World.imageFile("photo.bin", "01020304"));
        },
        "firmware-installing-all": () => {
            chooseImage("1.4.2.b");
            firmware().upload();
            tryVerify(() => firmware().fraction > 0.1, 60000);
        },
        "firmware-same-all": () => {
            chooseImage("4.5.6.d");
            firmware().upload();
            tryVerify(() => firmware().sameVersion, 60000);
        },
        "firmware-question": () => {
            chooseImage("1.4.2.b");
            wanted("install").clicked();
        },
        "settings-all": () => {
            Navigation.page = Navigation.Settings;
            wanted("language");
        },
        "settings-error-all": () => {
            World.write("cat.sqlite", "meow");
            AppStore.file = World.file("cat.sqlite");
            tryVerify(() => AppStore.error !== LogbookError.NoError);
            Navigation.page = Navigation.Settings;
            wanted("language");
        }
    })

    function dialog(name: string): var {
        return findChild(window, name);
    }
    function open(row: int) {
        const list = wanted("dives");
        list.itemAtIndex(row) || list.positionViewAtIndex(row, ListView.Center);
        tryVerify(() => list.itemAtIndex(row) !== null);
        list.itemAtIndex(row).clicked();
        const profile = wanted("profile");
        tryVerify(() => profile.dive.lines.length > 0);
    }
    function remember(keys: var) {
        compare(World.load(keys), "");
        // The link of the synchronisation before ends with its world.
        tryVerify(() => AppComputer.state === VardaComputer.Unconnected, 20000);
        Preferences.device = World.computer();
        Navigation.page = Navigation.Computer;
    }
    function connect(keys: var) {
        remember(keys);
        wanted("connect").clicked();
        tryVerify(() => find("batteryType"), 60000);
        tryVerify(() => !AppComputer.currentJob, 60000);
    }
    function choose(scenario: string) {
        compare(World.loadScenario(scenario), "");
        tryVerify(() => AppComputer.state === VardaComputer.Unconnected, 20000);
        Preferences.device = World.noComputer();
        Navigation.page = Navigation.Computer;
        wanted("search").clicked();
    }
    /** In the card of that name. */
    function within(name: string, part: string): var {
        let each = findChild(window, name);
        while (each && !findChild(each, part))
            each = each.parent;
        verify(each, part + " is beside " + name);
        return findChild(each, part);
    }
    function firmware(): var {
        let each = findChild(window, "choose");
        while (each && each.installed === undefined)
            each = each.parent;
        return each;
    }
    function chooseImage(installed: string) {
        connect({ firmware: installed });
        firmware().open(World.imageFile("Varda.4.5.6.d.bin",
            "efbeadde 01020304 64060504 05060708 090a0b0c 0d0e0f10 11121314 15161718"));
    }
    /** Shows a scene in a window of that size. */
    function show(scene: string, width: int, height: int, language: string) {
        storeWithDives();
        Preferences.language = language;
        Preferences.animated = false;
        Preferences.expert = false;
        Theme.dark = false;
        openWindow();
        window.width = width;
        window.height = height;
        tryVerify(() => wanted("dives").count === 12);
        scenes[scene]();
        if (scene.includes("loading"))
            return;
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
        wait(200);
    }
    function cleanup() {
        if (AppComputer.currentJob)
            AppComputer.currentJob.cancel();
        tryVerify(() => !AppComputer.currentJob, 60000);
        Preferences.expert = false;
        Navigation.page = Navigation.Dives;
        window = null;
    }
}
