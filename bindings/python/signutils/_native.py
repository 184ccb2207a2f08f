"""The C interface as ctypes sees it: records, prototypes, and how the library is found."""

from __future__ import annotations

import ctypes
import os
import sys
from ctypes import POINTER, c_char_p, c_double, c_int32, c_uint16, c_uint32, c_void_p
from typing import Any

from .errors import LoadError

LIBRARY_VARIABLE = "SIGNUTILS_LIBRARY"


class CheckRecord(ctypes.Structure):
    _fields_ = [
        ("size", c_uint32),
        ("ran", c_int32),
        ("rules_complete", c_int32),
        ("lookups_complete", c_int32),
        ("amounts_known", c_int32),
        ("verdict", c_uint32),
        ("total_amount", c_double),
        ("max_order_amount", c_double),
        ("order_count", c_int32),
        ("rows_due", c_uint32),
        ("rows_written", c_uint32),
        ("journal", c_int32),
        ("report", c_int32),
        ("report_file_id", c_uint32),
        ("problem", c_char_p),
        ("amounts_problem", c_char_p),
        ("currency", c_char_p),
        ("reason_code", c_char_p),
        ("reason_text", c_char_p),
        ("report_problem", c_char_p),
    ]


class HolderRecord(ctypes.Structure):
    _fields_ = [
        ("size", c_uint32),
        ("found", c_int32),
        ("not_opposition", c_int32),
        ("reserved", c_int32),
        ("certificate", c_char_p),
        ("first_name", c_char_p),
        ("last_name", c_char_p),
    ]


class AmountsRecord(ctypes.Structure):
    _fields_ = [
        ("size", c_uint32),
        ("order_count", c_int32),
        ("total_amount", c_double),
        ("max_order_amount", c_double),
        ("currency", c_char_p),
        ("errors", c_char_p),
    ]


class HandOffRecord(ctypes.Structure):
    _fields_ = [
        ("size", c_uint32),
        ("result", c_uint32),
        ("file_id", c_uint32),
        ("error_code", c_uint32),
        ("system_code", c_uint32),
        ("reserved", c_uint32),
    ]


_HANDLE = c_void_p
_HANDLE_OUT = POINTER(c_void_p)
_TEXT = c_char_p
_TEXT_OUT = POINTER(c_char_p)
_INT_OUT = POINTER(c_int32)
_UINT_OUT = POINTER(c_uint32)

