// SPDX-License-Identifier: MIT
import QtQuick
import QtTest
import Varda
import VardaTest

TestCase {
    id: test

    name: "Files"

    /** A text of Latin letters as an ArrayBuffer. */
    function bytesOf(text) {
        const bytes = new Uint8Array(text.length);
        for (let i = 0; i < text.length; ++i)
            bytes[i] = text.charCodeAt(i);
        return bytes.buffer;
    }

    function test_writtenAndRead_data() {
        return [
            {tag: "uddf", format: DiveFormats.Uddf, begin: "<?xml"},
            {tag: "csv", format: DiveFormats.CsvSamples, begin: "serial number,"},
            {tag: "json", format: DiveFormats.Json, begin: "{"},
        ];
    }

    function test_writtenAndRead(data) {
        const file = Files.newPath("dives");
        const dives = [Files.dive(5, 1767225600, 12.5), Files.dive(6, 1767312000, 20)];
        compare(DiveFormats.write(data.format, dives, file).error, "");
        verify(Files.content(file).startsWith(data.begin), Files.content(file).slice(0, 30));
        const read = DiveFormats.read("file://" + file);
        compare(read.error, "");
        compare(read.dives.map(each => each.diveNumber), [5, 6]);
        compare(read.dives[0].lines[1].depth, 12.5);
    }

    function test_summary() {
        const file = Files.newPath("dives.csv");
        compare(DiveFormats.write(DiveFormats.CsvSummary, [Files.dive(5, 1767225600, 12.5)], file).error, "");
        compare(Files.content(file).split("\r\n").length, 3);
    }

    function test_pictures_data() {
        return [
            {tag: "svg", format: DiveFormats.Svg, begin: "<"},
            {tag: "png", format: DiveFormats.Png, begin: "\u0089PNG"},
            {tag: "pdf", format: DiveFormats.Pdf, begin: "%PDF"},
        ];
    }

    function test_pictures(data) {
        const dive = Files.dive(5, 1767225600, 12.5);
        const bytes = DiveFormats.bytes(data.format, [dive], {width: 500, height: 300});
        compare(Files.text(bytes.slice(0, data.begin.length)), data.begin);
    }

    /** Their profiles over each other. */
    function test_comparison(data) {
        const dives = [Files.dive(5, 1767225600, 12.5), Files.dive(6, 1767312000, 20)];
        const content = Files.text(DiveFormats.bytes(data.format, dives, {names: ["Reef", "Wreck"]}));
        verify(content.startsWith(data.begin), content.slice(0, 30));
        if (data.format !== DiveFormats.Svg)
            return;
        for (const name of ["Reef", "Wreck"])
            verify(content.includes(">" + name + "<"), name);
    }

    function test_comparison_data() {
        return test_pictures_data();
    }

    function test_pictureOptions() {
        const dive = Files.dive(5, 1767225600, 12.5);
        const text = options => Files.text(DiveFormats.bytes(DiveFormats.Svg, [dive], options));
        verify(text({width: 500, height: 300}).includes('width="500" height="300"'));
        verify(text({imperial: true}).includes("ft"));
        verify(text({dark: true}) !== text({}));
        verify(text({fontFamily: "Some Font"}).includes("Some Font"));
    }

    function test_noDive() {
        const file = Files.newPath("dives");
        compare(DiveFormats.write(DiveFormats.Json, [], file).error, "there is no dive to write");
        compare(DiveFormats.write(DiveFormats.Json, ["no dive"], file).error,
                "there is no dive to write");
        compare(DiveFormats.bytes(DiveFormats.Json, []).byteLength, 0);
        compare(Files.content(file), "");
    }

    /** What was there before stays. */
    function test_cannotWrite() {
        const file = Files.newPath("missing/folder/dives.json");
        const written = DiveFormats.write(DiveFormats.Json, [Files.dive(5, 1767225600, 12.5)], file);
        verify(written.error.startsWith('"' + file + '" cannot be written: '), written.error);
        compare(DiveFormats.write(DiveFormats.Json, [Files.dive(5, 1767225600, 12.5)],
                                  "https://dives.example/dives.json").error,
                '"https://dives.example/dives.json" is no file of this computer');
    }

    function test_cannotRead() {
        const missing = Files.newPath("dives.json");
        verify(DiveFormats.read(missing).error.startsWith('"' + missing + '" cannot be read: '));
        const other = Files.newPath("dives.txt");
        Files.write(other, bytesOf("{ no dives }"));
        const read = DiveFormats.read(other);
        verify(read.error.length > 0);
        compare(read.dives, []);
    }

    // Firmware images

    function test_firmware() {
        const file = Files.newPath("Varda.1.4.2.b.bin");
        Files.write(file, bytesOf("an image"));
        const image = Firmware.read(file);
        compare(image.error, "");
        compare(image.kind, Firmware.WithoutHeader);
        compare(image.name, "Varda");
        compare(image.versionStr, "1.4.2.b");
        compare(image.size, 8);
        compare(image.canResume, false);
        compare(image.fileName, "Varda.1.4.2.b.bin");
        compare(Files.text(image.data), "an image");
        compare(Firmware.fromData(bytesOf("an image"), "Varda.1.4.2.b.bin").checksum, image.checksum);
        verify(image.checksum > 0);
    }

    function test_noFirmware() {
        const empty = Firmware.fromData(bytesOf(""), "empty.bin");
        compare(empty.kind, Firmware.Empty);
        verify(empty.error.length > 0);
        const missing = Files.newPath("missing.bin");
        verify(Firmware.read(missing).error.startsWith('"' + missing + '" cannot be read: '));
    }

    function test_versionText() {
        compare(VardaData.firmwareVersionToString(0x01040262), "1.4.2.b");
    }
}
