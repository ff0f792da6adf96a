#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""dev.py BUILD [TEST...]: what ./dev promises, with stand-ins for the programs that it calls"""

import fcntl
import os
import signal
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

ROOT = Path(__file__).resolve().parents[2]
BUILD = Path(sys.argv.pop(1)).resolve()

# Each notes how it was called. All packages but ccache are there, and there is no way to more.
NOTES = '#!/bin/sh\necho "${0##*/} $*" >>"$NOTES"\n'
STAND_INS = {
    "cmake": NOTES,
    "ctest": f'{NOTES}case $* in *--show-only*) exec "$CTEST" "$@" ;; esac\n',
    "apt-get": f"{NOTES}exit 1\n",
    "sudo": "#!/bin/sh\nexit 1\n",
    "id": "#!/bin/sh\necho 1000\n",
    "pkg-config": "#!/bin/sh\necho 6.4.2\n",
    "dpkg-query": '#!/bin/sh\nfor last; do :; done\n[ "$last" = ccache ] || echo installed\n',
}
# A system that may do everything, without doing any of it.
DEBIAN_13 = {
    "sudo": '#!/bin/sh\nshift\nexec "$@"\n',
    "unshare": '#!/bin/sh\nwhile case $1 in --*) true ;; *) false ;; esac; do shift; done\nexec "$@"\n',
    "apt-get": f'{NOTES}[ "$1" = indextargets ] && echo "Debian http://mirror/debian"\n',
    "apt-config": "#!/bin/sh\n",
    "mount": NOTES,
    "debootstrap": f"""{NOTES}
        mkdir -p "$3/usr/sbin" "$3/etc/apt/apt.conf.d" "$3/proc" "$3/var/cache/apt" \
            "$3/var/lib/apt/lists"
        touch "$3/var/lib/apt/lists/mirror"
    """,
    "chown": NOTES,
    # Only the root and the command; what is between is the same for all.
    "chroot": """#!/bin/sh
        root=$1
        while [ "$1" != sh ]; do shift; done
        shift 3
        echo "chroot $root $*" >>"$NOTES"
    """,
}


