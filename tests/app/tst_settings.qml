// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Logbook

Page {
    name: "settings"

    function openSettings() {
        freshStore();
        openWindow();
        Navigation.page = Navigation.Settings;
        return wanted("language");
    }

    function test_units() {
        openSettings();
        mouseClick(wanted("imperial"));
        compare(Preferences.units, Preferences.Imperial);
        keyClick(Qt.Key_Tab);
        wanted("metric").forceActiveFocus();
        keyClick(Qt.Key_Space);
        compare(Preferences.units, Preferences.Metric);
    }
    function test_language() {
        const language = openSettings();
        compare(window.title, "Logbook – simulated computer");
        language.forceActiveFocus();
        keyClick(Qt.Key_Down);
        compare(Preferences.language, "fr");
        compare(window.title, "Carnet de plongée – ordinateur simulé");
        keyClick(Qt.Key_Up);
        compare(window.title, "Logbook – simulated computer");
    }
    function test_checksFile() {
        openSettings();
        wanted("check").clicked();
        shows("checked", "Everything in the file is sound.");
    }
}
