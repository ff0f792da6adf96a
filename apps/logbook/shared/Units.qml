// SPDX-License-Identifier: MIT
pragma Singleton
import QtQuick
import Varda
import Logbook.Core

/** Numbers, times and dates as the diver reads them. */
QtObject {
    readonly property bool metric: Preferences.units === Preferences.Metric
    readonly property var locale: Qt.locale(Preferences.localeName)
    readonly property string depthUnit: metric ? qsTr("m", "metres") : qsTr("ft", "feet")

    /** The texts that are there, one after the other. */
    function list(texts: var, separator: string): string {
        return texts.filter(each => each).join(separator);
    }
    function number(value: real, digits: int): string {
        return Number(value).toLocaleString(locale, "f", digits);
    }
    function count(value: int): string {
        return Number(value).toLocaleString(locale, "f", 0);
    }
    /** In the unit of the diver, for axes. */
    function depthValue(metres: real): real {
        return metric ? metres : metres / 0.3048;
    }
    function depth(metres: real): string {
        return number(depthValue(metres), metric ? 1 : 0) + "\u00a0" + depthUnit;
    }
    function temperature(celsius: real): string {
        return metric ? number(celsius, 0) + "\u00a0°C" : number(celsius * 1.8 + 32, 0) + "\u00a0°F";
    }
    function temperatures(lowest: var, highest: var): string {
        if (lowest === undefined || highest === undefined)
            return "";
        if (temperature(lowest) === temperature(highest))
            return temperature(lowest);
        const value = celsius => number(metric ? celsius : celsius * 1.8 + 32, 0);
        // A dash between two numbers below zero would be read as a minus.
        const range = lowest < 0 || !metric && lowest < -17 ? qsTr("%1 to %2", "temperatures") : "%1–%2";
        return range.arg(value(lowest)).arg(temperature(highest));
    }
    function pressure(millibar: real): string {
        return metric ? Math.round(millibar) + "\u00a0mbar" : number(millibar * 0.0295300, 2) + "\u00a0inHg";
    }
    /** Minutes and seconds; hours if there are any. */
    function duration(seconds: real): string {
        const whole = Math.round(seconds);
        const hours = Math.floor(whole / 3600);
        const minutes = Math.floor(whole / 60) % 60;
        const two = value => value < 10 ? "0" + value : "" + value;
        const rest = two(whole % 60);
        return hours ? hours + ":" + two(minutes) + ":" + rest : minutes + ":" + rest;
    }
    /** The same, for a voice. */
    function spokenDuration(seconds: real): string {
        return qsTr("%n minute(s)", "", Math.round(seconds / 60));
    }
    function hours(seconds: real): string {
        return qsTr("%1 h", "hours").arg(number(seconds / 3600, seconds < 360000 ? 1 : 0));
    }

    function isDate(date: var): bool {
        return date instanceof Date && !isNaN(date.getTime());
    }
    function date(date: var): string {
        return isDate(date) ? date.toLocaleDateString(locale, Locale.ShortFormat) : qsTr("no date");
    }
    function longDate(date: var): string {
        return isDate(date) ? date.toLocaleDateString(locale, Locale.LongFormat) : qsTr("no date");
    }
    /** The day where the month stands above it, and the time. */
    function shortDay(date: var): string {
        if (!isDate(date))
            return qsTr("no date");
        return date.toLocaleString(locale, qsTr("ddd d", "a day, as Qt formats dates")) + ", " + time(date);
    }
    function time(date: var): string {
        return isDate(date) ? date.toLocaleTimeString(locale, Locale.ShortFormat) : "";
    }
    /** "2026-11" as "November 2026". */
    function month(key: string): string {
        const parts = key.split("-");
        if (parts.length !== 2 || isNaN(parts[0]) || isNaN(parts[1]))
            return qsTr("Without a date");
        const name = locale.standaloneMonthName(Number(parts[1]) - 1, Locale.LongFormat);
        return name.charAt(0).toUpperCase() + name.slice(1) + " " + parts[0];
    }
    /** "Air", "EAN32", "18/45"; Air and Oxygen in the language of the app. */
    function gas(gas: var): string {
        if (!gas)
            return "–";
        const oxygen = Math.round(gas.oxygen * 100);
        if (Math.round(gas.helium * 100) > 0)
            return gas.name;
        return oxygen === 21 ? qsTr("Air") : oxygen === 100 ? qsTr("Oxygen") : gas.name;
    }
    /** All that were breathed, in their order, each once. */
    function gases(dive: var): string {
        const names = dive.profile.switches.map(each => gas(dive.gases[each.gasIndex]));
        return [...new Set(names)].join(", ");
    }
    function model(model: int): string {
        switch (model) {
        case ComputerModel.Varda:
            return "Varda";
        case ComputerModel.Tidemar:
            return "Tidemar";
        case ComputerModel.VSKM:
            return "VSKM";
        case ComputerModel.ThirdParty:
            return qsTr("Another maker’s");
        default:
            return qsTr("Unknown");
        }
    }
    function size(bytes: real): string {
        return locale.formattedDataSize(bytes);
    }
}
