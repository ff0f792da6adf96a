// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Varda
import VardaTest

TestCase {
    id: test

    name: "Logbook"

    property LogbookStore store
    property LogbookCall call
    property VardaJob job
    property var seen: []

    Component {
        id: storeComponent

        LogbookStore {}
    }

    VardaComputer {
        id: computer
    }

    LogbookModel {
        id: dives

        store: test.store
    }

    LogbookComputerModel {
        id: computers

        store: test.store
    }

    SignalSpy {
        id: finished

        target: test.call
        signalName: "finished"
    }

    SignalSpy {
        id: jobFinished

        target: test.job
        signalName: "finished"
    }

    SignalSpy {
        id: changed

        target: test.store
        signalName: "changed"
    }

    SignalSpy {
        id: failed

        target: test.store
        signalName: "failed"
    }

    SignalSpy {
        id: inserted

        target: dives
        signalName: "rowsInserted"
    }

    SignalSpy {
        id: removed

        target: dives
        signalName: "rowsRemoved"
    }

    SignalSpy {
        id: rowChanged

        target: dives
        signalName: "dataChanged"
    }

    SignalSpy {
        id: modelReset

        target: dives
        signalName: "modelReset"
    }

    function init() {
        seen = [];
        store = storeComponent.createObject(test, {file: Files.newFile("dives.sqlite")});
        tryCompare(store, "open", true);
        settle();
    }

    function cleanup() {
        call = null;
        job = null;
        store.destroy();
        store = null;
        dives.search = "";
        dives.since = undefined;
        dives.until = undefined;
        dives.onlyHidden = false;
        dives.newestFirst = true;
        wait(0);
    }

    /** Waits until the lists show what the store has. */
    function settle() {
        ended(store.computers());
        tryCompare(dives, "loading", false);
        for (const spy of [changed, failed, inserted, removed, rowChanged, modelReset])
            spy.clear();
    }

    function ended(asked) {
        call = asked;
        finished.clear();
        if (!call.isFinished)
            finished.wait(20000);
        return call;
    }

    function value(asked) {
        const done = ended(asked);
        compare(done.errorText, "");
        compare(done.error, LogbookError.NoError);
        return done.value;
    }

    function synchronise() {
        job = computer.sync(store);
        jobFinished.clear();
        jobFinished.wait(60000);
        return job;
    }

    /** Adds a dive for each begin, numbered from 1, and returns their ids. */
    function add(begins) {
        return begins.map((begin, i) =>
            value(store.addDive(undefined, Files.dive(i + 1, begin, 10 + i))).id);
    }

    function numbers() {
        const listed = [];
        for (let row = 0; row < dives.count; ++row)
            listed.push(dives.get(row).number);
        return listed;
    }

    function test_empty() {
        compare(value(store.computers()), []);
        compare(value(store.dives()), []);
        compare(dives.count, 0);
        compare(dives.get(0), undefined);
        verify(store.defaultFile().endsWith(".sqlite"));
        verify(store.defaultFile(true) !== store.defaultFile());
    }

    function test_close() {
        add([1767225600]);
        tryCompare(dives, "count", 1);
        store.file = "";
        compare(store.open, false);
        compare(dives.count, 0);
        const refused = ended(store.dives());
        compare(refused.error, LogbookError.NotOpen);
        compare(refused.value, undefined);
    }

    function test_cannotOpen() {
        store.file = "/proc/nowhere/dives.sqlite";
        failed.wait(20000);
        compare(store.open, false);
        compare(store.error, LogbookError.CannotOpen);
        verify(store.errorText.length > 0);
        verify(store.remedy.length > 0);
        compare(ended(store.reopen()).error, LogbookError.CannotOpen);
        store.file = Files.newFile("other.sqlite");
        tryCompare(store, "open", true);
        compare(store.error, LogbookError.NoError);
    }

    function test_reopen() {
        store.file = Files.newFile("missing/dives.txt");
        tryCompare(store, "open", true);
        Files.spoil(store.file);
        compare(ended(store.reopen()).error, LogbookError.NotADatabase);
        compare(store.open, false);
        Files.remove(store.file);
        compare(ended(store.reopen()).error, LogbookError.NoError);
        compare(store.open, true);
    }

    function test_dive() {
        const id = add([1767225600])[0];
        const dive = value(store.dive(id));
        compare(dive.number, 1);
        compare(dive.begin, 1767225600);
        compare(dive.beginDate, new Date(2026, 0, 1));
        compare(dive.month, "2026-01");
        compare(dive.greatestDepth, 10);
        compare(dive.dive.lines.length, 3);
        compare(dive.dive.lines[1].depth, 10);
        const missing = ended(store.dive(77));
        compare(missing.error, LogbookError.NoSuchDive);
        compare(store.error, LogbookError.NoSuchDive);
        compare(failed.count, 1);
        compare(ended(store.dive(NaN)).error, LogbookError.NoSuchDive);
    }

    function test_noTimeOfThisCentury() {
        const dive = value(store.dive(add([7])[0]));
        compare(dive.beginDate, undefined);
        compare(dive.month, "");
    }

    function test_query() {
        const ids = add([1767225600, 1769904000, 1772323200]);
        value(store.setHidden(ids[0], true));
        const found = query => value(store.dives(query)).map(each => each.number);
        compare(found({}), [2, 3]);
        compare(found({withHidden: true}), [1, 2, 3]);
        compare(found({since: 1769904001}), [3]);
        compare(found({until: new Date(2026, 1, 1), withHidden: true}), [1, 2]);
        compare(found({number: 2, computer: undefined}), [2]);
        compare(found({computer: 9}), []);
    }

    function test_noQuery_data() {
        return [
            {tag: "unknown member", query: {nunmber: 1}},
            {tag: "no number", query: {number: 65536}},
            {tag: "no time", query: {since: "yesterday"}},
        ];
    }

    function test_noQuery(data) {
        const refused = ended(store.dives(data.query));
        compare(refused.error, LogbookError.Failed);
        compare(refused.errorText, "dives() got a query that it does not understand");
    }

    function test_addWhatIsNoDive() {
        compare(ended(store.addDive(undefined, "a dive")).errorText,
                "what was to be added is no dive");
    }

    function test_addTwice() {
        const dive = Files.dive(4, 1767225600, 12);
        compare(value(store.addDive(undefined, dive)).isNew, true);
        compare(value(store.addDive(undefined, dive)).isNew, false);
        compare(changed.count, 1);
    }

    function test_check() {
        compare(ended(store.check()).error, LogbookError.NoError);
    }

    // The list

    function test_order() {
        add([1772323200, 1767225600, 1769904000]);
        tryCompare(dives, "count", 3);
        compare(numbers(), [1, 3, 2]);
        dives.newestFirst = false;
        compare(numbers(), [2, 3, 1]);
        compare(dives.get(2).month, "2026-03");
    }

    function test_rows() {
        const ids = add([1767225600, 1769904000, 1772323200]);
        tryCompare(dives, "count", 3);
        settle();

        add([0, 0, 0, 1770000000]);
        tryCompare(dives, "count", 7);
        compare(dives.rowOf(ids[1]), 2);
        settle();

        value(store.setNotes(ids[1], "Two eels"));
        tryCompare(rowChanged, "count", 1);
        compare(rowChanged.signalArguments[0][0].row, 2);
        compare(dives.get(2).notes, "Two eels");

        value(store.setHidden(ids[1], true));
        tryCompare(removed, "count", 1);
        compare(Array.from(removed.signalArguments[0]).slice(1), [2, 2]);
        compare(dives.rowOf(ids[1]), -1);

        value(store.setHidden(ids[1], false));
        tryCompare(inserted, "count", 1);
        compare(Array.from(inserted.signalArguments[0]).slice(1), [2, 2]);
        compare(rowChanged.count, 1);
        compare(modelReset.count, 0);
    }

    function test_filters() {
        const ids = add([1767225600, 1769904000, 1772323200]);
        value(store.setPlace(ids[0], "Blue Hole"));
        value(store.setNotes(ids[1], "cold, blue water"));
        value(store.setHidden(ids[2], true));
        tryCompare(dives, "count", 2);
        dives.search = "BLUE";
        compare(numbers(), [2, 1]);
        dives.search = "hole";
        compare(numbers(), [1]);
        dives.search = "2";
        compare(numbers(), [2]);
        dives.search = "";
        dives.onlyHidden = true;
        tryCompare(dives, "loading", false);
        compare(numbers(), [3]);
        dives.onlyHidden = false;
        dives.since = new Date(2026, 1, 1);
        tryCompare(dives, "loading", false);
        compare(numbers(), [2]);
        dives.since = undefined;
        dives.until = 1767225600;
        tryCompare(dives, "loading", false);
        compare(numbers(), [1]);
    }

    /** More places than a view would like to hear of one by one. */
    function test_manyChanges() {
        const begins = [];
        for (let i = 0; i < 400; ++i)
            begins.push(1767225600 + 3600 * i);
        add(begins);
        tryCompare(dives, "count", 400);
        settle();
        dives.search = "7";
        compare(modelReset.count, 1);
        compare(dives.count, 76);
        compare(dives.get(0).number, 397);
        dives.search = "";
        compare(dives.count, 400);
        compare(dives.get(0).number, 400);
    }

    Repeater {
        id: listed

        model: dives

        Item {
            required property int number
            required property string month
            required property var record
        }
    }

    function itemAt(view, row) {
        return view.itemAt(row);
    }

    function test_roles() {
        add([1767225600]);
        tryCompare(listed, "count", 1);
        const dive = itemAt(listed, 0);
        compare(dive.number, 1);
        compare(dive.month, "2026-01");
        compare(dive.record.greatestDepth, 10);
    }

    // Synchronising

    function test_sync() {
        compare(Simulator.load({dives: {count: 3, seed: 2}}), "");
        const stored = [];
        job = computer.sync(store);
        job.diveStored.connect((id, dive) => stored.push([id, dive.diveNumber]));
        jobFinished.clear();
        jobFinished.wait(60000);
        compare(job.error, VardaJob.NoError);
        compare(job.value, 3);
        compare(job.added, 3);
        compare(job.known, 0);
        compare(job.damaged, []);
        compare(stored.map(each => each[1]), [1, 2, 3]);
        tryCompare(dives, "count", 3);
        tryCompare(computers, "count", 1);
        compare(computers.get(0).dives, 3);
        compare(computers.get(0).id, job.computerId);
        compare(computers.get(0).identity.serialNumber, "00420017-3138510D-37373934");
        compare(modelReset.count, 0);
        compare(changed.signalArguments.filter(each => each[0] > 0).map(each => each[0]),
                stored.map(each => each[0]));

        synchronise();
        compare(job.added, 0);
        compare(job.known, 3);
    }

    function test_syncNotStored() {
        compare(Simulator.load({dives: {count: 1, seed: 2}}), "");
        store.file = "";
        synchronise();
        compare(job.error, VardaJob.NotStored);
        compare(job.reason, VardaJob.Reason.StoreFailed);
        compare((job as SyncJob).storeError.kind, LogbookError.NotOpen);
        compare(store.error, LogbookError.NotOpen);
    }

    function test_syncWithoutStore() {
        compare(computer.sync(null), null);
    }

    // What QML holds

    /** Whether no more than that many watched objects are left. Qt 6.8 collects in steps. */
    function collected(most) {
        gc();
        return Simulator.alive() <= most;
    }

    /** The garbage collector takes a call that has ended, but none that somebody refers to. */
    function test_callStaysAsLongAsItIsReferredTo() {
        listDives();
        gc();
        wait(50);
        compare(Simulator.alive(), 1);
        compare(call.value, []);
        finished.clear();
        call = null;
        tryVerify(() => collected(0));
    }

    function listDives() {
        value(store.dives());
        Simulator.watch(call);
    }

    function test_nobodyRefersToTheCall() {
        for (let i = 0; i < 3; ++i)
            ask();
        gc();
        compare(Simulator.alive(), 3);
        tryVerify(() => seen.length === 3, 20000);
        compare(seen[2], LogbookError.NoError);
        // Qt 6.8 keeps the last object that a line has asked for its signal.
        tryVerify(() => collected(1));
    }

    function ask() {
        const asked = store.dives();
        Simulator.watch(asked);
        asked.finished.connect(() => seen.push(asked.error)); // it refers to the call itself
    }

    function test_nobodyCaresForTheCall() {
        forget();
        ended(store.dives());
        tryVerify(() => collected(0));
    }

    function forget() {
        for (let i = 0; i < 20; ++i)
            Simulator.watch(store.dives());
    }

    function test_callOutlivesTheStore() {
        const other = storeComponent.createObject(test, {
            file: Files.newFile("other.sqlite"),
        }) as LogbookStore;
        call = other.check();
        finished.clear();
        other.destroy();
        finished.wait(20000);
        verify(call.isFinished);
    }
}
