"""Tries everything that a page shows. `try_page` tells what is wrong, nothing when all is true."""

import os
import re
import shutil
from dataclasses import dataclass
from pathlib import Path
from typing import Callable, Dict, List, Optional

from blocks import Block, HiddenCommand, PageError, Step, read_steps
from commands import commands_of, shows_commands
from comparison import difference
from session import Outcome, Session
from snippets import Compiler, missing_in_example, refusal_of_compiler

LAST_ORDINARY_STATUS = 125  # above: not found, not executable, ended by a signal
WORDS_OF_A_REASON = 3


@dataclass
class World:
    """What pages are tried with."""

    project: Path
    signcheck: Path
    work: Path
    compiler: Compiler


Finding = Optional[str]
Check = Callable[[Outcome], Finding]


def make_folder(world: World) -> Path:
    """A fresh folder with the examples, and signcheck where a build has it."""
    folder = world.work / "folder"
    shutil.rmtree(folder, ignore_errors=True)
    (folder / "build/release/bin").mkdir(parents=True)
    (folder / "tmp").mkdir()
    shutil.copytree(world.project / "examples", folder / "examples")
    (folder / "build/release/bin/signcheck").symlink_to(world.signcheck)
    return folder


def environment_in(folder: Path) -> Dict[str, str]:
    kept = {name: value for name, value in os.environ.items()
            if not name.startswith(("SIGN", "LC_", "LANG", "XDG_"))}
    return {
        **kept,
        "PATH": f"{folder / 'build/release/bin'}:/usr/bin:/bin",
        "HOME": str(folder),
        "TMPDIR": str(folder / "tmp"),
        "LC_ALL": "C.UTF-8",
        "TZ": "UTC",
        "TERM": "dumb",
        "SIGNCHECK_DB": "Driver=SQLite3;Database=bank.db",
        "SIGNUTILS_SPOOL": str(folder / "spool"),
        "SIGNUTILS_HANDOFF": str(folder / "handoff"),
        "SIGNCHECK_PROGRESS": str(folder / "progress"),
    }


def _status_finding(outcome: Outcome, must_succeed: bool) -> Finding:
    if outcome.status is None:
        return "did not end, or the commands before it ended the shell"
    if outcome.status > LAST_ORDINARY_STATUS or (must_succeed and outcome.status != 0):
        return f"ended with {outcome.status}:\n  " + "\n  ".join(outcome.lines)
    return None


def _shown_command_check(shown: List[str], varies: Optional[str]) -> Check:
    def check(outcome: Outcome) -> Finding:
        return _status_finding(outcome, False) or difference(shown, outcome.lines, varies)
    return check


class _Trial:
    def __init__(self, world: World) -> None:
        self._world = world
        folder = make_folder(world)
        self._session = Session(folder, environment_in(folder))
        self._checks: List["tuple[int, str, Check]"] = []
        self._findings: List[str] = []
        self.add(HiddenCommand(0, "signcheck init --sample"))

    def add(self, step: Step) -> None:
        if isinstance(step, HiddenCommand):
            self._session.add_command(step.command)
            self._checks.append((step.line, step.command, lambda outcome: _status_finding(outcome, True)))
            return
        try:
            self._add_block(step)
        except PageError as error:
            self._findings.append(str(error))

    def _add_block(self, block: Block) -> None:
        marks = block.markers
        if "not run" in marks:
            self._keep_reason(block)
        elif shows_commands(block):
            self._add_commands(block)
        elif "file" in marks:
            self._session.add_file(marks["file"], block.lines)
            self._checks.append((block.line, f"file {marks['file']}",
                                 lambda outcome: _status_finding(outcome, True)))
        elif "excerpt" in marks:
            missing = missing_in_example(block.lines, self._world.project / marks["excerpt"])
            self._find(block.line, missing)
        elif "frame" in marks:
            refusal = refusal_of_compiler(block.lines, marks["frame"], f"line{block.line}",
                                          self._world.compiler)
            self._find(block.line, refusal)
        else:
            raise PageError(block.line, "the block is not run: begin it with '$ COMMAND', or put a marker "
                                        "before it that says how it is tried, or <!-- not run: REASON -->")

    @staticmethod
    def _keep_reason(block: Block) -> None:
        if len(block.markers) > 1:
            raise PageError(block.line, "'not run' stands beside other markers")
        if len(block.markers["not run"].split()) < WORDS_OF_A_REASON:
            raise PageError(block.line, "'not run' gives no reason")

    def _add_commands(self, block: Block) -> None:
        marks = block.markers
        commands = commands_of(block)
        if "file" in marks:
            # What `cat` shows is the page's own text, so that reader and test have the same file.
            shown = [command for command in commands
                     if re.fullmatch(r"cat\s+" + re.escape(marks["file"]), command.text.strip())]
            if not shown:
                raise PageError(block.line, f"no command of the block is: cat {marks['file']}")
            self._session.add_file(marks["file"], shown[0].shown)
            self._checks.append((block.line, f"file {marks['file']}",
                                 lambda outcome: _status_finding(outcome, True)))
        for command in commands:
            self._session.add_command(command.text, marks.get("answers"))
            self._checks.append((command.line, command.text,
                                 _shown_command_check(command.shown, marks.get("varies"))))

    def _find(self, line: int, finding: Finding) -> None:
        if finding:
            self._findings.append(f"line {line}: {finding}")

    def findings(self) -> List[str]:
        outcomes = self._session.run()
        for (line, command, check), outcome in zip(self._checks, outcomes):
            finding = check(outcome)
            if finding:
                self._findings.append(f"line {line}: {command}\n{finding}")
        messages = self._session.shell_messages()
        if messages:
            self._findings.append(f"the shell says:\n{messages}")
        return self._findings


def try_page(page: Path, world: World) -> List[str]:
    """What is wrong with the page, in the order of finding."""
    shutil.rmtree(world.work, ignore_errors=True)
    world.work.mkdir(parents=True)
    try:
        steps = read_steps(page.read_text(encoding="utf-8"))
    except PageError as error:
        return [str(error)]
    if not steps:
        return []
    trial = _Trial(world)
    for step in steps:
        trial.add(step)
    return trial.findings()