class Dev(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        # A space in it, since people have such folders.
        self.checkout = Path(folder.name, "a checkout")
        (self.checkout / "build").mkdir(parents=True)
        (self.checkout / "dev").write_bytes((ROOT / "dev").read_bytes())
        (self.checkout / "dev").chmod(0o755)
        (self.checkout / "dev.d").symlink_to(ROOT / "dev.d")
        (self.checkout / "tests").symlink_to(ROOT / "tests")
        self.copy_list_of_tests()
        programs = Path(folder.name, "bin")
        programs.mkdir()
        self.programs = programs
        for name, script in STAND_INS.items():
            self.stand_in(name, script)
        self.notes = Path(folder.name, "notes")
        self.notes.touch()
        self.environment = os.environ | {
            "PATH": f"{programs}:{os.environ['PATH']}",
            "NOTES": str(self.notes),
            "CTEST": subprocess.run(
                ["sh", "-c", "command -v ctest"], check=True, capture_output=True, text=True
            ).stdout.strip(),
            "LC_ALL": "C.UTF-8",
        }

    def copy_list_of_tests(self):
        """For listing them as well ctest replaces the log of the run that this test is part of."""
        copy = self.checkout / "build/dev"
        for file in BUILD.rglob("CTestTestfile.cmake"):
            place = copy / file.relative_to(BUILD)
            place.parent.mkdir(parents=True, exist_ok=True)
            text = file.read_text(encoding="utf-8").replace(str(BUILD), str(copy))
            place.write_text(text, encoding="utf-8")

    def stand_in(self, name, script):
        (self.programs / name).write_text(script, encoding="utf-8")
        (self.programs / name).chmod(0o755)

    def start(self, *arguments):
        return subprocess.Popen(
            [self.checkout / "dev", *arguments], env=self.environment, text=True,
            stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT,
        )

    def dev(self, *arguments):
        """What it printed; it has to succeed."""
        with self.start(*arguments) as run:
            printed = run.stdout.read()
        self.assertEqual(run.returncode, 0, printed)
        return printed

    def called(self, program):
        lines = self.notes.read_text(encoding="utf-8").splitlines()
        return [line for line in lines if line.split()[0] == program]

    def test_without_ccache(self):
        self.dev("packages")
        self.assertEqual(self.called("apt-get"), [])

    def test_missing_package(self):
        self.stand_in("dpkg-query", "#!/bin/sh\nexit 1\n")
        with self.start("packages") as run:
            printed = run.stdout.read()
        self.assertEqual(run.returncode, 1)
        self.assertIn("sudo apt-get install g++ cmake ninja-build", printed)

    def test_help_behind_a_verb(self):
        text = self.dev("help")
        self.assertIn("./dev demo  ", text)
        for verb in "build", "test", "fuzz", "format", "packages":
            self.assertEqual(self.dev(verb, "--help"), text)
            self.assertEqual(self.dev(verb, "-h"), text)
        self.assertEqual(self.notes.read_text(encoding="utf-8"), "")

    def test_second_waits(self):
        with open(self.checkout / "build/.lock", "w", encoding="utf-8") as lock:
            fcntl.flock(lock, fcntl.LOCK_EX)
            run = self.start("build")
            self.assertEqual(
                run.stdout.readline(),
                "dev: another ./dev is running in this checkout; waiting for it\n")
            self.assertEqual(self.called("cmake"), [])
        with run:
            self.assertEqual(run.stdout.read(), "dev: building dev in build/dev\n")
        self.assertEqual(run.returncode, 0)
        self.assertEqual(len(self.called("cmake")), 2)

    def test_first_locks(self):
        self.stand_in("cmake", '#!/bin/sh\nflock -n "$PWD/build/.lock" true || echo locked >"$NOTES"\n')
        self.dev("build")
        self.assertEqual(self.notes.read_text(encoding="utf-8"), "locked\n")

    def test_leftovers_do_not_lock(self):
        # It lives until this test ends it.
        self.stand_in("cmake", '#!/bin/sh\nsleep 600 >/dev/null 2>&1 & echo $! >>"$NOTES"\n')
        self.dev("build")
        try:
            with open(self.checkout / "build/.lock", "w", encoding="utf-8") as lock:
                fcntl.flock(lock, fcntl.LOCK_EX | fcntl.LOCK_NB)
        finally:
            for line in self.notes.read_text(encoding="utf-8").split():
                os.kill(int(line), signal.SIGTERM)

    def test_debian13_root(self):
        """It is made whole or not at all, once, and then the tests run in it."""
        cache = self.checkout.parent / "cache"
        root = cache / "varda/trixie"
        self.environment["XDG_CACHE_HOME"] = str(cache)
        for name, script in DEBIAN_13.items():
            self.stand_in(name, script)
        self.stand_in("debootstrap", f"{NOTES}exit 1\n")
        with self.start("test", "--qt6.8", "-R", "x y") as run:
            printed = run.stdout.read()
        self.assertEqual(run.returncode, 1)
        self.assertIn("dev: failed: as_root unshare --mount debootstrap", printed)
        self.assertFalse(root.exists())

        self.notes.write_text("", encoding="utf-8")
        self.stand_in("debootstrap", DEBIAN_13["debootstrap"])
        self.dev("test", "--qt6.8", "-R", "x y")
        self.assertEqual(self.called("debootstrap"), [
            f"debootstrap --variant=minbase trixie {cache}/varda/trixie.new http://mirror/debian"])
        self.assertEqual(self.called("chroot"), [
            f"chroot {cache}/varda/trixie.new {self.checkout} ./dev packages",
            f"chroot {root} {self.checkout} ./dev test -R x y"])
        self.assertIn(f"mount --bind {self.checkout}/build/trixie {root}{self.checkout}/build",
                      self.called("mount"))
        self.assertEqual(sorted(path.name for path in root.iterdir()),
                         sorted(["etc", "proc", "usr", "var", self.checkout.parts[1]]))
        self.assertFalse((root / "var/lib/apt/lists/mirror").exists())

        self.notes.write_text("", encoding="utf-8")
        self.dev("test", "--qt6.8", "-R", "x y")
        self.assertEqual(self.called("debootstrap"), [])
        self.assertEqual(len(self.called("chroot")), 1)

    def targets(self, *arguments):
        self.dev("test", *arguments)
        build = [line for line in self.called("cmake") if " --target " in line]
        return build[-1].split(" --target ")[1].split() if build else []

    def test_builds_what_is_needed(self):
        for pattern, needed in {
            "^unit.battery$": ["bin/tst_battery"],
            "^cli.golden.(help|info)$": ["bin/varda", "bin/varda-simulator"],
            "^house.arrows$": [],
        }.items():
            with self.subTest(pattern):
                self.notes.write_text("", encoding="utf-8")
                self.assertEqual(self.targets("-R", pattern), needed)
                self.assertIn(f"-R {pattern}", self.called("ctest")[-1])

    # There are no tests of installing with a sanitizer.
    @unittest.skipIf((BUILD / "tests/consumer/CTestTestfile.cmake").read_text().count("add_test") == 0,
                     "this build has no such test")
    def test_builds_what_gets_installed(self):
        self.assertIn("bin/varda", self.targets("-R", "^consumer.find_package$"))

    def test_builds_files_and_no_folders(self):
        for target in self.targets("-R", "."):
            self.assertNotIn(target, ("bin", "bin/"), "a test has a folder among its arguments")

    def test_builds_all_without_a_filter(self):
        self.assertEqual(self.targets(), ["all"])


unittest.main()
