// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import VardaTest

TestCase {
    id: test

    name: "Example"

    function test_reader() {
        compare(Simulator.load({}), "");
        const component = Qt.createComponent("../../examples/qml-reader/Main.qml");
        compare(component.errorString(), "");
        const window = component.createObject(null) as Window;
        const text = window.contentItem.children[0];
        compare(text.text, "Looking for a computer");
        tryCompare(text, "text", "Dive 1: 16.9 m", 20000);
        window.destroy();
        wait(0);
    }
}
