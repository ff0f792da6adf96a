#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Runs the fault matrix in parallel: run.py PROGRAM [--jobs N] [--filter TEXT] [--every N] [--real-time]

Every setting (a job on a model over a kind of link) is a process of its own, so that a crash costs
one case. On a busy machine a clock that runs fast leaves a program little time between two
time-outs; so what fails is run again, once, with a slower one, and counted apart."""

import argparse
import os
import queue
import subprocess
import sys
import threading

# The longest a single case may take before its process is taken for hanging.
HANGS = 300


class Tally:
    def __init__(self, total):
        self.lock = threading.Lock()
        self.passed = 0
        self.failed = []  # (setting, name, why)
        self.settings = total

    def ok(self):
        with self.lock:
            self.passed += 1

    def bad(self, setting, name, why):
        with self.lock:
            self.failed.append((setting, name, why))


def run_setting(program, setting, options, speed, tally, only=None):
    """One process; another one behind the case that it died of."""
    after = None
    while True:
        command = [program, setting, "--filter", only or options.filter]
        command += ["--every", str(1 if only else options.every)]
        if after:
            command += ["--after", after]
        environment = {**os.environ, "VARDA_TEST_SPEED": str(speed)}
        with subprocess.Popen(
            command, stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True,
            stdin=subprocess.DEVNULL, env=environment, errors="replace",
        ) as process:
            errors = []
            reader = threading.Thread(target=lambda: errors.extend(process.stderr))
            reader.start()
            running, timer = None, None
            for line in process.stdout:
                if timer:
                    timer.cancel()
                word, _, rest = line.rstrip("\n").partition(" ")
                if word == "run":
                    running = rest
                    timer = threading.Timer(HANGS, process.kill)
                    timer.start()
                elif word == "ok":
                    running = None
                    if not only or rest == only:
                        tally.ok()
                elif word == "FAIL":
                    running = None
                    name, _, why = rest.partition(": ")
                    if not only or name == only:
                        tally.bad(setting, name, why)
            if timer:
                timer.cancel()
            reader.join()
            status = process.wait()
        text = "".join(line for line in errors if "Sanitizer" in line or "ERROR" in line
                       or "runtime error" in line or "#" in line)[:4000]
        if running:
            tally.bad(setting, running, f"the process ended with status {status}\n{text}")
            after = running
            continue
        # All cases are done, but the process found something at its end, such as a leak.
        if status not in (0, 1) or "Sanitizer" in text:
            tally.bad(setting, f"{setting}/end", f"status {status}\n{text}")
        return


def run_all(work, jobs, step):
    todo = queue.Queue()
    for each in work:
        todo.put(each)

    def serve():
        while True:
            try:
                each = todo.get_nowait()
            except queue.Empty:
                return
            step(each)

    threads = [threading.Thread(target=serve) for _ in range(jobs)]
    for thread in threads:
        thread.start()
    for thread in threads:
        thread.join()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("program")
    parser.add_argument("--jobs", type=int, default=3 * (os.cpu_count() or 2))
    parser.add_argument("--filter", default="")
    parser.add_argument("--every", type=int, default=6, help="one in N cases; 1: all")
    parser.add_argument("--speed", type=int, default=20)
    parser.add_argument("--real-time", action="store_true")
    parser.add_argument("--layer", choices=["session", "jobs"], help="only what goes through it")
    options = parser.parse_args()
    speed = 1 if options.real_time else options.speed

    listed = subprocess.run(
        [options.program, "settings"], check=True, capture_output=True, text=True
    ).stdout.split()
    if options.layer:
        listed = [s for s in listed if s.startswith("jobs/") == (options.layer == "jobs")]
    # A filter that names a setting spares the others their healthy run.
    settings = [s for s in listed if s in options.filter or options.filter in s] or listed

    tally = Tally(len(settings))
    progress = iter(range(1, len(settings) + 1))

    def step(setting):
        run_setting(options.program, setting, options, speed, tally)
        with tally.lock:
            if sys.stderr.isatty():
                print(f"\r{next(progress)} of {len(settings)} ", end="", file=sys.stderr)

    run_all(settings, options.jobs, step)

    again, tally.failed = tally.failed, []
    slower = 0
    if again and speed > 1:
        before = tally.passed

        def once_more(failed):
            setting, name, _ = failed
            if name.endswith(("/end", "/healthy")):
                run_setting(options.program, setting, options, 4, tally)
            else:
                run_setting(options.program, setting, options, 4, tally, only=name)

        run_all(again, max(2, options.jobs // 2), once_more)
        slower = tally.passed - before
    else:
        tally.failed = again

    for _, name, why in sorted(tally.failed):
        print(f"FAIL {name}: {why}")
    if slower:
        print(f"{slower} of them with a slower clock, after a first failure")
    print(f"{tally.passed} passed, {len(tally.failed)} failed")
    return 1 if tally.failed or tally.passed == 0 else 0


sys.exit(main())
