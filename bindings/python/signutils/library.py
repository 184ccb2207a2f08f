"""The loaded library and what belongs to the process: COM, traces, protocols."""

from __future__ import annotations

import contextlib
import ctypes
import os
import weakref
from collections.abc import Iterator
from typing import Any

from . import _native
from ._arguments import from_native, number_to_native, path_to_native, to_native
from .errors import SignUtilsError, Status, error_of
from .results import Apartment


class Library:
    """SignUtils' shared library.

    `path` names its file; without it SIGNUTILS_LIBRARY does, else the usual name. Raises LoadError.
    """

    def __init__(self, path: str | os.PathLike[str] | None = None) -> None:
        self.native = _native.load_native(path)

    @property
    def version(self) -> str:
        """major.minor.patch"""
        return from_native(self.native.SignUtilsVersion())

    def call(self, name: str, *arguments: Any) -> None:
        """Calls a function that has no session; raises what its status stands for."""
        status = getattr(self.native, name)(*arguments)
        if status != Status.OK:
            raise error_of(status, from_native(self.native.SignUtilsErrorText(None)))

    @contextlib.contextmanager
    def com(self, apartment: Apartment = Apartment.MULTITHREADED) -> Iterator[None]:
        """COM on this thread, which amounts from the order file need, while the block runs.

        A thread that has COM already, of whichever kind, is left as it is.
        """
        initialised = True
        try:
            self.call("SignUtilsComInitialize", int(apartment))
        except SignUtilsError as error:
            if error.status != Status.OTHER_APARTMENT:
                raise
            initialised = False
        try:
            yield
        finally:
            if initialised:
                self.native.SignUtilsComUninitialize()

    def register_protocol(self, protocol: int, long_name: str) -> None:
        """Names a protocol for the whole process, in at most 63 characters; "" takes it back."""
        self.call(
            "SignUtilsRegisterProtocol",
            number_to_native("protocol", protocol, "uint32"),
            to_native("long_name", long_name),
        )

    def start_measures(self) -> None:
        """Counts and times checks, conversions and statements of the whole process from now on."""
        self.call("SignUtilsStartMeasures")

    def write_measures(self, path: str | os.PathLike[str]) -> None:
        """Writes them for a monitoring server into a file, at once and whole."""
        self.call("SignUtilsWriteMeasures", path_to_native("path", path))


class Trace:
    """A trace file, opened for appending. Sessions and threads may share it."""

    def __init__(self, library: Library, path: str | os.PathLike[str]) -> None:
        handle = ctypes.c_void_p()
        library.call("SignUtilsTraceOpen", path_to_native("path", path), ctypes.byref(handle))
        self.handle = handle
        self.sessions: weakref.WeakSet[Any] = weakref.WeakSet()
        self._finalizer = weakref.finalize(self, library.native.SignUtilsTraceClose, handle)

    def close(self) -> None:
        """Writes what is left. Sessions with this trace are closed first."""
        if any(not session.closed for session in self.sessions):
            raise ValueError("A session still has this trace. Close the session first.")
        self._finalizer()

    @property
    def closed(self) -> bool:
        """Whether the trace was closed."""
        return not self._finalizer.alive

    def __enter__(self) -> Trace:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()
