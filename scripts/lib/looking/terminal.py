"""A terminal of 80 columns and 24 lines, kept by tmux on a socket of its own."""

import os
import re
import shlex
import shutil
import subprocess
import tempfile
import time
from pathlib import Path

COLUMNS, LINES = 80, 24
_SECONDS = 300
_NUMBER = re.compile(r"\d+")


class TerminalFailed(Exception):
    pass


class Terminal:
    def __init__(self, environment):
        if shutil.which("tmux") is None:
            raise TerminalFailed("tmux is not installed; run scripts/setup check")
        self._folder = Path(tempfile.mkdtemp(prefix="signutils-looks."))
        self._environment = dict(environment, LANG="C.UTF-8", TERM="xterm-256color",
                                 PS1="$ ", HISTFILE="")  # fmt: skip
        self._ended = self._folder / "ended"

    def __enter__(self):
        self._tmux("-f", "/dev/null", "new-session", "-d", "-x", str(COLUMNS), "-y", str(LINES),
                   "bash", "--norc", "--noprofile")  # fmt: skip
        self._tmux("set-option", "-g", "history-limit", "20000")
        # The window that is open keeps the limit that it was opened with.
        self._tmux("respawn-pane", "-k", "bash", "--norc", "--noprofile")
        return self

    def __exit__(self, *_):
        self._tmux("kill-server", check=False)
        shutil.rmtree(self._folder, ignore_errors=True)

    def lines_of(self, command, answers=()):
        """What stands on the screen and above it once the command has ended. Each of `answers` is
        a text to wait for and what is typed then."""
        self._ended.unlink(missing_ok=True)
        script = self._folder / "run"
        script.write_text(f"clear\n{shlex.join(map(str, command))}\n"
                          f"echo $? >{shlex.quote(str(self._ended))}\n")  # fmt: skip
        self._tmux("clear-history")
        self._tmux("send-keys", f". {script}", "Enter")
        for awaited, typed in answers:
            self._wait(lambda: awaited in "\n".join(self.screen()), awaited)
            self._tmux("send-keys", typed, "Enter")
        self._wait(self._ended.exists, "the end of the command")
        return self.screen()[:-1]  # without the prompt behind it

    def screen(self):
        """Lines as they stand, each as long as the terminal lets it be."""
        lines = self._tmux("capture-pane", "-p", "-S", "-").split("\n")
        while lines and not lines[-1].strip():
            lines.pop()
        return lines

    def _wait(self, is_there, what):
        end = time.monotonic() + _SECONDS
        while not is_there():
            if time.monotonic() > end:
                raise TerminalFailed(f"{what} does not come:\n" + "\n".join(self.screen()))
            time.sleep(0.1)

    def _tmux(self, *arguments, check=True):
        done = subprocess.run(["tmux", "-u", "-S", self._folder / "socket", *arguments],
                              capture_output=True, text=True, env=self._environment)  # fmt: skip
        if check and done.returncode != 0:
            raise TerminalFailed(f"tmux {arguments[0]}: {done.stderr}")
        return done.stdout


def lost_lines(shown, whole):
    """Lines of a command's output that a terminal does not show as one line each. Numbers may differ:
    those of rows and events rise from run to run."""
    lines = [_NUMBER.sub("0", line.rstrip()) for line in whole.rstrip("\n").split("\n")]
    shown = [_NUMBER.sub("0", line.rstrip()) for line in shown]
    problems = []
    if shown != lines:
        there = set(shown)
        problems = [f"does not fit in {COLUMNS} columns: {line!r}"
                    for line in lines if line not in there]  # fmt: skip
        problems = problems or ["the terminal shows the lines in another order or number"]
    return problems


def environment(**more):
    """What commands are run with: nothing of the caller's that they read."""
    kept = {name: os.environ[name] for name in ("PATH", "TMPDIR") if name in os.environ}
    return {**kept, **more}
