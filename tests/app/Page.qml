// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Varda
import VardaTest
import Logbook

/** A test with the window of the app, and with the dives of a simulated computer if it wants. */
TestCase {
    id: root

    property var window: null
    property int files: 0

    readonly property Component windowComponent: Component {
        Main {
            width: 1200
            height: 800
        }
    }

    when: windowShown

    function find(name: string, from: var): var {
        const start = from || window.contentItem;
        if (start.objectName === name && start.visible)
            return start;
        for (let i = 0; i < start.children.length; ++i) {
            const found = find(name, start.children[i]);
            if (found)
                return found;
        }
        return null;
    }
    /** The one with that name, as soon as it can be seen; also one in a popup. */
    function wanted(name: string): var {
        let item = null;
        tryVerify(() => {
            item = find(name) || find(name, window.Overlay ? window.Overlay.overlay : null);
            return item !== null;
        }, 10000, name + " is not there");
        return item;
    }
    function shows(name: string, text: string) {
        tryVerify(() => {
            const item = find(name);
            return item && item.text === text;
        }, 10000, name + " does not say \"" + text + "\"");
    }
    /** A new, empty file. */
    function freshStore() {
        AppStore.file = World.file("dives" + ++files + ".sqlite");
        tryVerify(() => AppStore.open);
    }
    function synchronise() {
        compare(World.load({}), "");
        const job = AppComputer.sync(AppStore);
        tryVerify(() => job.state === VardaJob.Finished, 60000);
        compare(job.error, VardaJob.NoError);
    }
    /** A file of its own with the dives of the simulated computer, which are read once. */
    function storeWithDives() {
        if (!World.has("all.sqlite")) {
            AppStore.file = World.file("all.sqlite");
            tryVerify(() => AppStore.open);
            synchronise();
        }
        AppStore.file = "";
        tryVerify(() => !AppStore.open && !World.has("all.sqlite-wal"));
        World.copy("all.sqlite", "dives" + ++files + ".sqlite");
        AppStore.file = World.file("dives" + files + ".sqlite");
        tryVerify(() => AppStore.open);
    }
    function openWindow() {
        window = createTemporaryObject(windowComponent, root);
        verify(window);
        window.requestActivate();
        tryVerify(() => window.active);
    }
    function init() {
        Preferences.language = "en";
        Preferences.units = Preferences.Metric;
        Navigation.page = Navigation.Dives;
    }
    function cleanup() {
        window = null;
    }
}
