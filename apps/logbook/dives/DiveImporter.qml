// SPDX-License-Identifier: MIT
import QtQuick
import Varda
import Logbook

/** Adds the dives of a file to the store, one after the other. */
QtObject {
    id: root

    property bool busy: false
    property bool done: false
    /** The file is none with dives. */
    property bool unreadable: false
    property int storeError: LogbookError.NoError
    property string errorText
    property int added: 0
    property int known: 0
    property real progress: 0
    property url file
    property int run: 0

    function cancel() {
        ++run;
        busy = false;
        done = true;
    }
    function again() {
        read(file);
    }
    function read(file: url) {
        ++run;
        root.file = file;
        busy = true;
        done = unreadable = false;
        storeError = LogbookError.NoError;
        errorText = "";
        added = known = 0;
        progress = 0;
        const result = DiveFormats.read(file);
        if (result.error) {
            unreadable = true;
            errorText = result.error;
            end();
            return;
        }
        addNext(result.dives, 0, run);
    }

    function addNext(dives: var, at: int, ownRun: int) {
        if (at === dives.length) {
            end();
            return;
        }
        const call = AppStore.addDive(undefined, dives[at]);
        call.finished.connect(() => {
            if (!root || root.run !== ownRun)
                return;
            if (call.error !== LogbookError.NoError) {
                storeError = call.error;
                errorText = call.errorText;
                end();
                return;
            }
            if (call.value.isNew)
                ++added;
            else
                ++known;
            progress = (at + 1) / dives.length;
            addNext(dives, at + 1, ownRun);
        });
    }
    function end() {
        busy = false;
        done = true;
    }
}
