"""Arguments on their way into the library, and texts on their way back."""

from __future__ import annotations

import os
from collections.abc import Iterable

from .errors import ArgumentRefused, Status


def to_native(name: str, text: str) -> bytes:
    """UTF-8. A NUL would end the text early, so it is refused."""
    position = text.find("\0")
    if position >= 0:
        raise ArgumentRefused(
            Status.BAD_ARGUMENT,
            f"{name}: character {position + 1} is a NUL, which would end the text. Remove it.",
        )
    try:
        return text.encode("utf-8")
    except UnicodeEncodeError as error:
        raise ArgumentRefused(
            Status.NOT_UTF8,
            f"{name}: character {error.start + 1} is half a surrogate pair. Give whole characters.",
        ) from error


_RANGES = {
    "int32": (-(2**31), 2**31 - 1),
    "uint16": (0, 2**16 - 1),
    "uint32": (0, 2**32 - 1),
}


def number_to_native(name: str, value: int, kind: str) -> int:
    """A number that fits; ctypes would cut one that does not."""
    smallest, largest = _RANGES[kind]
    if not smallest <= value <= largest:
        raise ArgumentRefused(
            Status.BAD_ARGUMENT, f"{name}: {value} is not between {smallest} and {largest}."
        )
    return int(value)


def path_to_native(name: str, path: str | os.PathLike[str]) -> bytes:
    """The same for a path."""
    return to_native(name, os.fspath(path))


def signers_to_native(signers: str | Iterable[str]) -> bytes:
    """Certificate names, one text with ';' between them or one text each."""
    if isinstance(signers, str):
        return to_native("signers", signers)
    names = list(signers)
    for name in names:
        if ";" in name:
            raise ArgumentRefused(
                Status.BAD_ARGUMENT,
                f"signers: {name!r} holds ';', which separates certificate names.",
            )
    return to_native("signers", ";".join(names))


def from_native(text: bytes | None) -> str:
    """The library gives well-formed UTF-8 and never null."""
    return "" if text is None else text.decode("utf-8")
