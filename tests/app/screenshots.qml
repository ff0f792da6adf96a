// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import VardaTest
import Logbook

/** A picture of each scene, wide and narrow, in both languages, light and dark; see ./dev screenshots. */
Scenes {
    id: root

    name: "screenshots"

    readonly property string folder: World.environment("VARDA_SCREENSHOTS")

    function test_pictures_data() {
        const rows = [];
        for (const scene in scenes) {
            for (const narrow of [false, true]) {
                for (const language of ["en", "fr"])
                    rows.push({ tag: [scene, narrow ? "narrow" : "wide", language].join("-"),
                        scene: scene, narrow: narrow, language: language });
            }
        }
        return rows;
    }
    function test_pictures(row) {
        if (!folder)
            skip("VARDA_SCREENSHOTS names no folder");
        const height = !row.scene.endsWith("-all") ? (row.narrow ? 844 : 800) : row.narrow ? 3600 : 2000;
        show(row.scene, row.narrow ? 390 : 1200, height, row.language);
        for (const dark of [false, true]) {
            Theme.dark = dark;
            verify(World.savePicture(window, folder + "/" + row.tag + (dark ? "-dark" : "-light") + ".png"));
        }
    }
}
