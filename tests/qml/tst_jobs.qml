// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Varda
import VardaTest

TestCase {
    id: test

    name: "Jobs"

    property VardaJob job
    property VardaComputer computer
    property var seen: []

    Component {
        id: computerComponent

        VardaComputer {}
    }

    SignalSpy {
        id: finished

        target: test.job
        signalName: "finished"
    }

    function init() {
        seen = [];
        computer = computerComponent.createObject(test);
    }

    function cleanup() {
        job = null;
        computer.destroy();
        computer = null;
        wait(0);
    }

    function load(keys) {
        compare(Simulator.load(keys), "");
    }

    /** Waits for the end of a job and returns it. */
    function ended(asked) {
        job = asked;
        finished.clear();
        finished.wait(60000);
        compare(finished.count, 1);
        return job;
    }

    function value(asked) {
        const done = ended(asked);
        compare(done.errorText, "");
        compare(done.error, VardaJob.NoError);
        return done.value;
    }

    function test_owner() {
        load({owner: "Zoë"});
        compare(value(computer.readOwner()), "Zoë");
        compare(computer.state, VardaComputer.Connected);
        compare(computer.device.address, "00:AA:01:01:00:01");
        compare(computer.device.name, "Varda");
    }

    function test_identity() {
        load({});
        const identity = value(computer.readIdentity());
        compare(identity.model, ComputerModel.Varda);
        compare(identity.mode, CurrentMode.Normal);
        compare(identity.serialNumber, "00420017-3138510D-37373934");
        compare(identity.firmwareVersionStr, "1.4.2.b");
        compare(computer.identity.serialNumber, "00420017-3138510D-37373934");
    }

    function test_lists() {
        load({});
        const battery = value(computer.readBatteryHistory());
        compare(battery.length, 5);
        compare(battery[2].kind, 1);
        compare(battery[2].value20, 86400);
        compare(value(computer.readActiveLayouts()).length, 5);
        compare(value(computer.readLog()).length > 0, true);
    }

    function test_failure() {
        load({faults: [{step: "answer", command: "Time", kind: "wrongCrc"}]});
        const asked = computer.readClock();
        asked.setRetries(0);
        const failed = ended(asked);
        compare(failed.error, VardaJob.Damaged);
        compare(failed.reason, VardaJob.Reason.WrongChecksum);
        verify(failed.errorText !== "");
        compare(failed.value, undefined);
    }

    function test_cancelled() {
        load({});
        const asked = computer.downloadDives();
        asked.cancel();
        const failed = ended(asked);
        compare(failed.error, VardaJob.Cancelled);
        compare(failed.reason, VardaJob.Reason.ByCaller);
    }

    function test_download() {
        load({});
        const asked = computer.downloadDives([1, 2]);
        compare(asked.unit, VardaJob.Dives);
        asked.diveRead.connect((dive, header, samples) =>
            seen.push([dive.diveNumber, header.diveNumber, samples.length === dive.lines.length]));
        const done = ended(asked);
        compare(done.error, VardaJob.NoError);
        compare(done.value, seen.length);
        compare(done.damaged, []);
        compare(seen[0], [3, 3, true]);
        compare(done.headers[0].diveNumber, 3);
    }

    /** What is no number of this kind is not sent as another one. */
    function test_rejected_data() {
        return [
            {tag: "none", ask: () => computer.removeLayout(undefined)},
            {tag: "too great", ask: () => computer.removeLayout(256)},
            {tag: "too small", ask: () => computer.removeLayout(-1)},
            {tag: "fraction", ask: () => computer.removeLayout(0.5)},
            {tag: "samples", ask: () => computer.readSamples(65536)},
            {tag: "layout", ask: () => computer.readLayout(256)},
            {tag: "dive mode", ask: () => computer.activateLayout(0, 128)},
            {tag: "pressure", ask: () => computer.writeSurfacePressure(-1)},
            {tag: "settings", ask: () => computer.writeSettings({byte1: 1})},
            {tag: "setting", ask: () => computer.writeSettings({byte1: 1, byte2: 256, float1: 0,
                byte3: 0, float2: 0, byte4: 0, byte5: 0, byte6: 0})},
            {tag: "unknown setting", ask: () => computer.writeSettings({byte1: 1, byte2: 2,
                float1: 0, byte3: 0, float2: 0, byte4: 0, byte5: 0, byte6: 0, byte7: 0})},
        ];
    }

    function test_rejected(data) {
        load({});
        const failed = ended(data.ask());
        compare(failed.error, VardaJob.Rejected);
        compare(failed.reason, VardaJob.Reason.BadArgument);
        compare(Simulator.frames(), []);
    }

    function test_settings() {
        load({});
        value(computer.writeSettings({byte1: 1, byte2: 2, float1: 1.5, byte3: 3, float2: -2.5,
            byte4: 4, byte5: 5, byte6: 255}));
        const frames = Simulator.frames();
        compare(frames[frames.length - 1].slice(18), "01020000c03f03000020c00405ff");
    }

    /** Whether no more than that many watched objects are left. Qt 6.8 collects in steps. */
    function collected(most) {
        gc();
        return Simulator.alive() <= most;
    }

    /** The garbage collector takes a job that has ended, but none that somebody refers to. */
    function test_jobStaysAsLongAsItIsReferredTo() {
        load({});
        readOwner();
        gc();
        wait(50);
        compare(Simulator.alive(), 1);
        compare(job.value, "Ada Lindqvist");
        finished.clear(); // it keeps what it has seen
        job = null;
        tryVerify(() => collected(0));
    }

    // Functions of their own, as one that is running refers to what it has called for.
    function readOwner() {
        value(computer.readOwner());
        Simulator.watch(job);
    }

    function test_nobodyRefersToTheJob() {
        load({});
        for (let i = 0; i < 3; ++i)
            ask();
        gc();
        wait(50);
        compare(Simulator.alive(), 3);
        tryVerify(() => seen.length === 3, 20000);
        compare(seen[2], "Ada Lindqvist");
        // Qt 6.8 keeps the last object that a line has asked for its signal.
        tryVerify(() => collected(1));
    }

    function ask() {
        const asked = computer.readOwner();
        Simulator.watch(asked);
        asked.finished.connect(() => seen.push(asked.value)); // it refers to the job itself
    }

    function test_nobodyCaresForTheJob() {
        load({});
        forget();
        gc();
        value(computer.readOwner());
        tryVerify(() => collected(0));
    }

    function forget() {
        Simulator.watch(computer.readOwner());
    }

    function test_jobOutlivesTheComputer() {
        load({});
        const asked = computer.readOwner();
        Simulator.watch(asked);
        job = asked;
        finished.clear();
        computer.destroy();
        finished.wait(20000);
        compare(job.reason, VardaJob.Reason.ComputerDeleted);
        compare(Simulator.alive(), 1);
        job = null;
        computer = computerComponent.createObject(test);
        tryVerify(() => collected(1));
    }

    function test_limits() {
        load({faults: [{step: "answer", command: "Owner", kind: "silent", times: 9}]});
        computer.retries = 0;
        const failed = ended(computer.readOwner());
        compare(failed.error, VardaJob.TimedOut);
        compare(Simulator.frames().filter(each => each.endsWith("16")).length, 1);
    }

    function test_linkMode() {
        load({mode: "gatt"});
        computer.linkMode = BleMode.Sps;
        const failed = ended(computer.readOwner());
        compare(failed.error, VardaJob.NotConnected);
        compare(failed.reason, VardaJob.Reason.OtherLinkMode);
        computer.linkMode = undefined;
        compare(value(computer.readOwner()), "Ada Lindqvist");
    }
}
