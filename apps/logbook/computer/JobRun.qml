// SPDX-License-Identifier: MIT
import QtQuick
import Varda

/** Some jobs of the computer, one after the other: how far they are, how they end, and again. */
QtObject {
    id: root

    /** The one that runs, or ran last. */
    property VardaJob job: null
    /** The one that has failed, if any; nobody is told of what he has cancelled himself. */
    property VardaJob failure: null
    property bool cancelled: false
    /** All of them have succeeded. */
    property bool done: false
    readonly property bool running: calls.length > 0
    readonly property string stateText: running && job ? stateName(job.state) : ""
    /** Functions that return a job: those of this time, and those that are left of them. */
    property var allCalls: []
    property var calls: []

    /** The value of each. (In an argument it is a copy, which outlives the job.) */
    signal got(index: int, value: var)
    signal succeeded
    signal ended

    function start(...calls) {
        if (running)
            return;
        clear();
        root.allCalls = calls;
        root.calls = calls;
        next();
    }
    function retry() {
        start(...allCalls);
    }
    function cancel() {
        if (running && job)
            job.cancel();
    }
    /** Forgets how it ended. */
    function clear() {
        failure = null;
        cancelled = false;
        done = false;
    }
    function next() {
        job = calls[0]();
    }
    function take(ended: var) {
        if (ended.error !== VardaJob.NoError) {
            calls = [];
            cancelled = ended.reason === VardaJob.Reason.ByCaller;
            failure = cancelled ? null : ended;
            root.ended();
            return;
        }
        root.got(allCalls.length - calls.length, ended.value);
        calls = calls.slice(1);
        if (calls.length) {
            next();
            return;
        }
        done = true;
        root.succeeded();
        root.ended();
    }
    function stateName(state: int): string {
        switch (state) {
        case VardaJob.Waiting:
            return qsTr("Waiting for its turn");
        case VardaJob.Connecting:
            return qsTr("Connecting");
        case VardaJob.Recovering:
            return qsTr("Trying again after a fault");
        case VardaJob.Cancelling:
            return qsTr("Stopping");
        default:
            return "";
        }
    }

    property Connections ending: Connections {
        target: root.job
        function onFinished(job) {
            root.take(job);
        }
    }
}
