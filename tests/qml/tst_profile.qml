// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Varda
import VardaTest

Item {
    id: page

    width: 700
    height: 500

    DiveProfile {
        id: profile

        width: 640
        height: 360
        fontFamily: "DejaVu Sans"
    }

    DiveProfile {
        id: other

        y: 400
        width: 200
        height: 100
    }

    SignalSpy {
        id: cursorMoved

        target: profile
        signalName: "cursorChanged"
    }

    SignalSpy {
        id: rangeMoved

        target: profile
        signalName: "rangeChanged"
    }

    SignalSpy {
        id: pageScrolled

        target: flickable
        signalName: "contentYChanged"
    }

    Flickable {
        id: flickable

        y: 360
        width: 300
        height: 40
        contentHeight: 400

        DiveProfile {
            id: inPage

            width: 300
            height: 400
        }
    }

    Component {
        id: made

        DiveProfile {
            dive: Dives.deep()
            from: 600
            to: 1200
            Accessible.name: "The deep one"
        }
    }

    TestCase {
        name: "Profile"
        when: windowShown

        function init() {
            profile.units = DiveProfile.Metric;
            profile.theme = DiveProfile.Light;
            profile.textSize = 12;
            profile.thumbnail = false;
            profile.interactive = true;
            profile.others = [];
            profile.dive = Dives.deep();
            other.forceActiveFocus();
            mouseMove(page, 690, 10);
            profile.cursorTime = NaN;
            cursorMoved.clear();
            rangeMoved.clear();
        }

        function test_values() {
            compare(profile.cursorTime, NaN);
            compare(profile.cursorDepth, NaN);
            compare(profile.cursorTemperature, NaN);
            compare(profile.cursorGas, "");
            compare(profile.cursorDepths, []);
            profile.cursorTime = 434;
            compare(profile.cursorTime, 430);
            compare(profile.cursorDepth, 43.9);
            compare(profile.cursorTemperature, 6);
            compare(profile.cursorGas, "21/35");
            compare(profile.cursorDepths, [43.9]);
            profile.cursorTime = 1e9;
            compare(profile.cursorTime, 3120);
            compare(profile.cursorDepth, 0);
            compare(profile.cursorGas, "Oxygen");
            profile.dive = Dives.shallow();
            compare(profile.cursorTime, NaN);
            profile.cursorTime = 300;
            compare(profile.cursorDepth, 11.6);
            compare(profile.cursorTemperature, NaN);
            compare(cursorMoved.count, 4);
        }

        function test_places() {
            compare(profile.pointAt(0, 0).x, 52);
            compare(profile.pointAt(3120, 0).x, 626);
            compare(profile.timeAt(339), 1560);
            profile.textSize = 24;
            compare(profile.pointAt(0, 0).x, 104);
            compare(profile.pointAt(3120, 0).x, 612);
        }

        /** Through the depths and the temperatures. */
        function test_cursorLine_data() {
            return [{tag: "depths", y: 100}, {tag: "temperatures", y: 300}];
        }

        function test_cursorLine(data) {
            const before = grabImage(profile).pixel(339, data.y);
            profile.cursorTime = 1560;
            verify(!Qt.colorEqual(grabImage(profile).pixel(339, data.y), before));
        }

        function test_mouse() {
            mouseMove(profile, 339, 200);
            compare(profile.cursorTime, 1560);
            compare(profile.cursorGas, "EAN50");
            mouseMove(profile, 340, 100);
            mouseMove(profile, 1, 100);
            compare(profile.cursorTime, 0);
            mouseMove(page, 690, 10);
            compare(profile.cursorTime, NaN);
            mousePress(profile, 339, 200);
            verify(profile.activeFocus);
            compare(profile.cursorTime, 1560);
            mouseMove(profile, 626, 210);
            compare(profile.cursorTime, 3120);
            mouseRelease(profile, 626, 210);
            compare(profile.zoomed, false);
        }

        function test_keys() {
            profile.forceActiveFocus();
            keyClick(Qt.Key_Right);
            compare(profile.cursorTime, 0);
            keyClick(Qt.Key_Right);
            compare(profile.cursorTime, 10);
            keyClick(Qt.Key_Right, Qt.ControlModifier);
            compare(profile.cursorTime, 330);
            keyClick(Qt.Key_Left);
            compare(profile.cursorTime, 320);
            keyClick(Qt.Key_Left, Qt.ControlModifier);
            compare(profile.cursorTime, 0);
            keyClick(Qt.Key_Left);
            compare(profile.cursorTime, 0);
            keyClick(Qt.Key_End);
            compare(profile.cursorTime, 3120);
            keyClick(Qt.Key_Right);
            compare(profile.cursorTime, 3120);
            keyClick(Qt.Key_Home);
            compare(profile.cursorTime, 0);
            keyClick(Qt.Key_Escape);
            compare(profile.cursorTime, NaN);
            keyClick(Qt.Key_Left);
            compare(profile.cursorTime, 3120);
        }

        function test_keyOfSmallSteps() {
            profile.dive = Dives.many();
            profile.forceActiveFocus();
            profile.cursorTime = 0;
            // 19999 seconds on 574 pixels.
            keyClick(Qt.Key_Right);
            compare(profile.cursorTime, 35);
            keyClick(Qt.Key_Left);
            compare(profile.cursorTime, 0);
        }

        function test_zoomByKeys() {
            profile.forceActiveFocus();
            profile.cursorTime = 600;
            keyClick("+");
            compare(profile.zoomed, true);
            compare(profile.from, 200);
            compare(profile.to, 2280);
            keyClick("-");
            compare(profile.zoomed, false);
            compare([profile.from, profile.to], [0, 3120]);
            keyClick("-");
            compare(rangeMoved.count, 2);
            keyClick("+");
            keyClick("+");
            keyClick("0");
            compare(profile.zoomed, false);
            for (let i = 0; i < 40; ++i)
                keyClick("+");
            compare(profile.to - profile.from, 10);
            // What is shown follows the cursor.
            keyClick(Qt.Key_End);
            compare([profile.from, profile.to], [3110, 3120]);
            keyClick(Qt.Key_Home);
            compare([profile.from, profile.to], [0, 10]);
        }

        function test_wheel() {
            mouseWheel(profile, 339, 200, 0, 120);
            compare(profile.zoomed, false);
            mouseWheel(profile, 339, 200, 0, 120, Qt.NoButton, Qt.ControlModifier);
            compare([profile.from, profile.to], [312, 2808]);
            compare(profile.timeAt(339), 1560);
            mouseWheel(profile, 339, 200, -120, 0);
            compare([profile.from, profile.to].map(Math.round), [562, 3058]);
            profile.forceActiveFocus();
            mouseWheel(profile, 339, 200, 0, -120);
            compare(profile.zoomed, false);
        }

        function test_dragOfAPart() {
            profile.setRange(600, 1174);
            compare([profile.from, profile.to], [600, 1174]);
            mousePress(profile, 300, 200);
            mouseMove(profile, 280, 200);
            mouseMove(profile, 250, 200);
            compare([profile.from, profile.to], [650, 1224]);
            mouseMove(profile, 640, 200);
            mouseRelease(profile, 640, 200);
            compare([profile.from, profile.to], [260, 834]);
            mouseDoubleClickSequence(profile, 300, 200);
            compare(profile.zoomed, false);
        }

        function test_range() {
            profile.from = 600;
            compare([profile.from, profile.to], [600, 3120]);
            profile.to = 700;
            compare([profile.from, profile.to], [600, 700]);
            profile.setRange(500, 400);
            compare([profile.from, profile.to], [600, 700]);
            profile.setRange(-100, 9000);
            compare(profile.zoomed, false);
            profile.zoomBy(NaN, 0);
            profile.zoomBy(2, NaN);
            profile.zoomBy(-1, 5);
            compare(profile.zoomed, false);
            profile.zoomBy(2, 0);
            compare([profile.from, profile.to], [0, 1560]);
            profile.dive = Dives.shallow();
            compare([profile.from, profile.to], [0, 1800]);
        }

        function test_pinch() {
            const touch = touchEvent(profile);
            touch.press(0, profile, 239, 200).commit();
            touch.stationary(0).press(1, profile, 439, 200).commit();
            touch.move(0, profile, 139, 200).move(1, profile, 539, 200).commit();
            tryCompare(profile, "from", 780);
            compare(profile.to, 2340);
            // Both fingers to the right: an earlier part.
            touch.move(0, profile, 239, 200).move(1, profile, 639, 200).commit();
            tryVerify(() => Math.round(profile.timeAt(439)) === 1560);
            compare(Math.round(profile.to - profile.from), 1560);
            touch.release(0, profile, 239, 200).release(1, profile, 639, 200).commit();
            compare(profile.zoomed, true);
        }

        function test_touch() {
            const touch = touchEvent(profile);
            touch.press(0, profile, 339, 200).commit();
            compare(profile.cursorTime, 1560);
            touch.move(0, profile, 400, 202).commit();
            touch.move(0, profile, 626, 202).commit();
            tryCompare(profile, "cursorTime", 3120);
            touch.release(0, profile, 626, 202).commit();
            compare(profile.cursorTime, 3120);
        }

        function test_doubleTap() {
            profile.setRange(600, 1200);
            const touch = touchEvent(profile);
            // On a busy machine two taps may not follow each other quickly enough.
            tryVerify(() => {
                touch.press(0, profile, 339, 200).commit();
                touch.release(0, profile, 339, 200).commit();
                return !profile.zoomed;
            });
        }

        /** Up and down scrolls, across does not. */
        function test_inAPage() {
            inPage.dive = Dives.deep();
            const touch = touchEvent(inPage);
            touch.press(0, flickable, 150, 30).commit();
            let y = 30;
            tryVerify(() => {
                touch.move(0, flickable, 150, y -= 2).commit();
                return pageScrolled.count > 0;
            });
            touch.release(0, flickable, 150, y).commit();
            flickable.cancelFlick();
            flickable.contentY = 0;
            pageScrolled.clear();
            touch.press(0, flickable, 100, 20).commit();
            let x = 100;
            y = 20;
            tryVerify(() => {
                touch.move(0, flickable, x += 2, y).commit();
                return inPage.cursorTime > inPage.timeAt(130);
            });
            tryVerify(() => {
                touch.move(0, flickable, x += 2, y -= 2).commit();
                return inPage.cursorTime > inPage.timeAt(190);
            });
            touch.release(0, flickable, x, y).commit();
            compare(pageScrolled.count, 0);
            y = 30;
            touch.press(0, flickable, 150, y).commit();
            tryVerify(() => {
                touch.move(0, flickable, 150, y -= 2).commit();
                return pageScrolled.count > 0;
            });
            touch.release(0, flickable, 150, y).commit();
            flickable.cancelFlick();
        }

        function test_notInteractive() {
            profile.interactive = false;
            mouseMove(profile, 339, 200);
            compare(profile.cursorTime, NaN);
            mouseClick(profile, 339, 200);
            verify(!profile.activeFocus);
            profile.cursorTime = 430;
            compare(profile.cursorDepth, 43.9);
        }

        function test_comparison() {
            profile.others = [Dives.shallow(), "no dive"];
            compare(profile.others.length, 1);
            profile.cursorTime = 300;
            compare(profile.cursorDepths, [42.5, 11.6]);
            profile.cursorTime = 1810;
            compare(profile.cursorDepths, [15.1, NaN]);
            compare(profile.lineColor(1), "#de6a08");
            compare(profile.summary, "Dive 3: greatest depth 43.9 m, duration 52 min; "
                    + "Dive 1: greatest depth 11.9 m, duration 30 min.");
            compare(profile.Accessible.name, "Profiles of 2 dives");
        }

        function test_summary() {
            compare(profile.summary, "Dive 3: greatest depth 43.9 m, duration 52 min, "
                    + "temperature 6 °C to 16 °C, gases 21/35, EAN50, Oxygen.");
            profile.units = DiveProfile.Imperial;
            compare(profile.summary, "Dive 3: greatest depth 144.0 ft, duration 52 min, "
                    + "temperature 43 °F to 61 °F, gases 21/35, EAN50, Oxygen.");
            profile.dive = Dives.shallow();
            compare(profile.summary, "Dive 1: greatest depth 39.0 ft, duration 30 min, gases Air.");
            profile.dive = undefined;
            compare(profile.summary, "Dive 0: no samples.");
        }

        function test_accessible() {
            compare(profile.Accessible.role, Accessible.Chart);
            compare(profile.Accessible.name, "Profile of dive 3");
            compare(profile.Accessible.description, profile.summary);
            compare(profile.Accessible.focusable, true);
            profile.cursorTime = 430;
            compare(profile.Accessible.description,
                    "At 7:10: 43.9 m, 6 °C, 21/35. " + profile.summary);
            const item = made.createObject(page) as DiveProfile;
            compare(item.Accessible.name, "The deep one");
            compare(item.Accessible.description, item.summary);
            compare([item.from, item.to], [600, 1200]);
            item.destroy();
        }

        function test_drawn() {
            let image = grabImage(profile);
            compare(image.pixel(2, 2), "#ffffff");
            profile.theme = DiveProfile.Dark;
            image = grabImage(profile);
            compare(image.pixel(2, 2), "#101820");
            profile.background = "#204060";
            image = grabImage(profile);
            compare(image.pixel(2, 2), "#204060");
            profile.background = undefined;
        }

        function test_thumbnail() {
            profile.thumbnail = true;
            compare([profile.implicitWidth, profile.implicitHeight], [96, 32]);
            mouseMove(profile, 339, 200);
            compare(profile.cursorTime, NaN);
            verify(!profile.activeFocusOnTab);
        }
    }
}