# The arguments of every function that returns a status.
_STATUS_FUNCTIONS: dict[str, list[Any]] = {
    "SignUtilsComInitialize": [c_int32],
    "SignUtilsTraceOpen": [_TEXT, _HANDLE_OUT],
    "SignUtilsRegisterProtocol": [c_uint32, _TEXT],
    "SignUtilsStartMeasures": [],
    "SignUtilsWriteMeasures": [_TEXT],
    "SignUtilsGetProtocolName": [_HANDLE, c_uint32, _TEXT_OUT],
    "SignUtilsGetProtocolAt": [_HANDLE, c_int32, _INT_OUT, _UINT_OUT, _TEXT_OUT],
    "SignUtilsCreate": [_HANDLE, _TEXT, _HANDLE_OUT],
    "SignUtilsCopy": [_HANDLE, _HANDLE_OUT],
    "SignUtilsAssign": [_HANDLE, _HANDLE],
    "SignUtilsSetContractInfo": [
        _HANDLE,
        c_uint32,
        c_uint32,
        _TEXT,
        _TEXT,
        _TEXT,
        c_int32,
        _TEXT,
    ],
    "SignUtilsSetFormatInfo": [_HANDLE, _TEXT, _TEXT, _TEXT],
    "SignUtilsSetAmountInfo": [_HANDLE, c_double, c_double, _TEXT],
    "SignUtilsSetMessageInfo": [_HANDLE, _TEXT, _TEXT, _TEXT, _TEXT],
    "SignUtilsSetPSRWarning": [_HANDLE, _TEXT],
    "SignUtilsSetConnexionString": [_HANDLE, _TEXT],
    "SignUtilsSetIdFileVfs": [_HANDLE, c_uint32],
    "SignUtilsSetModeVeu": [_HANDLE],
    "SignUtilsSetRefRequest": [_HANDLE, _TEXT],
    "SignUtilsCheckSignRules": [_HANDLE, _TEXT, _TEXT, _UINT_OUT],
    "SignUtilsCheckSignRulesFor": [
        _HANDLE,
        _TEXT,
        _TEXT,
        c_double,
        c_double,
        _TEXT,
        _UINT_OUT,
        _TEXT_OUT,
        _TEXT_OUT,
    ],
    "SignUtilsGetLastCheck": [_HANDLE, POINTER(CheckRecord)],
    "SignUtilsGetExtraInfo": [_HANDLE, _TEXT_OUT],
    "SignUtilsGetPSRWarning": [_HANDLE, _TEXT_OUT],
    "SignUtilsGetSignerNames": [_HANDLE, _TEXT, _INT_OUT, _TEXT_OUT, _TEXT_OUT],
    "SignUtilsGetSignerInfos": [_HANDLE, _TEXT, _HANDLE, POINTER(HolderRecord)],
    "SignUtilsSignersCreate": [_HANDLE_OUT],
    "SignUtilsSignersAdd": [_HANDLE, _TEXT],
    "SignUtilsSignersCount": [_HANDLE, _INT_OUT],
    "SignUtilsSignersGet": [_HANDLE, c_int32, _TEXT_OUT, _TEXT_OUT, _TEXT_OUT],
    "SignUtilsExecWorkFmt": [_HANDLE, _TEXT],
    "SignUtilsGetMaxAmountFile": [_HANDLE, _TEXT, POINTER(AmountsRecord)],
    "SignUtilsGeneratePSR": [
        _HANDLE,
        _TEXT,
        _TEXT,
        _TEXT,
        _TEXT,
        c_int32,
        _TEXT,
        _TEXT,
        c_int32,
        c_double,
        _TEXT_OUT,
    ],
    "SignUtilsAddPaymentStatusReport": [
        _HANDLE,
        _TEXT,
        _TEXT,
        _TEXT,
        _TEXT,
        _TEXT,
        POINTER(HandOffRecord),
    ],
    "SignUtilsLogEvent": [_HANDLE, c_uint16, _TEXT],
}

_RELEASE_FUNCTIONS = ("SignUtilsDestroy", "SignUtilsSignersDestroy", "SignUtilsTraceClose")


def _default_name() -> str:
    return "signutils.dll" if sys.platform == "win32" else "libsignutils.so.0"


def load_native(path: str | os.PathLike[str] | None) -> ctypes.CDLL:
    """Loads the library named by the argument, else by SIGNUTILS_LIBRARY, else by its usual name.

    On Windows a full path is best: a bare name is not looked for beside the script or in PATH.
    """
    name = os.fspath(path) if path is not None else os.environ.get(LIBRARY_VARIABLE, "")
    name = name or _default_name()
    try:
        # The C convention of the platform; 64-bit Windows has no other.
        native = ctypes.CDLL(name)
        _declare(native)
    except (OSError, AttributeError) as error:
        raise LoadError(
            f"The library {name!r} cannot be used: {error}. Give the full path of SignUtils' "
            f"library, as an argument or in {LIBRARY_VARIABLE}, to a 64-bit Python."
        ) from error
    return native


def _declare(native: ctypes.CDLL) -> None:
    for name, arguments in _STATUS_FUNCTIONS.items():
        function = getattr(native, name)
        function.argtypes = arguments
        function.restype = c_int32
    for name in _RELEASE_FUNCTIONS:
        function = getattr(native, name)
        function.argtypes = [_HANDLE]
        function.restype = None
    native.SignUtilsComUninitialize.argtypes = []
    native.SignUtilsComUninitialize.restype = None
    native.SignUtilsErrorText.argtypes = [_HANDLE]
    native.SignUtilsErrorText.restype = c_char_p
    native.SignUtilsVersion.argtypes = []
    native.SignUtilsVersion.restype = c_char_p
