#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Every text of the app and of the QML module is in French, and each with a number has its English forms.
No French text has the apostrophe of a typewriter.

translations.py LUPDATE"""

import shutil
import subprocess
import sys
import tempfile
import xml.etree.ElementTree as ElementTree
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
APP = ROOT / "apps/logbook"


def unfinished(file, only_plurals):
    for context in ElementTree.parse(file).iter("context"):
        for message in context.iter("message"):
            if only_plurals and message.get("numerus") != "yes":
                continue
            translation = message.find("translation")
            forms = [form.text for form in translation.iter("numerusform")] or [translation.text]
            if translation.get("type") == "unfinished" or not all(forms):
                yield f'{context.findtext("name")}: "{message.findtext("source")}"'


def typewritten(file):
    for translation in ElementTree.parse(file).iter("translation"):
        text = "".join(translation.itertext()).strip()
        if "'" in text:
            yield f'fr: "{text}" has a straight apostrophe'


def main(lupdate):
    missing = []
    with tempfile.TemporaryDirectory() as folder:
        for language in ("en", "fr"):
            file = Path(folder, f"logbook_{language}.ts")
            shutil.copy(APP / "translations" / file.name, file)
            # It adds what the sources have beyond the file.
            subprocess.run([lupdate, "-silent", "-locations", "none", APP, ROOT / "qml", "-ts", file], check=True)
            missing += [f"{language}: {each}" for each in unfinished(file, language == "en")]
    missing += typewritten(APP / "translations/logbook_fr.ts")
    print("\n".join(missing) or "complete")
    return bool(missing)


if __name__ == "__main__":
    sys.exit(main(sys.argv[1]))
