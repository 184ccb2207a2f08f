"""Compares what a page shows of a command with what came.

A line of nothing but `…` stands for any number of lines. What differs from run to run by its nature is
not compared: times of day, durations, rates, sizes of memory, keys of events. Blanks at line ends are not,
either.
"""

import difflib
import re
from typing import List, Optional

ELISION = "…"
VOLATILE = [
    (re.compile(r"\d{4}-\d\d-\d\d[ T]\d\d:\d\d(:\d\d)?([.,]\d+)?(Z|[+-]\d\d:?\d\d)?"), "‹time›"),
    (re.compile(r"\b[0-9a-fA-F]{8}(-[0-9a-fA-F]{4}){3}-[0-9a-fA-F]{12}\b"), "‹key›"),
    (re.compile(r"\b\d[\d,.]* ?(files|orders|checks|replays)(/s| a second| per second)"), "‹rate›"),
    (re.compile(r"\b\d[\d,.]* ?(ms|µs|s|seconds?|minutes?|min)\b"), "‹duration›"),
    (re.compile(r"\b\d[\d,.]* ?[KMG]i?B\b"), "‹size›"),
]


def _settled(lines: List[str], varies: Optional[str]) -> List[str]:
    settled = []
    for line in lines:
        if varies:
            line = re.sub(varies, "‹varies›", line)
        for pattern, name in VOLATILE:
            line = pattern.sub(name, line)
        settled.append(line.rstrip())
    return settled


def _without_blank_end(lines: List[str]) -> List[str]:
    end = len(lines)
    while end > 0 and not lines[end - 1]:
        end -= 1
    return lines[:end]


def _parts(shown: List[str]) -> List[List[str]]:
    parts: List[List[str]] = [[]]
    for line in shown:
        if line == ELISION:
            parts.append([])
        else:
            parts[-1].append(line)
    return parts


def _fits(parts: List[List[str]], came: List[str]) -> bool:
    first, last = parts[0], parts[-1]
    if len(parts) == 1:
        return first == came
    if came[:len(first)] != first or len(first) + len(last) > len(came):
        return False
    end = len(came) - len(last)
    if came[end:] != last:
        return False
    at = len(first)
    for part in parts[1:-1]:
        while at + len(part) <= end and came[at:at + len(part)] != part:
            at += 1
        if at + len(part) > end:
            return False
        at += len(part)
    return True


def difference(shown: List[str], came: List[str], varies: Optional[str] = None) -> Optional[str]:
    """Nothing when the lines shown are those that came, else a text that tells them apart."""
    expected = _without_blank_end(_settled(shown, varies))
    actual = _without_blank_end(_settled(came, varies))
    if _fits(_parts(expected), actual):
        return None
    return "\n".join(difflib.unified_diff(expected, actual, "shown", "came", lineterm="", n=2))
