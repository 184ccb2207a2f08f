"""A list of signers for look-ups."""

from __future__ import annotations

import ctypes
import threading
import weakref
from collections.abc import Iterable, Iterator

from ._arguments import from_native, to_native
from .library import Library
from .results import Signer


class Signers:
    """The signers that Session.get_signer_infos matches; a match fills in the entry's names."""

    def __init__(self, library: Library, certificates: Iterable[str] = ()) -> None:
        handle = ctypes.c_void_p()
        library.call("SignUtilsSignersCreate", ctypes.byref(handle))
        self.handle = handle
        self.lock = threading.RLock()
        self._library = library
        self._finalizer = weakref.finalize(self, library.native.SignUtilsSignersDestroy, handle)
        for certificate in certificates:
            self.add(certificate)

    def add(self, certificate: str) -> None:
        """Appends a signer that is not matched yet."""
        with self.lock:
            self._library.call(
                "SignUtilsSignersAdd", self.handle, to_native("certificate", certificate)
            )

    def __len__(self) -> int:
        count = ctypes.c_int32()
        with self.lock:
            self._library.call("SignUtilsSignersCount", self.handle, ctypes.byref(count))
        return count.value

    def __getitem__(self, index: int) -> Signer:
        if not 0 <= index < len(self):
            raise IndexError(f"index {index} is none of the {len(self)} signers")
        texts = [ctypes.c_char_p() for _ in range(3)]
        with self.lock:
            self._library.call(
                "SignUtilsSignersGet", self.handle, index, *(ctypes.byref(text) for text in texts)
            )
            return Signer(*(from_native(text.value) for text in texts))

    def __iter__(self) -> Iterator[Signer]:
        return (self[index] for index in range(len(self)))
