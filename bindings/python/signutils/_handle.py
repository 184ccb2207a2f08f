"""The handle of a session: its life, and how it is called."""

from __future__ import annotations

import ctypes
import os
import threading
import weakref
from typing import Any, TypeVar

from ._arguments import from_native, path_to_native
from .errors import Status, error_of
from .library import Library, Trace

Self = TypeVar("Self", bound="SessionHandle")


class SessionHandle:
    """Owns one handle of the C interface; calls of several threads wait for each other."""

    def __init__(
        self, library: Library, trace: Trace | None = None, log_file: str | os.PathLike[str] = ""
    ) -> None:
        if trace is not None and trace.closed:
            raise ValueError("The trace is closed.")
        handle = ctypes.c_void_p()
        library.call(
            "SignUtilsCreate",
            None if trace is None else trace.handle,
            path_to_native("log_file", log_file),
            ctypes.byref(handle),
        )
        self._adopt(library, trace, handle)

    def _adopt(self, library: Library, trace: Trace | None, handle: ctypes.c_void_p) -> None:
        self._library = library
        self._handle = handle
        self._lock = threading.RLock()
        self._hold(trace)

    def _hold(self, trace: Trace | None) -> None:
        """The trace must outlive the session, so what destroys the session holds it too."""
        self._trace = trace
        self._finalizer = weakref.finalize(self, _destroy, self._library, self._handle, trace)
        if trace is not None:
            trace.sessions.add(self)

    def _call(self, name: str, *arguments: Any) -> None:
        """With the lock held, which keeps the texts that the call gives until they are copied."""
        if self.closed:
            raise ValueError("The session is closed.")
        status = getattr(self._library.native, name)(self._handle, *arguments)
        if status != Status.OK:
            text = from_native(self._library.native.SignUtilsErrorText(self._handle))
            raise error_of(status, text)

    def _set(self, name: str, *arguments: Any) -> None:
        with self._lock:
            self._call(name, *arguments)

    def _text(self, name: str, *arguments: Any) -> str:
        text = ctypes.c_char_p()
        with self._lock:
            self._call(name, *arguments, ctypes.byref(text))
            return from_native(text.value)

    def close(self) -> None:
        """Releases the session; a second time does nothing."""
        with self._lock:
            self._finalizer()

    @property
    def closed(self) -> bool:
        """Whether the session was closed."""
        return not self._finalizer.alive

    def __enter__(self: Self) -> Self:
        return self

    def __exit__(self, *_: object) -> None:
        self.close()

    def copy(self: Self) -> Self:
        """A session with the same settings; it shares signers, connection and journal."""
        handle = ctypes.c_void_p()
        self._set("SignUtilsCopy", ctypes.byref(handle))
        copied = type(self).__new__(type(self))
        copied._adopt(self._library, self._trace, handle)
        return copied

    def assign(self, source: SessionHandle) -> None:
        """Becomes a copy of another session, its trace included."""
        # In one order for all threads, so that two that assign crosswise do not wait for ever.
        first, second = sorted((self, source), key=id)
        with first._lock, second._lock:
            if source.closed:
                raise ValueError("The source is closed.")
            self._call("SignUtilsAssign", source._handle)
            if self._trace is not None:
                self._trace.sessions.discard(self)
            self._finalizer.detach()
            self._hold(source._trace)


def _destroy(library: Library, handle: ctypes.c_void_p, _trace: Trace | None) -> None:
    library.native.SignUtilsDestroy(handle)
