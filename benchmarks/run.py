#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Measures what things cost, prints a table and writes it as JSON. A target limits the ratio to the
reference of the same run; where there is no reference, the value."""

import argparse
import json
import os
import re
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path


class AtLeast(float):
    """A target where more is better."""


class Group:
    """Rows that are measured together: each name with its target, None if it is only printed."""

    def __init__(self, measure, rows):
        self.name = measure.__name__
        self.measure = measure
        self.rows = rows


class Machine:
    """Runs the programs, with files of their own."""

    def __init__(self, folder, quick, kept):
        self.folder = folder
        self.quick = quick
        self.kept = kept  # for what takes long to make; stays for the next run
        self.environment = os.environ | {
            "LC_ALL": "C.UTF-8",
            "QT_QPA_PLATFORM": "offscreen",
            "QT_QUICK_BACKEND": "software",
            "XDG_CONFIG_HOME": str(kept / "config"),
            "XDG_RUNTIME_DIR": str(kept / "runtime"),
        }
        (kept / "runtime").mkdir(mode=0o700, exist_ok=True)

    def run(self, program, *arguments, environment=None, stderr=None):
        command = [str(self.folder / program), *map(str, arguments)]
        done = subprocess.run(command, env=self.environment | (environment or {}), text=True,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=stderr,
                              check=False)
        if done.returncode:
            sys.exit(f"bench: failed with {done.returncode}: {' '.join(command)}\n{done.stderr or ''}")
        return done

    def output(self, program, *arguments, **environment):
        return self.run(program, *arguments, environment=environment).stdout

    def instructions(self, scenario, program, *arguments):
        """How many it takes beside the simulated computer, in all threads."""
        file = self.kept / "scenario.json"
        file.write_text(json.dumps(scenario), encoding="utf-8")
        counted = [] if self.quick else [
            "valgrind", "--tool=cachegrind", "--cache-sim=no", "--cachegrind-out-file=/dev/null"]
        command = ["--scenario", file, "--", *counted, self.folder / program, *arguments]
        errors = self.run("varda-simulator", *command, stderr=subprocess.PIPE).stderr
        if self.quick:
            return int(arguments[-1])  # nothing was counted
        return int(re.search(r"I\s+refs:\s+([\d,]+)", errors)[1].replace(",", ""))

    def rows(self, program, *arguments, **environment):
        lines = self.output(program, *arguments, **environment).splitlines()
        return [json.loads(line) for line in lines]


def row(name, value, reference, unit):
    return {"name": name, "value": value, "reference": reference, "unit": unit}


def app(machine):
    dives = 200 if machine.quick else 5000
    data = machine.kept / f"dives-{dives}"
    place = {"XDG_DATA_HOME": str(data)}
    if not data.exists():
        unfinished = Path(tempfile.mkdtemp(dir=machine.kept))
        machine.output("varda-bench-app", "fill", dives, XDG_DATA_HOME=str(unfinished))
        unfinished.rename(data)

    # The first of both finds nothing in the system's cache.
    shown = {"app": [], "bare": []}
    for _ in range(2 if machine.quick else 8):
        for page, times in shown.items():
            begun = time.clock_gettime_ns(time.CLOCK_MONOTONIC)
            times.append(float(machine.output("varda-bench-app", "first", page, dives, begun, **place)))
    medians = {page: statistics.median(times[1:]) / 1000 for page, times in shown.items()}
    yield row("app: time to the first list", medians["app"], None, "s")
    yield row("app: time to the first list, bare", medians["bare"], None, "s")
    yield from machine.rows("varda-bench-app", "scroll", dives, 60 if machine.quick else 600, **place)


def link(machine):
    """A notification, and a job, cost what a long run counts more than a short one."""
    few, many = (2, 4) if machine.quick else (200, 1000)

    def cost(what):
        counts = [machine.instructions(scenario(count), "varda-bench-link", what, count)
                  for count in (few, many)]
        return (counts[1] - counts[0]) / (many - few)

    def medians(*names):
        runs = [[cost(name) for name in names] for _ in range(1 if machine.quick else 3)]
        return [statistics.median(each) for each in zip(*runs)]

    samples, bare = medians("samples", "bare")
    yield row("a notification of 128 bytes", samples, bare, "instructions")
    jobs, session = medians("jobs", "session")
    yield row("a job of one frame, beside the session's", jobs, session, "instructions")


def scenario(notifications):
    """A dive whose samples come in so many notifications of 128 bytes, the last of which ends them."""
    bytes_in_each, sample, mark = 119, 14, 2
    samples = ((notifications - 1) * bytes_in_each - mark) // sample
    return {"recordTraffic": False, "devices": [{"known": True, "sampleFrame": bytes_in_each,
                                                 "dives": {"count": 1, "samples": samples}}]}


def parts(machine):
    """Google Benchmark runs the values and the references in turns."""
    once = ["--benchmark_min_time=0.001"] if machine.quick else [
        "--benchmark_min_time=0.05", "--benchmark_repetitions=9",
        "--benchmark_enable_random_interleaving=true"]
    report = json.loads(machine.output("varda-bench-parts", "--benchmark_format=json", *once))
    figures = {}
    for found in report["benchmarks"]:
        if found.get("error_occurred"):
            sys.exit(f"bench: {found['run_name']}: {found['error_message']}")
        if found.get("aggregate_name", "median") == "median":
            figures[found["run_name"]] = found
    for name in PARTS:
        value, reference = figures[name + "/value"], figures.get(name + "/reference")
        unit, of = unit_of(value)
        yield row(name, of(value), reference and of(reference), unit)


def unit_of(found):
    """The unit of a row of Google Benchmark, and what gives the figure in it."""
    if found["run_name"].startswith("decoding samples"):
        return "ns a byte", lambda each: 1e9 / each["bytes_per_second"]
    if "bytes_per_second" in found:
        return "GB/s", lambda each: each["bytes_per_second"] / 1e9
    if found["run_name"].startswith("JSON"):
        return "µs", lambda each: 1e6 / each["items_per_second"]
    if "items_per_second" in found:
        return "ns", lambda each: 1e9 / each["items_per_second"]
    return "ns", lambda each: each["cpu_time"]


SAMPLE_LAYOUTS = [f"{model} {version}" for model, versions in (("Varda", 4), ("Tidemar", 4), ("VSKM", 3))
                  for version in range(versions)]
MODELS = ("Varda", "Tidemar", "VSKM")
PARTS = {
    "frames of 64 kB, checked": AtLeast(4),
    "frames of 128 bytes, checked": AtLeast(2),
    "CRC of an image of 1 MB": AtLeast(20),
    **{f"decoding samples, {layout}": 2 for layout in SAMPLE_LAYOUTS},
    **{f"decoding a dive header, {model}": 2.5 for model in MODELS},
    **{f"decoding a configuration, {model}": 2.5 for model in MODELS},
    "converting 20000 samples": 2,
    "JSON of a sample": 3,
    "diveHeader(number) of 4000, beside 40": 1.5,
}
GROUPS = [
    Group(parts, PARTS),
    Group(link, {
        "a notification of 128 bytes": 1.03,
        "a job of one frame, beside the session's": 1.05,
    }),
    Group(app, {
        "app: time to the first list": 1,
        "app: time to the first list, bare": None,
        "app: a frame while scrolling": 8,
        "app: a frame while scrolling, 99 of 100": 8,
        "app: the same beside a bare list": None,
    }),
]


def wanted(name, words):
    return not words or any(word in name for word in words)


def measure(machine, words):
    for group in GROUPS:
        if not any(wanted(name, words) for name in (group.name, *group.rows)):
            continue
        for found in group.measure(machine):
            value, reference, target = found["value"], found["reference"], group.rows[found["name"]]
            if wanted(group.name, words) or wanted(found["name"], words):
                yield found | {
                    "ratio": None if reference is None else value / reference,
                    "target": target,
                    "better": "higher" if isinstance(target, AtLeast) else "lower",
                }


def figure(value):
    return "" if value is None else f"{value:.0f}" if value >= 1000 else f"{value:.3g}"


def verdict(found):
    if found["target"] is None:
        return ""
    value = found["value"] if found["ratio"] is None else found["ratio"]
    lower = found["better"] == "lower"
    reached = value <= found["target"] if lower else value >= found["target"]
    return f"{'≤' if lower else '≥'} {figure(found['target'])} {'yes' if reached else 'NO'}"


def main():
    parser = argparse.ArgumentParser(description=__doc__)
    parser.add_argument("build", type=Path, help="the folder of the build")
    parser.add_argument("--json", type=Path, help="where the figures are written")
    parser.add_argument("--quick", action="store_true", help="everything once, to see that it works")
    parser.add_argument("names", nargs="*", help="only rows or groups with one of these in their name")
    arguments = parser.parse_intermixed_args()

    build = arguments.build.resolve()
    kept = build / "bench"
    kept.mkdir(exist_ok=True)
    machine = Machine(build / "bin", arguments.quick, kept)
    table = []
    print(f"{'':52}{'value':>10}{'reference':>10} {'unit':16}{'ratio':>7}  target")
    for found in measure(machine, arguments.names):
        table.append(found)
        print(f"{found['name']:52}{figure(found['value']):>10}{figure(found['reference']):>10} "
              f"{found['unit']:16}{figure(found['ratio']):>7}  {verdict(found)}", flush=True)
    if not table:
        names = [name for group in GROUPS for name in (group.name, *group.rows)]
        sys.exit(f"bench: none has such a name; there are {', '.join(names)}")
    if arguments.json:
        arguments.json.write_text(json.dumps(table, indent=1) + "\n", encoding="utf-8")


if __name__ == "__main__":
    main()
