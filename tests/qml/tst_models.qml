// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Varda
import VardaTest

TestCase {
    id: test

    name: "Models"

    property VardaJob job

    VardaComputer {
        id: computer
    }

    SignalSpy {
        id: finished

        target: test.job
        signalName: "finished"
    }

    function value(asked) {
        job = asked;
        finished.clear();
        finished.wait(60000);
        compare(job.errorText, "");
        return job.value;
    }

    Repeater {
        id: battery

        model: BatteryModel {
            id: batteryModel
        }

        Item {
            required property int kind
            required property int value20
            required property var record
        }
    }

    function itemAt(view, row) {
        return view.itemAt(row);
    }

    function test_battery() {
        compare(Simulator.load({}), "");
        batteryModel.records = value(computer.readBatteryHistory());
        compare(batteryModel.count, 5);
        compare(battery.count, 5);
        const third = itemAt(battery, 2);
        compare(third.kind, 1);
        compare(third.value20, 86400);
        compare(third.record.kind, 1);
        compare(batteryModel.get(3).value20, 172801);
        compare(batteryModel.get(5), undefined);
        batteryModel.records = [];
        compare(battery.count, 0);
    }

    ListView {
        id: log

        model: LogModel {
            id: logModel
        }
        delegate: Text {
            required text
        }
        height: 1000
    }

    function test_log() {
        compare(Simulator.load({}), "");
        logModel.records = value(computer.readBinaryLog());
        verify(logModel.count > 0);
        verify(/^[0-9]{4}-[0-9]{2}-[0-9]{2} /.test(log.itemAtIndex(0).text));
    }

    GasModel {
        id: gases
    }

    LineModel {
        id: lines
    }

    SampleModel {
        id: samples
    }

    HeaderModel {
        id: headers
    }

    function test_dive() {
        compare(Simulator.load({}), "");
        const download = computer.downloadDives();
        let third = null;
        download.diveRead.connect((dive, header, read) => {
            if (dive.diveNumber !== 3)
                return;
            third = dive;
            samples.records = read;
        });
        value(download);
        gases.records = third.gases;
        lines.records = third.lines;
        headers.records = download.headers;
        compare(gases.count, 2);
        compare(gases.get(0).name, "EAN22");
        compare(gases.data(gases.index(1, 0), 257 + 11), "EAN50");
        compare(lines.count, 504);
        compare(samples.count, 504);
        compare(lines.get(300).depth, samples.get(300).depth / 10);
        compare(headers.get(2).diveNumber, 3);
        compare(third.profile.maximumDepth.toFixed(1), "44.1");
        compare(third.profile.lowestTemperature, 6);
        // Records of another kind have no place in it.
        gases.records = [third, gases.get(0), 7];
        compare(gases.count, 1);
    }

    LayoutModel {
        id: layouts
    }

    function test_layouts() {
        compare(Simulator.load({layouts: [{name: "Deep", blob: "0102"}]}), "");
        layouts.records = value(computer.readLayouts());
        compare(layouts.count, 1);
        compare(layouts.get(0).name, "Deep");
    }

    DeviceModel {
        id: devices
    }

    function test_devices() {
        compare(Simulator.loadScenario(JSON.stringify({devices: [
            {name: "Tidemar", address: "00:AA:01:01:00:01"},
            {name: "Varda", address: "00:AA:01:01:00:02"},
            {name: "Lamp", address: "00:AA:01:01:00:03"},
        ]})), "");
        const search = computer.search(3);
        devices.search = search;
        value(search);
        compare(devices.count, 2);
        compare([devices.get(0).name, devices.get(1).name].sort(), ["Tidemar", "Varda"]);
        computer.device = devices.get(0);
        compare(computer.device.address, devices.get(0).address);
    }
}
