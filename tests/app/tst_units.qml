// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Varda
import Logbook

TestCase {
    name: "units"

    function init() {
        Preferences.language = "en";
        Preferences.units = Preferences.Metric;
    }

    function test_depth() {
        compare(Units.depth(44.12), "44.1\u00a0m");
        Preferences.units = Preferences.Imperial;
        compare(Units.depth(44.12), "145\u00a0ft");
        Preferences.units = Preferences.Metric;
        Preferences.language = "fr";
        compare(Units.depth(44.12), "44,1\u00a0m");
    }
    function test_temperature() {
        compare(Units.temperatures(6, 10), "6–10\u00a0°C");
        compare(Units.temperatures(6, 6.2), "6\u00a0°C");
        compare(Units.temperatures(-2, 4), "-2 to 4\u00a0°C");
        compare(Units.temperatures(undefined, undefined), "");
        Preferences.units = Preferences.Imperial;
        compare(Units.temperatures(6, 10), "43–50\u00a0°F");
    }
    function test_duration() {
        compare(Units.duration(59), "0:59");
        compare(Units.duration(2515), "41:55");
        compare(Units.duration(3661), "1:01:01");
    }
    function test_month() {
        compare(Units.month("2026-11"), "November 2026");
        compare(Units.month(""), "Without a date");
        Preferences.language = "fr";
        compare(Units.month("2026-11"), "Novembre 2026");
        compare(Units.month(""), "Sans date");
    }
    function test_plural() {
        compare(Units.spokenDuration(60), "1 minute");
        compare(Units.spokenDuration(600), "10 minutes");
        Preferences.language = "fr";
        compare(Units.spokenDuration(60), "1 minute");
        compare(Units.spokenDuration(600), "10 minutes");
    }
    function test_noDate() {
        compare(Units.date(undefined), "no date");
        compare(Units.longDate(new Date(NaN)), "no date");
        compare(Units.time(undefined), "");
    }
}
