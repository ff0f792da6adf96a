// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Varda
import VardaTest
import Logbook
import Logbook.Core

/** What cannot be undone. */
ComputerTest {
    id: test

    name: "ComputerRisks"

    function init() {
        Preferences.expert = false;
    }

    function test_expertSettings() {
        showConnected({});
        verify(!find("expertSettings").visible);
        press("expert");
        verify(find("expertSettings").visible);
        verify(!find("writeSettings").enabled);
        const values = {byte1: "1", byte2: "2", float1: "1.5", byte3: "3", float2: "-2.5", byte4: "4", byte5: "5",
            byte6: "256"};
        for (const name in values)
            type(name, values[name]);
        verify(!find("writeSettings").enabled);
        type("byte6", "255");
        const before = World.frameCount();
        press("writeSettings");
        answer("confirmSettings", "decline");
        compare(World.frameCount(), before);
        press("writeSettings");
        answer("confirmSettings", "confirm");
        tryVerify(() => World.state().marloSettings === "01020000c03f03000020c00405ff", 20000);
    }
    function test_deleteLast() {
        showConnected({dives: 4});
        press("deleteLast");
        compare(findChild(find("confirmDelete").contentItem, "question").text,
                "If you have not synchronised this dive, it is lost for good, with its profile. "
                + "If it is saved in this app, it stays there.");
        answer("confirmDelete", "decline");
        compare(World.state().dives, 4);
        press("deleteLast");
        answer("confirmDelete", "confirm");
        tryVerify(() => World.state().dives === 3, 20000);
    }
    function test_deleteAll() {
        showConnected({dives: 4});
        press("deleteAll");
        answer("confirmDelete", "confirm");
        tryVerify(() => World.state().dives === 0, 20000);
        tryCompare(within("deleteAll", "outcome"), "text", "All dives in the computer are deleted.");
    }

    function firmwareCard(): var {
        let each = find("choose");
        while (each && each.installed === undefined)
            each = each.parent;
        return each;
    }
    function test_firmware() {
        showConnected({firmware: "1.4.2.b"});
        firmwareCard().open(World.imageFile("new.bin",
            "efbeadde 01020304 64060504 05060708 090a0b0c 0d0e0f10 11121314 15161718"));
        compare(shownText("kind"), "Firmware");
        compare(shownText("version"), "4.5.6.d");
        compare(shownText("checksum").length, 4);
        press("install");
        answer("confirmFirmware", "decline");
        compare(World.state().firmware, "1.4.2.b");
        press("install");
        answer("confirmFirmware", "confirm");
        tryVerify(() => World.state().firmware === "4.5.6.d", 60000);
        tryCompare(find("firmware"), "value", "4.5.6.d", 60000);
    }
    function test_wrongKind() {
        showConnected({});
        const before = World.frameCount();
        firmwareCard().open(World.imageFile("photo.bin", "01020304"));
        compare(shownText("fileRefused"), "This file is not firmware for a diving computer");
        compare(find("fileRefused").remedy, "Choose a file that is made for this model.");
        verify(!find("install").visible);
        compare(World.frameCount(), before);
    }
    function test_sameVersion() {
        showConnected({firmware: "4.5.6.d"});
        firmwareCard().open(World.imageFile("same.bin",
            "efbeadde 01020304 64060504 05060708 090a0b0c 0d0e0f10 11121314 15161718"));
        press("install");
        answer("confirmFirmware", "confirm");
        const error = within("choose", "error");
        tryCompare(error, "title", "The computer has this version already", 30000);
        compare(error.retryText, "Install it again…");
        error.retry();
        answer("confirmFirmware", "confirm");
        tryVerify(() => World.state().firmwareImage !== undefined, 60000);
    }
}
