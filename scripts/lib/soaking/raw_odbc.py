"""The bare driver manager: how long a connect or a statement takes, without any of the library.

Usage: raw_odbc.py CONNEXION [ATTRIBUTE=SECONDS...]

Connects, waits for a line, runs SELECT 1 and tells the seconds of it; waits for a line, connects once
more and tells these.
ATTRIBUTE: login (of the second connection), connection, query.
"""

import ctypes
import ctypes.util
import json
import sys
import time

_ENV, _DBC, _STMT = 1, 2, 3
_NTS = -3
_ODBC_VERSION, _ODBC_3 = 200, 3
_LOGIN_TIMEOUT, _CONNECTION_TIMEOUT, _QUERY_TIMEOUT = 103, 113, 0

_odbc = ctypes.CDLL(ctypes.util.find_library("odbc"))


def _failed(result):
    return ctypes.c_short(result).value not in (0, 1)


class Handle:
    def __init__(self, kind, parent=None):
        self.kind = kind
        self.value = ctypes.c_void_p()
        _odbc.SQLAllocHandle(kind, parent and parent.value, ctypes.byref(self.value))

    def state(self):
        state, text = ctypes.create_string_buffer(6), ctypes.create_string_buffer(512)
        native, length = ctypes.c_int(), ctypes.c_short()
        _odbc.SQLGetDiagRec(self.kind, self.value, 1, state, ctypes.byref(native), text, 511,
                            ctypes.byref(length))  # fmt: skip
        return state.value.decode()


def _connect(environment, connexion, attributes):
    handle = Handle(_DBC, environment)
    for name, attribute in (("login", _LOGIN_TIMEOUT), ("connection", _CONNECTION_TIMEOUT)):
        if name in attributes:
            _odbc.SQLSetConnectAttr(handle.value, attribute, ctypes.c_void_p(attributes[name]), -5)
    started = time.monotonic()
    result = _odbc.SQLDriverConnect(handle.value, None, connexion.encode(), _NTS, None, 0, None, 0)
    seconds = round(time.monotonic() - started, 1)
    return handle, seconds, handle.state() if _failed(result) else "done"


def _run(connection, attributes):
    statement = Handle(_STMT, connection)
    if "query" in attributes:
        _odbc.SQLSetStmtAttr(
            statement.value, _QUERY_TIMEOUT, ctypes.c_void_p(attributes["query"]), -5
        )
    started = time.monotonic()
    result = _odbc.SQLExecDirect(statement.value, b"SELECT 1", _NTS)
    seconds = round(time.monotonic() - started, 1)
    return seconds, statement.state() if _failed(result) else "done"


def main():
    connexion = sys.argv[1]
    attributes = {name: int(value) for name, value in (each.split("=") for each in sys.argv[2:])}
    environment = Handle(_ENV)
    _odbc.SQLSetEnvAttr(environment.value, _ODBC_VERSION, ctypes.c_void_p(_ODBC_3), 0)
    without_login = {name: value for name, value in attributes.items() if name != "login"}
    connection, _, state = _connect(environment, connexion, without_login)
    print(json.dumps({"open": state}), flush=True)
    sys.stdin.readline()
    print(json.dumps({"statement": _run(connection, attributes)}), flush=True)
    sys.stdin.readline()
    print(json.dumps({"connect": _connect(environment, connexion, attributes)[1:]}), flush=True)


if __name__ == "__main__":
    main()
