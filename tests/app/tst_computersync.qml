// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Varda
import VardaTest
import Logbook
import Logbook.Core

ComputerTest {
    id: test

    name: "ComputerSync"

    property int files: 0

    function init() {
        // A file of its own for each, so that all dives are new.
        AppStore.file = World.file("dives" + ++files + ".sqlite");
        tryVerify(() => AppStore.open, 10000);
    }

    function test_newDives() {
        show({dives: 5});
        press("synchronise");
        tryVerify(() => /^Dive [1-5] of 5/.test(shownText("progressText")), 20000);
        tryCompare(find("syncOutcome"), "text", "5 new dives saved.", 30000);
        verify(!find("progress").visible);
        tryVerify(() => !AppComputer.currentJob, 30000);
        press("synchronise");
        tryCompare(find("syncOutcome"), "text", "No new dives.", 30000);
    }
    function test_cancelled() {
        show({dives: 200});
        press("synchronise");
        tryVerify(() => /^Dive ([3-9]|\d\d) of 200/.test(shownText("progressText")), 30000);
        press("cancel");
        tryVerify(() => /^Cancelled\. \d+ new dives saved\.$/.test(shownText("syncOutcome")), 30000);
        compare(shownText("syncError"), "");
        compare(AppComputer.state, VardaComputer.Connected);
    }
    function test_damagedDive() {
        show({dives: 3, faults: [{step: "answer", command: "Fullsamples", nth: 1, times: 4, kind: "wrongCrc"}]});
        press("synchronise");
        tryCompare(find("syncOutcome"), "text", "2 new dives saved. 1 dive arrived damaged. "
                   + "The next synchronisation asks for it again.", 60000);
    }
    /** It connects again and goes on by itself. */
    function test_linkLostOnce() {
        show({dives: 5, faults: [{step: "notification", command: "Fullsamples", nth: 9, kind: "drop"}]});
        press("synchronise");
        tryCompare(find("syncOutcome"), "text", "5 new dives saved.", 60000);
        compare(shownText("syncError"), "");
        compare(shownText("lostError"), "");
    }
    function test_linkLostForGood() {
        show({dives: 5, faults: [{step: "notification", command: "Fullsamples", nth: 30, kind: "drop"},
            {step: "connect", nth: 2, times: 0, kind: "refuse"}]});
        press("synchronise");
        tryVerify(() => shownText("syncError") !== "", 90000);
        compare(shownText("syncError"), "The connection was lost");
        compare(find("syncError").remedy, "Keep the computer switched on and near, then try again.");
        verify(/new dives? saved\.$/.test(shownText("syncOutcome")));
        World.load({dives: 5});
        find("syncError").retry();
        tryVerify(() => /new dives? saved\.$/.test(shownText("syncOutcome")) && shownText("syncError") === "", 60000);
    }
    /** What was tried is tried again, not only the file. */
    function test_storeFails() {
        show({dives: 5});
        verify(World.lock(AppStore.file));
        press("synchronise");
        tryVerify(() => shownText("storeError") !== "", 120000);
        compare(shownText("storeError"), "Another program is using the file with the dives");
        compare(shownText("syncError"), "");
        World.unlock();
        find("storeError").retry();
        tryVerify(() => shownText("syncOutcome") === "5 new dives saved.", 60000);
        compare(shownText("storeError"), "");
    }
    function test_linkLostInIdleness() {
        showConnected({});
        World.drop();
        tryCompare(find("lostError"), "title", "The connection was lost", 20000);
        compare(shownText("state"), "Not connected");
        find("lostError").retry();
        tryCompare(AppComputer, "state", VardaComputer.Connected, 30000);
        compare(shownText("lostError"), "");
    }
}
