// SPDX-License-Identifier: MIT
import QtQuick
import Varda
import VardaTest
import Logbook

/** A synchronisation on the page, in a file that outlives this process; see killed.py. */
ComputerTest {
    name: "Killed"

    function test_synchronises() {
        AppStore.file = World.environment("VARDA_TEST_STORE");
        tryVerify(() => AppStore.open, 20000);
        show({dives: 20});
        press("synchronise");
        tryVerify(() => /^(\d+ new dives? saved|No new dives)\.$/.test(shownText("syncOutcome")), 240000);
    }
}
