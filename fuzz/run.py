#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""run.py BIN FINDS SECONDS TARGET...: fuzzes targets, one a core at a time.

What a run finds of new inputs is kept in FINDS/TARGET, and the next one begins with it.
"""

import os
import re
import subprocess
import sys
from concurrent.futures import ThreadPoolExecutor
from pathlib import Path

CORPUS = Path(__file__).resolve().parent / "corpus"
ENVIRONMENT = {
    "ASAN_OPTIONS": "detect_stack_use_after_return=1:strict_string_checks=1:malloc_context_size=6",
    "UBSAN_OPTIONS": "print_stacktrace=1",
    "DBUS_SYSTEM_BUS_ADDRESS": "unix:path=/nonexistent",  # there is no radio here
    "LC_ALL": "C.UTF-8",
    "QT_LOGGING_RULES": "*=false",
}


def number(pattern, text):
    found = re.findall(pattern, text)
    return int(found[-1]) if found else 0


def fuzz(target, binaries, finds, seconds):
    """Whether nothing was found; tells the figures."""
    folder = finds / target
    findings = finds / "findings"
    folder.mkdir(parents=True, exist_ok=True)
    findings.mkdir(exist_ok=True)
    log = finds / f"{target}.log"
    words = CORPUS.parent / f"{target}.dict"
    with log.open("w", encoding="utf-8", errors="replace") as output:
        subprocess.run(
            ["nice", "-n", "10", binaries / f"fuzz-{target}", f"-max_total_time={seconds}",
             "-timeout=10", "-print_final_stats=1", f"-artifact_prefix={findings}/{target}-",
             *([f"-dict={words}"] if words.exists() else []), folder, CORPUS / target],
            env={**os.environ, **ENVIRONMENT}, stdin=subprocess.DEVNULL, stdout=output,
            stderr=subprocess.STDOUT, check=False,
        )
    text = log.read_text(encoding="utf-8", errors="replace")
    found = re.findall(r"Test unit written to (\S+)", text)
    done = "stat::number_of_executed_units" in text and not found
    executions = number(r"stat::number_of_executed_units: (\d+)", text)
    print(f"{target:<9} {executions:>9} executions, {number(r'cov: ([0-9]+)', text):>5} edges "
          f"covered, {0 if done else 1} findings", flush=True)
    for path in found:
        print(f"          {path}: {what(text)}", flush=True)
    if not done:
        print(f"          {log}", flush=True)
    return done


def what(text):
    """The line that says it best."""
    found = re.search(r"BROKEN: .*|runtime error: .*|SUMMARY: .*|ERROR: .*", text)
    return found[0] if found else "?"


def main():
    binaries, finds, seconds = Path(sys.argv[1]).resolve(), Path(sys.argv[2]), int(sys.argv[3])
    with ThreadPoolExecutor(os.cpu_count()) as pool:
        results = pool.map(lambda target: fuzz(target, binaries, finds, seconds), sys.argv[4:])
        return 0 if all(list(results)) else 1


sys.exit(main())
