"""Runs the commands of a page one after the other in one shell, in a folder of its own."""

import os
import shlex
import shutil
import signal
import subprocess
from dataclasses import dataclass
from pathlib import Path
from typing import Dict, List, Optional

# Commands of a page take seconds, on a busy machine minutes.
TIME_LIMIT_SECONDS = 600


@dataclass
class Outcome:
    status: Optional[int]  # None: the shell did not come so far
    lines: List[str]


class Session:
    """Steps are added in order and run at once, so that what a command exports holds for the next."""

    def __init__(self, folder: Path, environment: Dict[str, str]) -> None:
        self._folder = folder
        self._environment = environment
        self._records = folder.with_name(folder.name + ".records")
        shutil.rmtree(self._records, ignore_errors=True)
        self._records.mkdir(parents=True)
        self._script: List[str] = []
        self._steps = 0

    def add_file(self, name: str, lines: List[str]) -> int:
        kept = self._records / f"{self._steps}.file"
        kept.write_text("".join(line + "\n" for line in lines), encoding="utf-8")
        return self.add_command(f"cp {shlex.quote(str(kept))} {shlex.quote(name)}")

    def add_command(self, command: str, answers: Optional[str] = None) -> int:
        if answers is not None:
            tool = Path(__file__).with_name("answering")
            command = f"{shlex.quote(str(tool))} {shlex.quote(answers)} {command}"
        record = self._records / str(self._steps)
        # The status is that of the command when the next one asks for it.
        self._script.append(
            f"{{\n{command}\n}} >{record}.out 2>&1 </dev/null\n"
            f"(s=$?; echo $s >{record}.status; exit $s)\n"
        )
        self._steps += 1
        return self._steps - 1

    def run(self) -> List[Outcome]:
        script = self._records / "script"
        script.write_text("".join(self._script), encoding="utf-8")
        with open(self._records / "shell.out", "wb") as shell_output:
            shell = subprocess.Popen(
                ["bash", "--noprofile", "--norc", str(script)],
                cwd=self._folder,
                env=self._environment,
                stdin=subprocess.DEVNULL,
                stdout=shell_output,
                stderr=subprocess.STDOUT,
                start_new_session=True,
            )
            try:
                shell.wait(TIME_LIMIT_SECONDS)
            except subprocess.TimeoutExpired:
                pass
            finally:
                self._end(shell)
        return [self._outcome(step) for step in range(self._steps)]

    @staticmethod
    def _end(shell: "subprocess.Popen[bytes]") -> None:
        """Ends what a page left running in the background, too."""
        try:
            os.killpg(shell.pid, signal.SIGKILL)
        except ProcessLookupError:
            pass
        shell.wait()

    def _outcome(self, step: int) -> Outcome:
        output = self._records / f"{step}.out"
        status = self._records / f"{step}.status"
        text = output.read_text(encoding="utf-8", errors="replace") if output.exists() else ""
        lines = text.split("\n")[:-1] if text.endswith("\n") else text.split("\n")
        return Outcome(int(status.read_text()) if status.exists() else None, lines)

    def shell_messages(self) -> str:
        return (self._records / "shell.out").read_text(encoding="utf-8", errors="replace")
