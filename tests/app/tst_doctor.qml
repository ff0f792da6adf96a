// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Varda
import VardaTest
import Logbook
import Logbook.Core

ComputerTest {
    id: test

    name: "Doctor"

    /** The examination that is offered now, of several on the page. */
    function offered(part: string): var {
        const stack = [page];
        while (stack.length) {
            const item = stack.pop();
            if (item.objectName === part && item.visible)
                return item;
            for (let i = 0; i < item.children.length; ++i)
                stack.push(item.children[i]);
        }
        return null;
    }
    function examined(fault: string) {
        tryVerify(() => offered("findOut"), 90000, "it is offered");
        press(offered("findOut"));
        tryVerify(() => !offered("stopFinding") && offered(fault), 90000, fault);
        return offered(fault);
    }
    function cleanup() {
        Preferences.language = "en";
        if (page)
            page.destroy();
        page = null;
        Preferences.device = World.noComputer();
        tryVerify(() => !AppComputer.currentJob && AppComputer.state === VardaComputer.Unconnected, 30000);
    }

    function test_switchedOff_data() {
        return [{tag: "en", title: "Bluetooth is switched off",
                 remedy: "Switch it on in the settings of your system, then try again."},
                {tag: "fr", title: "Le Bluetooth est désactivé", remedy: ""}];
    }
    function test_switchedOff(row) {
        show({});
        World.setPowered(false);
        Preferences.language = row.tag;
        press("connect");
        const fault = examined("fault");
        compare(findChild(fault, "finding").text, row.title);
        if (row.remedy)
            compare(findChild(fault, "remedy").text, row.remedy);
        verify(offered("sound"), "what is well is listed too");
    }
    function test_refused() {
        show({faults: [{step: "connect", kind: "refuse"}]});
        press("connect");
        const fault = examined("fault");
        compare(findChild(fault, "finding").text, "The computer could not be connected");
    }
    /** Nothing is offered if the connection is not at fault. */
    function test_notOffered() {
        showConnected({});
        type("owner", "0123456789012345678901234567890123456789");
        press("saveOwner");
        tryCompare(within("saveOwner", "error"), "title", "The computer has refused", 30000);
        verify(!offered("findOut"));
    }
}
