// SPDX-License-Identifier: MIT
pragma Singleton
import QtQuick
import Logbook.Core

/** The look of the app. Sizes follow the font that the user has chosen. */
QtObject {
    property bool dark: Appearance.dark
    property real fontSize: Appearance.fontSize

    // Colours. Texts and symbols have a contrast of 4.5 : 1 at least to all that they stand on.
    readonly property color window: dark ? "#10171c" : "#f3f6f8"
    readonly property color surface: dark ? "#182229" : "#ffffff"
    readonly property color sunken: dark ? "#10171c" : "#f3f6f8"
    readonly property color hover: dark ? "#212d36" : "#eaf0f3"
    readonly property color chosen: dark ? "#16394a" : "#d9eef5"
    readonly property color line: dark ? "#2e3c46" : "#d8e0e5"
    readonly property color outline: dark ? "#7f929e" : "#6b7c88"
    readonly property color text: dark ? "#e8eef2" : "#12212b"
    readonly property color faint: dark ? "#a3b4bf" : "#4c5d69"
    readonly property color accent: dark ? "#63c7e6" : "#07647f"
    readonly property color accentInk: dark ? "#05202b" : "#ffffff"
    readonly property color good: dark ? "#7bd3a0" : "#13693c"
    readonly property color bad: dark ? "#ffab9f" : "#a8231a"
    readonly property color badInk: dark ? "#3b0a05" : "#ffffff"
    readonly property color badSurface: dark ? "#3a1d1a" : "#fdecea"
    readonly property color shade: dark ? "#b0000000" : "#700b1a22"

    // Sizes, on a grid of 8 pixels at a font of 14
    readonly property real unit: Math.round(fontSize * 8 / 14)
    readonly property real half: Math.round(unit / 2)
    readonly property real radius: unit
    readonly property real small: Math.round(fontSize * 0.88)
    readonly property real body: Math.round(fontSize)
    readonly property real title: Math.round(fontSize * 1.18)
    readonly property real headline: Math.round(fontSize * 1.6)
    readonly property real figure: Math.round(fontSize * 1.45)
    /** What a finger hits. */
    readonly property real touch: 5 * unit
    readonly property real icon: Math.round(fontSize * 1.45)
    readonly property real listWidth: 48 * unit
    readonly property real textWidth: 64 * unit
    /** Two panes beside each other need this. */
    readonly property real wide: 96 * unit

    // Milliseconds
    readonly property int quick: Preferences.animated ? 120 : 0
    readonly property int calm: Preferences.animated ? 200 : 0
}
