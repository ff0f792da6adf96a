// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Varda
import VardaTest
import Logbook
import Logbook.Core

/** A test that uses the page as a diver does, with the keyboard. */
TestCase {
    id: test

    property Item page: null

    width: 1100
    height: 900
    visible: true
    when: windowShown

    property Component pageComponent: Component {
        ComputerPage {
            anchors.fill: parent
        }
    }

    function initTestCase() {
        Preferences.language = "en";
        Preferences.units = Preferences.Metric;
    }
    /** Shows the page with a computer that is remembered, in this world. */
    function show(keys: var) {
        compare(World.load(keys), "");
        Preferences.device = World.computer();
        page = createTemporaryObject(pageComponent, test);
        verify(page);
    }
    function showConnected(keys: var) {
        show(keys);
        press("connect");
        tryCompare(AppComputer, "state", VardaComputer.Connected, 30000);
        tryVerify(() => shownText("batteryType") !== "", 30000);
        tryVerify(() => !AppComputer.currentJob, 30000);
    }
    function cleanup() {
        if (page)
            page.destroy();
        page = null;
        Preferences.device = World.noComputer();
        tryVerify(() => !AppComputer.currentJob && AppComputer.state === VardaComputer.Unconnected, 30000);
    }

    function find(name: string): var {
        const found = findChild(page, name);
        verify(found, name + " is there");
        return found;
    }
    function shownText(name: string): string {
        const found = find(name);
        return !found.visible ? "" : found.value !== undefined ? found.value
             : found.title !== undefined ? found.title : found.text;
    }
    /** Within one card, where several have parts of the same name. */
    function within(name: var, part: string): var {
        let each = typeof name === "string" ? find(name) : name;
        while (each && !findChild(each, part))
            each = each.parent;
        verify(each, part + " is beside " + name);
        return findChild(each, part);
    }
    function press(button: var) {
        const item = typeof button === "string" ? find(button) : button;
        tryVerify(() => item.visible && item.enabled, 30000, "can be pressed: " + item.objectName);
        item.forceActiveFocus(Qt.TabFocusReason);
        keyClick(Qt.Key_Space);
    }
    function answer(dialog: string, button: string) {
        const asked = find(dialog);
        tryVerify(() => asked.opened);
        press(findChild(asked.footer, button) || findChild(asked.contentItem, button));
        tryVerify(() => !asked.visible);
    }
    function type(field: string, text: string) {
        const item = find(field);
        item.forceActiveFocus(Qt.TabFocusReason);
        item.selectAll();
        keyClick(Qt.Key_Delete);
        for (const letter of text)
            keyClick(letter);
        compare(item.text, text);
    }
}
