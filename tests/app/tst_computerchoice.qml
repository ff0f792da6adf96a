// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Varda
import VardaTest
import Logbook
import Logbook.Core

ComputerTest {
    id: test

    name: "ComputerChoice"

    function showFirst(scenario: string) {
        compare(World.loadScenario(scenario), "");
        Preferences.device = World.noComputer();
        page = createTemporaryObject(pageComponent, test);
    }
    function test_oneOfSeveralIsRemembered() {
        showFirst('{"devices": [{"name": "Varda"}, {"name": "Tidemar", "model": "tidemar", "owner": "Zoë"}]}');
        press("search");
        tryVerify(() => findChild(page, "device 00:AA:01:01:00:02"), 20000);
        press("stopSearch");
        press("device 00:AA:01:01:00:02");
        compare(Preferences.device.address, "00:AA:01:01:00:02");
        compare(shownText("name"), "Tidemar");
        tryCompare(find("owner"), "text", "Zoë", 30000);
        compare(shownText("state"), "Connected");
    }
    function test_noneInReach() {
        showFirst('{"devices": []}');
        press("search");
        press("stopSearch");
        tryVerify(() => find("search").visible && find("search").text === "Search again");
    }
    function test_bluetoothIsOff() {
        showFirst('{"adapter": {"powered": false}, "devices": [{}]}');
        press("search");
        const error = within("stopSearch", "error");
        tryCompare(error, "title", "Bluetooth is switched off", 20000);
        compare(error.remedy, "Switch it on in the settings of your system, then try again.");
        World.setPowered(true);
        error.retry();
        tryVerify(() => findChild(page, "device 00:AA:01:01:00:01"), 20000);
        press("stopSearch");
    }
}
