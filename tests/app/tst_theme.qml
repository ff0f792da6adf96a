// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Logbook

TestCase {
    name: "theme"

    function part(value: real): real {
        return value <= 0.03928 ? value / 12.92 : Math.pow((value + 0.055) / 1.055, 2.4);
    }
    function luminance(color: color): real {
        return 0.2126 * part(color.r) + 0.7152 * part(color.g) + 0.0722 * part(color.b);
    }
    function contrast(one: color, other: color): real {
        const a = luminance(one);
        const b = luminance(other);
        return (Math.max(a, b) + 0.05) / (Math.min(a, b) + 0.05);
    }

    function test_measure() {
        compare(contrast(Qt.rgba(0, 0, 0, 1), Qt.rgba(1, 1, 1, 1)).toFixed(2), "21.00");
        compare(contrast(Qt.rgba(0x77 / 255, 0x77 / 255, 0x77 / 255, 1), Qt.rgba(1, 1, 1, 1)).toFixed(2), "4.48");
    }
    function test_contrast_data() {
        const rows = [];
        for (const dark of [false, true]) {
            for (const ink of ["text", "faint", "accent", "good", "bad"]) {
                for (const ground of ["window", "surface", "sunken", "hover", "chosen"])
                    rows.push({ tag: (dark ? "dark " : "light ") + ink + " on " + ground, dark: dark, ink: ink, ground: ground });
            }
            for (const pair of [["accentInk", "accent"], ["badInk", "bad"], ["bad", "badSurface"], ["text", "badSurface"]])
                rows.push({ tag: (dark ? "dark " : "light ") + pair.join(" on "), dark: dark, ink: pair[0], ground: pair[1] });
        }
        return rows;
    }
    function test_contrast(row) {
        Theme.dark = row.dark;
        const measured = contrast(Theme[row.ink], Theme[row.ground]);
        verify(measured >= 4.5, measured.toFixed(2) + " : 1");
    }
    function test_followsFontSize() {
        Theme.fontSize = 14;
        compare(Theme.unit, 8);
        Theme.fontSize = 28;
        compare(Theme.unit, 16);
        compare(Theme.body, 28);
    }
    function test_reducedMotion() {
        Preferences.animated = false;
        compare(Theme.quick, 0);
        compare(Theme.calm, 0);
        Preferences.animated = true;
        verify(Theme.quick > 0);
    }
}
