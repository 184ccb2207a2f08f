"""What a call can end in when it does not succeed."""

from __future__ import annotations

import enum


class Status(enum.IntEnum):
    """The codes of the C interface. A library of a later version may give others."""

    OK = 0
    NULL_ARGUMENT = 1
    TEXT_TOO_LONG = 2
    NOT_UTF8 = 3
    NOT_WINDOWS_1252 = 4
    BAD_ARGUMENT = 5
    OUT_OF_MEMORY = 6
    FAILED = 7
    OTHER_APARTMENT = 8
    UNEXPECTED = 9


class SignUtilsError(Exception):
    """A call that did not succeed. The text names the argument, the limit and the remedy."""

    def __init__(self, status: int, text: str) -> None:
        super().__init__(text)
        self.status = status
        self.text = text


class ArgumentRefused(SignUtilsError, ValueError):
    """An argument that the library cannot take; nothing was changed."""


class OperationFailed(SignUtilsError):
    """An operation that was tried and did not succeed."""


class ReportNotHandedOn(OperationFailed):
    """A status report that the hand-off service did not take."""

    def __init__(self, status: int, text: str, error_code: int, system_code: int) -> None:
        super().__init__(status, text)
        self.error_code = error_code
        """The service's own code, 0 when it has none."""
        self.system_code = system_code
        """The system's error, 0 when it has no part in it."""


class OutOfMemory(SignUtilsError, MemoryError):
    """There was not enough memory for the call."""


class LoadError(OSError):
    """The library could not be loaded, or is none of SignUtils."""


_ARGUMENT_STATUSES = frozenset(
    {
        Status.NULL_ARGUMENT,
        Status.TEXT_TOO_LONG,
        Status.NOT_UTF8,
        Status.NOT_WINDOWS_1252,
        Status.BAD_ARGUMENT,
    }
)


def error_of(status: int, text: str) -> SignUtilsError:
    """The exception for a status other than OK."""
    if status in _ARGUMENT_STATUSES:
        return ArgumentRefused(status, text)
    if status == Status.FAILED:
        return OperationFailed(status, text)
    if status == Status.OUT_OF_MEMORY:
        return OutOfMemory(status, text)
    return SignUtilsError(status, text)
