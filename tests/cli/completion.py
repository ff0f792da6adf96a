#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""completion.py VARDA SHELL: types in a real shell, and compares what it offers.

SHELL is bash, zsh or fish; if there is no such shell here, the test is skipped.
"""

import os
import pty
import select
import shutil
import subprocess
import sys
import tempfile
import time
from pathlib import Path

SKIPPED = 77
PATIENCE = 60

# What is typed, and all that may follow. "layout.bin" and "a folder" are there.
CASES = {
    "varda lay": ["layouts"],
    "varda dive": ["dive", "dives"],
    "varda nothing": [],
    "varda layouts ": ["list", "get", "add", "remove", "clear", "active", "activate"],
    "varda --json layouts ac": ["active", "activate"],
    "varda --device layouts layouts ac": ["active", "activate"],
    "varda --no": ["--no-retry"],
    "varda scan --al": ["--all"],
    "varda info --al": [],
    "varda layouts get --ou": ["--output"],
    "varda --mode ": ["gatt", "sps"],
    "varda info --mode s": ["sps"],
    "varda info --units ": ["metric", "imperial"],
    "varda superuser ": ["on", "off"],
    "varda defaults unset ": ["device", "units"],
    "varda export --format ": ["uddf", "csv", "json", "svg", "png", "pdf"],
    "varda import lay": ["layout.bin"],
    "varda completion ": ["bash", "zsh", "fish"],
    "varda help lay": ["layouts"],
    "varda help layouts g": ["get"],
    "varda layouts add ": ["a folder/", "layout.bin"],
    "varda layouts get 3 -o lay": ["layout.bin"],
    "varda --simulate inf": ["info"],
    "varda --simulate info --js": ["--json"],
    "varda firmware info lay": ["layout.bin"],
    "varda dives --known lay": ["layout.bin"],
    "varda dive ": [],
}
# zsh offers the options if nothing else may follow.
NOTHING_FOLLOWS = ["varda layouts list ", "varda superuser on ", "varda firmware info layout.bin "]

# bash cuts words at "=", as it does on a terminal.
BASH = r"""
. ../script
complete -p varda >/dev/null || exit 1
complete_words() {
    COMP_WORDS=("$@")
    COMP_CWORD=$(($# - 1))
    _varda
    printf '%s\n' "${COMPREPLY[@]}"
}
"""

# Writes down what would be added to the list, then that it is complete.
ZSH = r"""
PS1= RPS1= fpath=($ZDOTDIR/functions $fpath)
unsetopt zle_bracketed_paste beep
autoload -Uz compinit
compinit -u -D
compadd() {
    if [[ ${@[1,(i)(-|--)]} == *-(O|A|D)\ * ]]; then
        builtin compadd "$@"
        return
    fi
    local -a offered
    local -i folders=${@[(I)-f]}
    builtin compadd -O offered "$@"
    for each in $offered; do
        print -r -- ${(Q)each} >>|$ZDOTDIR/offered
    done
    builtin compadd "$@"
}
finished() { print -r -- 'finished' >>|$ZDOTDIR/offered }
complete_it() { comppostfuncs=(finished); zle complete-word }
zle -N complete_it
bindkey '^I' complete_it
print -r -- 'ready' >$ZDOTDIR/ready
"""


def words(line):
    """As bash makes them of a line on a terminal."""
    parts = []
    for word in line.split(" "):
        name, sign, value = word.partition("=")
        parts += [name, sign, value] if sign and value else [name] + [sign] * bool(sign)
    return parts


def bash(line):
    done = subprocess.run(
        ["bash", "--norc", "-c", BASH + 'complete_words "$@"', "bash", *words(line)],
        capture_output=True, text=True, check=True,
    )
    assert not done.stderr, done.stderr
    names = done.stdout.splitlines()
    # It is the shell that marks folders.
    return [name + "/" if Path(name).is_dir() else name for name in names if name]


def fish(line):
    done = subprocess.run(
        ["fish", "--no-config", "-c", "source ../script; complete -C $argv[1]", "--", line],
        capture_output=True, text=True, check=True,
    )
    assert not done.stderr, done.stderr
    # Newer ones also offer what has the word in its middle.
    word = line.split(" ")[-1]
    names = [row.split("\t")[0] for row in done.stdout.splitlines()]
    return [name for name in names if name.startswith(word)]


def read_until(terminal, file, line):
    """The lines of a file once it has this one; what the terminal shows is thrown away."""
    end = time.monotonic() + PATIENCE
    while time.monotonic() < end:
        if select.select([terminal], [], [], 0.05)[0]:
            os.read(terminal, 4096)
        lines = file.read_text().splitlines() if file.exists() else []
        if line in lines:
            return lines[: lines.index(line)]
    sys.exit(f"zsh does not come to \"{line}\"")


class Zsh:
    def __init__(self):
        home = Path("..")
        (home / "functions").mkdir()
        shutil.copy(home / "script", home / "functions/_varda")
        (home / ".zshrc").write_text(ZSH)
        child, self.terminal = pty.fork()
        if child == 0:
            os.environ |= {"ZDOTDIR": os.environ["HOME"], "TERM": "dumb"}
            os.execvp("zsh", ["zsh", "-i"])
        read_until(self.terminal, home / "ready", "ready")

    def __call__(self, line):
        offered = Path("../offered")
        offered.unlink(missing_ok=True)
        # ^U throws away what was typed before.
        os.write(self.terminal, b"\x15" + line.encode() + b"\t")
        names = read_until(self.terminal, offered, "finished")
        return [name + "/" if Path(name).is_dir() else name for name in names]


def main():
    varda, shell = sys.argv[1:]
    if not shutil.which(shell):
        sys.exit(SKIPPED)
    script = subprocess.run([varda, "completion", shell], capture_output=True, check=True).stdout
    wrong = 0
    with tempfile.TemporaryDirectory() as top:
        os.environ |= {"LC_ALL": "C.UTF-8", "HOME": top}
        os.chdir(top)
        Path("script").write_bytes(script)
        subprocess.run([shell, "-n", "script"], check=True)
        Path("there").mkdir()
        os.chdir("there")
        Path("a folder").mkdir()
        Path("layout.bin").touch()
        ask = {"bash": bash, "fish": fish}.get(shell) or Zsh()
        cases = CASES if shell == "zsh" else CASES | dict.fromkeys(NOTHING_FOLLOWS, [])
        for line, wanted in cases.items():
            offered = ask(line)
            if sorted(offered) != sorted(wanted):
                print(f"{line!r}: {shell} offers {offered}, not {wanted}")
                wrong += 1
    sys.exit(wrong > 0)


main()
