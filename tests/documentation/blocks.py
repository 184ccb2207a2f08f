"""Reads a Markdown page as the steps that its test takes: fenced blocks and markers, in order.

A marker is an HTML comment, which no reader of the page sees:

    <!-- run: COMMAND -->    runs COMMAND at this place; it must succeed. May stand anywhere.

Markers of the block that follows:

    <!-- not run: REASON -->  the block is not run, and why
    <!-- file: NAME -->       the block, or what it shows of a command, is put into file NAME first
    <!-- answers: TEXT -->    its commands ask at a terminal and are answered with TEXT
    <!-- varies: REGEX -->    what matches differs from run to run
    <!-- excerpt: PATH -->    the block's lines stand in this file, which a test of its own builds and runs
    <!-- frame: NAME -->      the block is compiled and linked inside frames/NAME
"""

import re
from dataclasses import dataclass, field
from typing import Dict, List, Union

BLOCK_MARKERS = ("not run", "file", "answers", "varies", "excerpt", "frame")
FENCE = re.compile(r"^( *)(```+|~~~+)(.*)$")
MARKER = re.compile(r"^<!--\s*([a-z]+(?: [a-z]+)?):\s*(.*?)\s*-->$", re.DOTALL)


class PageError(Exception):
    """What is wrong with a page, with its line."""

    def __init__(self, line: int, text: str) -> None:
        super().__init__(f"line {line}: {text}")


@dataclass
class HiddenCommand:
    line: int
    command: str


@dataclass
class Block:
    line: int
    language: str
    lines: List[str]
    markers: Dict[str, str] = field(default_factory=dict)


Step = Union[HiddenCommand, Block]


class _Reader:
    def __init__(self, text: str) -> None:
        self._lines = text.split("\n")
        self._at = 0
        self._markers: Dict[str, str] = {}
        self._steps: List[Step] = []

    def steps(self) -> List[Step]:
        while self._at < len(self._lines):
            line = self._lines[self._at]
            if FENCE.match(line):
                self._read_block()
            elif line.lstrip().startswith("<!--"):
                self._read_comment()
            else:
                if line.strip() and self._markers:
                    raise PageError(self._at + 1, "a marker stands before no block")
                self._at += 1
        if self._markers:
            raise PageError(len(self._lines), "a marker stands before no block")
        return self._steps

    def _read_block(self) -> None:
        start = self._at
        opened = FENCE.match(self._lines[start])
        assert opened
        indent, fence, language = len(opened[1]), opened[2], opened[3].strip()
        lines: List[str] = []
        for position in range(start + 1, len(self._lines)):
            line = self._lines[position]
            if line.strip() == fence:
                self._steps.append(Block(start + 1, language, lines, self._markers))
                self._markers = {}
                self._at = position + 1
                return
            lines.append(line[min(indent, len(line) - len(line.lstrip())):])
        raise PageError(start + 1, "the block has no end")

    def _read_comment(self) -> None:
        start = self._at
        text = self._lines[start].strip()
        while not text.endswith("-->"):
            self._at += 1
            if self._at == len(self._lines):
                raise PageError(start + 1, "the comment has no end")
            text += "\n" + self._lines[self._at].strip()
        self._at += 1
        marker = MARKER.match(text)
        if not marker:
            return
        keyword, value = marker[1], marker[2]
        if keyword == "run":
            self._steps.append(HiddenCommand(start + 1, value))
        elif keyword not in BLOCK_MARKERS:
            raise PageError(start + 1, f"'{keyword}' is no marker")
        elif not value:
            raise PageError(start + 1, f"marker '{keyword}' says nothing")
        else:
            self._markers[keyword] = value


def read_steps(text: str) -> List[Step]:
    return _Reader(text).steps()
