// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Varda
import VardaTest
import Logbook
import Logbook.Core

ComputerTest {
    id: test

    name: "ComputerCards"

    function test_eachControlHasAName_data() {
        return [{tag: "en"}, {tag: "fr"}];
    }
    function test_eachControlHasAName(row) {
        Preferences.language = row.tag;
        Preferences.expert = true;
        showConnected({});
        press(within("logCount", "readFirst"));
        tryVerify(() => find("log").count > 0, 20000);
        const walk = World.walk(page.Window.window);
        compare(walk.nameless, []);
        compare(walk.roleless, []);
        verify(walk.named >= 40, walk.named + " named controls");
        Preferences.expert = false;
        Preferences.language = "en";
    }
    function test_readWhenConnected() {
        showConnected({firmware: "1.4.2.b", owner: "Ada Lindqvist", psurf: 998});
        compare(shownText("firmware"), "1.4.2.b");
        compare(find("owner").text, "Ada Lindqvist");
        compare(shownText("surfacePressure"), "998\u00a0mbar");
        compare(shownText("batteryType"), "Lithium ion, 3.6 V, rechargeable");
        compare(find("battery").count, 5);
    }
    function test_clock() {
        showConnected({clock: "2024-05-17T08:30:00"});
        compare(shownText("time"), "5/17/24 08:30:00");
        verify(/^\d+ days behind this machine\.$/.test(shownText("difference")));
        press("setClock");
        tryCompare(find("difference"), "text", "The same as on this machine.", 30000);
        const set = World.state().clock;
        verify(Math.abs(set - LocalTime.now()) < 300, "set to " + set);
    }
    function test_owner() {
        showConnected({});
        verify(!find("saveOwner").enabled);
        type("owner", "Zoe 0123");
        press("saveOwner");
        tryVerify(() => World.state().owner === "Zoe 0123", 20000);
        tryCompare(within("saveOwner", "outcome"), "text", "Saved in the computer.", 20000);
    }
    function test_ownerTooLong() {
        showConnected({});
        type("owner", "0123456789012345678901234567890123456789");
        press("saveOwner");
        const error = within("saveOwner", "error");
        tryCompare(error, "title", "The computer has refused", 30000);
        compare(error.remedy, "Enter a shorter name: computers keep about 30 letters, fewer with accents.");
        compare(World.state().owner, "Ada Lindqvist");
    }
    function test_pressure() {
        showConnected({psurf: 1013});
        type("pressure", "400");
        verify(find("implausible").visible);
        verify(!find("setPressure").enabled);
        type("pressure", "875");
        press("setPressure");
        answer("confirmPressure", "decline");
        compare(World.state().psurf, 1013);
        press("setPressure");
        answer("confirmPressure", "confirm");
        tryVerify(() => World.state().psurf === 875, 20000);
        tryCompare(find("surfacePressure"), "value", "875\u00a0mbar");
    }
    function test_pressureInInches() {
        Preferences.units = Preferences.Imperial;
        showConnected({psurf: 1013});
        compare(shownText("surfacePressure"), "29.91\u00a0inHg");
        type("pressure", "25.84");
        press("setPressure");
        answer("confirmPressure", "confirm");
        tryVerify(() => World.state().psurf === 875, 20000);
        Preferences.units = Preferences.Metric;
    }
    function test_screens() {
        showConnected({});
        const mode = find("mode 4");
        compare(mode.count, 4);
        mode.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Down);
        tryVerify(() => World.state().activeLayouts[4] === 1, 20000);
        tryVerify(() => find("addLayout").enabled, 20000);
        World.write("x.layout", "Wide figures");
        find("addLayout").parent.parent.parent.add(World.url("x.layout"));
        tryVerify(() => World.state().layouts.length === 4, 20000);
        const added = World.state().layouts[3];
        compare(added.name, "Wide figures");
        tryVerify(() => findChild(page, "remove " + added.index), 20000);
        press("remove " + added.index);
        answer("confirmRemove", "confirm");
        tryVerify(() => World.state().layouts.length === 3, 20000);
    }
    /** One that came with the computer. */
    function test_screenThatStays() {
        showConnected({});
        press("remove 0");
        answer("confirmRemove", "confirm");
        const error = within("addLayout", "error");
        tryCompare(error, "title", "The computer has refused", 20000);
        compare(error.remedy, "Choose another layout, or remove one to make room.");
        compare(World.state().layouts.length, 3);
    }
    function test_log() {
        showConnected({log: [[1715934600, 0, 0, 0], [1715934660, 1, 0, 0]]});
        press(within("logCount", "readFirst"));
        tryCompare(find("log"), "count", 2, 20000);
        const file = World.url("log.txt");
        const card = find("saveLog").parent.parent.parent;
        card.save(file);
        compare(World.read("log.txt").split("\n")[0].slice(0, 21), "2024-05-17 08:30:00  ");
        compare(shownText("logSaved"), "Saved.");
    }
    function test_failureAndAgain() {
        showConnected({});
        World.load({owner: "Eva", faults: [{step: "answer", command: "Owner", nth: 1, times: 4, kind: "wrongCrc"}]});
        press(within("saveOwner", "readAgain"));
        const error = within(within("saveOwner", "readAgain"), "error");
        tryCompare(error, "title", "An answer of the computer arrived damaged", 60000);
        compare(error.remedy, "Move nearer to the computer, then try again.");
        verify(error.details.includes("checksum"));
        compare(find("owner").text, "Ada Lindqvist");
        error.retry();
        tryCompare(find("owner"), "text", "Eva", 30000);
        compare(error.title, "");
    }
}
