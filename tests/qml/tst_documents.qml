// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import VardaTest

/** What the documentation shows: each program can be made, and is made of what it says. */
TestCase {
    name: "Documents"

    function init() {
        compare(Simulator.load({}), "");
    }

    function test_programs() {
        const paths = Files.documents();
        verify(paths.length >= 5);
        for (const path of paths) {
            failOnWarning(/.*\.qml:.*/);
            const component = Qt.createComponent("file://" + path);
            compare(component.errorString(), "", path);
            const program = component.createObject(null);
            verify(program, path);
            wait(0);
            program.destroy();
            wait(0);
        }
    }
}
