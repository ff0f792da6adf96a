// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Varda
import VardaTest
import Logbook

Page {
    name: "dives"

    function openDives() {
        storeWithDives();
        openWindow();
        const list = wanted("dives");
        tryCompare(list, "count", 12);
        return list;
    }

    function test_emptyAtFirst() {
        freshStore();
        openWindow();
        wanted("goToComputer").clicked();
        compare(Navigation.page, Navigation.Computer);
    }
    /** Nobody is to read that there are none while they come. */
    function test_loadsBeforeItIsEmpty() {
        openDives();
        for (const width of [1200, 400]) {
            window.width = width;
            const isAll = AppStore.file === World.file("all.sqlite");
            AppStore.file = World.file(isAll ? "dives" + files + ".sqlite" : "all.sqlite");
            verify(!find("goToComputer"));
            verify(find("loading") || find("dives"));
            tryVerify(() => wanted("dives").count === 12);
        }
    }
    function test_oneFrameAroundAProfile() {
        openDives().itemAtIndex(0).clicked();
        const profile = wanted("profile");
        compare(Array.from(profile.children).filter(each => each.visible).length, 0);
        profile.forceActiveFocus(Qt.TabFocusReason);
        compare(Array.from(profile.children).filter(each => each.visible).length, 1);
    }
    function test_listsNewestFirst() {
        const list = openDives();
        compare(list.itemAtIndex(0).text, "Dive 12");
        tryVerify(() => list.itemAtIndex(0).dive !== undefined);
        verify(list.itemAtIndex(0).Accessible.name.startsWith("Dive 12, "));
    }
    function test_opensByKeyboard() {
        const list = openDives();
        list.forceActiveFocus();
        keyClick(Qt.Key_Down);
        keyClick(Qt.Key_Return);
        shows("paneTitle", "Dive 11");
        keyClick(Qt.Key_End);
        keyClick(Qt.Key_Return);
        shows("paneTitle", "Dive 1");
    }
    function test_search() {
        const list = openDives();
        wanted("search").forceActiveFocus();
        keyClick(Qt.Key_1);
        keyClick(Qt.Key_2);
        tryCompare(list, "count", 1);
        keyClick(Qt.Key_Escape);
        tryCompare(list, "count", 12);
    }
    function test_placeAndNotesAreKept() {
        const list = openDives();
        list.itemAtIndex(0).clicked();
        const place = wanted("place");
        place.forceActiveFocus();
        keySequence("r,e,e,f");
        shows("kept", "Saved");
        const call = AppStore.dives({});
        tryVerify(() => call.isFinished);
        compare(call.value.map(each => each.place).filter(each => each), ["reef"]);
    }
    function test_hideAndUndo() {
        const list = openDives();
        list.itemAtIndex(0).clicked();
        wanted("hide").clicked();
        tryCompare(list, "count", 11);
        const notice = wanted("notice");
        compare(notice.text, "1 dive hidden");
        notice.text = "";
        notice.action();
        tryCompare(list, "count", 12);
    }
    function test_comparesSeveral() {
        const list = openDives();
        wanted("several").clicked();
        list.itemAtIndex(0).clicked();
        list.itemAtIndex(2).clicked();
        shows("paneTitle", "2 dives");
        const profile = wanted("profile");
        tryVerify(() => profile.others.length === 1);
    }
    function test_narrowWindow() {
        const list = openDives();
        window.width = 400;
        list.itemAtIndex(0).clicked();
        const back = wanted("back");
        verify(!find("dives"));
        back.clicked();
        wanted("dives");
    }
    /** Also from what has nothing to show. */
    function test_wayBackInANarrowWindow() {
        openDives();
        window.width = 400;
        let page = wanted("dives");
        while (!page.showDive)
            page = page.parent;
        page.showDive(4711);
        tryVerify(() => AppStore.error === LogbookError.NoSuchDive);
        wanted("back").clicked();
        wanted("search").text = "xyz";
        wanted("search").textEdited();
        wanted("statistics").clicked();
        wanted("back").clicked();
        wanted("search");
    }

    DiveExporter {
        id: exporter
    }
    DiveImporter {
        id: importer
    }

    function idsOf(list) {
        const call = AppStore.dives({});
        tryVerify(() => call.isFinished);
        return call.value.map(each => each.id);
    }
    function test_exportAndImport_data() {
        return [{ tag: "uddf" }, { tag: "csv" }, { tag: "json" }];
    }
    function test_exportAndImport(row) {
        openDives();
        exporter.write(row.tag, idsOf(), World.url("dives." + row.tag));
        tryVerify(() => exporter.done);
        compare(exporter.errorText, "");
        verify(World.read("dives." + row.tag));
        freshStore();
        importer.read(World.url("dives." + row.tag));
        tryVerify(() => importer.done, 20000);
        compare(importer.errorText, "");
        compare(importer.added, 12);
        importer.again();
        tryVerify(() => importer.done, 20000);
        compare(importer.known, 12);
        compare(importer.added, 0);
    }
    function test_exportPictures() {
        openDives();
        const ids = idsOf();
        exporter.writePictures("svg", ids.slice(0, 2), World.url(""));
        tryVerify(() => exporter.done);
        compare(exporter.errorText, "");
        verify(World.read("dive-1-" + ids[0] + ".svg").includes("<svg"));
    }
    function test_savesComparison() {
        const list = openDives();
        wanted("several").clicked();
        list.itemAtIndex(0).clicked();
        list.itemAtIndex(2).clicked();
        tryVerify(() => wanted("saveComparison").enabled && wanted("profile").others.length === 1);
        let pane = wanted("saveComparison");
        while (!pane.save)
            pane = pane.parent;
        pane.save(World.url("both.svg"));
        verify(wanted("comparisonSaved").text.endsWith("/both.svg"));
        const picture = World.read("both.svg");
        for (const name of ["Dive 12, 3/6/24", "Dive 10, 3/5/24"])
            verify(picture.includes(">" + name + "<"), name);
        pane.save(World.url("both.png"));
        verify(World.has("both.png"));
        pane.save(World.url("both.pdf"));
        verify(World.has("both.pdf"));
        // Nothing says what it would be.
        pane.save(World.url("both.jpeg"));
        verify(!find("comparisonSaved"));
        verify(!World.has("both.jpeg"));
    }
    function test_exportFails() {
        openDives();
        exporter.write("uddf", idsOf(), World.url("nowhere/dives.uddf"));
        tryVerify(() => exporter.done);
        verify(exporter.failed);
        verify(exporter.errorText);
    }
    function test_importOfNoDives() {
        freshStore();
        World.write("cat.json", "meow");
        importer.read(World.url("cat.json"));
        tryVerify(() => importer.done);
        verify(importer.unreadable);
    }
    function test_statistics() {
        openDives();
        compare(wanted("statisticsCount").value, "12");
    }
}
