// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Varda
import VardaTest

TestCase {
    id: test

    name: "Session"

    property string owner: session.owner

    VardaComputer {
        id: computer
    }

    VardaSession {
        id: session
    }

    SignalSpy {
        id: status

        target: session
        signalName: "connectControllerStatus"
    }

    SignalSpy {
        id: ended

        target: session
        signalName: "endCommand"
    }

    function run(command) {
        ended.clear();
        command();
        ended.wait(20000);
        return ended.signalArguments[0][0];
    }

    function test_session() {
        compare(Simulator.load({mode: "sps", owner: "Ada", dives: {count: 3, seed: 2}}), "");
        compare(session.connected, false);
        session.connectTo(computer.deviceFromAddress("00:AA:01:01:00:01", "Varda"), BleMode.Sps);
        tryVerify(() => status.count > 0
                  && status.signalArguments[status.count - 1][0] === ConnectControllerStatus.Connected, 20000);
        compare(session.connected, true);
        compare(session.lastDevice.address, "00:AA:01:01:00:01");
        compare(run(() => session.startCommand(TidemarCommand.Owner)), TidemarCommand.Owner);
        compare(session.owner, "Ada");
        compare(test.owner, "Ada");
        run(() => session.startCommand(TidemarCommand.Identification));
        compare(session.computerModel, ComputerModel.Varda);
        compare(session.firmwareVersionStr, "1.4.2.b");
        run(() => session.startGetBatteryInformation());
        compare(session.batteryInfo.length, 5);
        run(() => session.qmlStartGetLogbook([]));
        compare(session.diveHeaders.map(each => each.diveNumber), [3, 2, 1]);
        run(() => session.startGetDiveSamples(3));
        const dive = TidemarDiveConverter.toDive(session.diveHeaders[0], session.diveSamples, session);
        compare(dive.diveNumber, 3);
        compare(dive.lines.length, session.diveSamples.length);
        compare(TidemarDiveConverter.gases(session.diveHeaders[0]).length, dive.gases.length);
        session.controllerDisConnect();
        tryCompare(session, "connected", false);
    }
}
