"""Takes a block of a terminal apart: its commands, and the lines shown below each."""

import re
from dataclasses import dataclass
from typing import List

from blocks import Block

PROMPT = "$ "
HERE_DOCUMENT = re.compile(r"<<-?\s*(['\"]?)([A-Za-z_]+)\1")


@dataclass
class Command:
    line: int
    text: str
    shown: List[str]


def shows_commands(block: Block) -> bool:
    return block.language in ("", "console") and bool(block.lines) and block.lines[0].startswith(PROMPT)


def _length_of(lines: List[str]) -> int:
    """How many of these lines are the first one's command."""
    length = 1
    while lines[length - 1].endswith("\\") and length < len(lines):
        length += 1
    document = HERE_DOCUMENT.search("\n".join(lines[:length]))
    if document:
        while length < len(lines) and lines[length - 1] != document[2]:
            length += 1
    return length


def commands_of(block: Block) -> List[Command]:
    commands: List[Command] = []
    at = 0
    while at < len(block.lines):
        line = block.lines[at]
        if not line.startswith(PROMPT):
            commands[-1].shown.append(line)
            at += 1
            continue
        length = _length_of(block.lines[at:])
        text = "\n".join([line[len(PROMPT):], *block.lines[at + 1:at + length]])
        commands.append(Command(block.line + 1 + at, text, []))
        at += length
    return commands
