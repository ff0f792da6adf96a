// SPDX-License-Identifier: MIT
import QtQuick
import Varda
import Logbook

/** Reads dives from the store and writes them to files. */
QtObject {
    id: root

    property bool busy: false
    property bool done: false
    property bool failed: false
    /** The name does not say which kind of picture it is to be. */
    property bool unclear: false
    property string errorText
    property var messages: []
    property string place
    property real progress: 0
    // Calls of an export that was cancelled come to nothing.
    property int run: 0

    readonly property var formats: ({
        uddf: DiveFormats.Uddf,
        csv: DiveFormats.CsvSummary,
        samples: DiveFormats.CsvSamples,
        json: DiveFormats.Json,
        svg: DiveFormats.Svg,
        png: DiveFormats.Png,
        pdf: DiveFormats.Pdf
    })
    readonly property var options: ({ imperial: !Units.metric })

    function reset() {
        ++run;
        busy = done = failed = unclear = false;
        errorText = place = "";
        messages = [];
        progress = 0;
    }
    function cancel() {
        reset();
    }
    function isPicture(format: string): bool {
        return format === "svg" || format === "png" || format === "pdf";
    }
    function suffixOf(format: string): string {
        return format === "samples" ? "csv" : format;
    }
    /** Writes one file with all dives. */
    function write(format: string, ids: var, file: url) {
        reset();
        busy = true;
        const dives = [];
        readNext(ids, 0, run, dive => {
            dives.push(dive.dive);
            return true;
        }, () => end(DiveFormats.write(formats[format], dives, file, options), LocalFile.path(file)));
    }
    /** Writes one file for each dive. */
    function writePictures(format: string, ids: var, folder: url) {
        reset();
        busy = true;
        readNext(ids, 0, run, saved => {
            const name = "dive-" + saved.number + "-" + saved.id + "." + format;
            const result = DiveFormats.write(formats[format], [saved.dive], folder + "/" + name, options);
            if (result.error)
                end(result, "");
            return !result.error;
        }, () => end({ error: "", messages: [] }, LocalFile.path(folder)));
    }
    /** Writes one picture with the profiles of all of them, by the name of the file. */
    function writeComparison(dives: var, names: var, file: url) {
        reset();
        const suffix = String(file).split(".").pop().toLowerCase();
        if (isPicture(suffix))
            end(DiveFormats.write(formats[suffix], dives, file, Object.assign({ names: names }, options)),
                LocalFile.path(file));
        else
            unclear = failed = done = true;
    }

    function readNext(ids: var, at: int, ownRun: int, take: var, atEnd: var) {
        if (at === ids.length) {
            atEnd();
            return;
        }
        const call = AppStore.dive(ids[at]);
        call.finished.connect(() => {
            if (!root || root.run !== ownRun)
                return;
            if (call.error !== LogbookError.NoError) {
                end({ error: call.errorText, messages: [] }, "");
                return;
            }
            if (!take(call.value))
                return;
            progress = (at + 1) / ids.length;
            readNext(ids, at + 1, ownRun, take, atEnd);
        });
    }
    function end(result: var, where: string) {
        busy = false;
        done = true;
        failed = Boolean(result.error);
        errorText = result.error;
        messages = result.messages || [];
        place = where;
    }
}
