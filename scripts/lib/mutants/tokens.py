"""Splits C++ source into tokens, as far as the operators of operators.py need it."""

import re
from dataclasses import dataclass

_PATTERN = re.compile(
    r"""
    (?P<skip>\s+|//[^\n]*|/\*.*?\*/|^[ \t]*\#(?:[^\n\\]|\\.)*)
  | (?P<text>(?:u8|[LuU])?"(?:[^"\\\n]|\\.)*")
  | (?P<char>(?:u8|[LuU])?'(?:[^'\\\n]|\\.)+')
  | (?P<number>(?:\d|\.\d)(?:[eEpP][+-]|'(?=\w)|[\w.])*)
  | (?P<name>[A-Za-z_]\w*)
  | (?P<sign>\.\.\.|<<=|>>=|<=>|->|::|\+\+|--|<<|[<>=!+\-*/%&|^]=|&&|\|\||.)
    """,
    re.VERBOSE | re.MULTILINE | re.DOTALL,
)

_OPENING = {"(": ")", "[": "]", "{": "}"}


@dataclass(frozen=True)
class Token:
    kind: str  # text, char, number, name or sign
    text: str
    start: int
    end: int
    spaced: bool  # white space on both sides, which sets < the relation apart from < the bracket


def tokens_of(source):
    found = []
    for match in _PATTERN.finditer(source):
        if match.lastgroup == "skip":
            continue
        start, end = match.span()
        spaced = source[start - 1 : start].isspace() and source[end : end + 1].isspace()
        found.append(Token(match.lastgroup, match.group(), start, end, spaced))
    return found


def partners_of(tokens):
    """The index of the closing bracket for each opening one."""
    partners = {}
    open_ones = []
    for index, token in enumerate(tokens):
        if token.kind != "sign":
            continue
        if token.text in _OPENING:
            open_ones.append(index)
        elif open_ones and token.text == _OPENING[tokens[open_ones[-1]].text]:
            partners[open_ones.pop()] = index
    return partners


def split_at_top(tokens, partners, first, last, separator):
    """Ranges (first, last exclusive) between the separators outside inner brackets."""
    parts = []
    begin = index = first
    while index < last:
        if index in partners:
            index = partners[index] + 1
            continue
        if tokens[index].text == separator:
            parts.append((begin, index))
            begin = index + 1
        index += 1
    parts.append((begin, last))
    return parts
