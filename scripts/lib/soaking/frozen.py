"""Which time-outs of a driver a frozen server meets, shown with the bare driver manager."""

import json
import subprocess
import sys
import time
from pathlib import Path

from . import deaths, servers
from .relay import Relay

# How long a server stays frozen: what takes as long was not limited.
FROZEN_SECONDS = 12
LIMIT = 3

# What is added to the connection string, which attributes are set, and what is limited by that:
# a statement, a connect.
SETTINGS = {
    "postgresql": [
        ("", [], (False, False)),
        ("", [f"login={LIMIT}"], (False, True)),
        ("", [f"query={LIMIT}"], (False, False)),
        ("", [f"connection={LIMIT}"], (False, False)),
        (f";pqopt={{tcp_user_timeout={LIMIT}000}}", [], (False, False)),
        (";KeepaliveTime=1;KeepaliveInterval=1", [], (False, False)),
        ("relay", [], (True, True)),
    ],
    "mariadb": [
        ("", [], (False, False)),
        ("", [f"login={LIMIT}", f"query={LIMIT}", f"connection={LIMIT}"], (False, False)),
        (f";CONN_TIMEOUT={LIMIT}", [], (False, True)),
        (f";READ_TIMEOUT={LIMIT};WRITE_TIMEOUT={LIMIT}", [], (True, False)),
        (f";CONN_TIMEOUT={LIMIT};READ_TIMEOUT={LIMIT};WRITE_TIMEOUT={LIMIT}", [], (True, True)),
    ],
}


def count_of(product):
    return len(SETTINGS[product])


def rounds(_build, folder, product, _amount, done):
    server = servers.make(product, folder / "server")
    server.start()
    bare = server.connexion.partition(";CONN_TIMEOUT")[0]
    try:
        for number in range(done, count_of(product)):
            yield _round(server, bare, *SETTINGS[product][number])
    finally:
        server.stop()


def _round(server, connexion, more, attributes, expected):
    started = time.monotonic()
    relay = None
    if more == "relay":
        relay = Relay(server.port, LIMIT)
        connexion = connexion.replace(f"Port={server.port}", f"Port={relay.port}")
    else:
        connexion += more
    process = subprocess.Popen(
        [sys.executable, "-B", Path(__file__).parent / "raw_odbc.py", connexion, *attributes],
        stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)  # fmt: skip
    problems = []
    opened = json.loads(process.stdout.readline())
    if opened["open"] != "done":
        problems.append(f"the connect to the server that works fails with {opened['open']}")
    statement = _frozen(server, process, "statement")
    connect = _frozen(server, process, "connect")
    process.wait(timeout=60)
    if relay is not None:
        relay.close()
    limited = tuple(seconds < FROZEN_SECONDS - 2 for seconds, _ in (statement, connect))
    if limited != expected:
        problems.append(f"limited are {limited} instead of {expected}")
    what = (f"{more or 'nothing'} {' '.join(attributes)}: statement {statement[1]} after "
            f"{statement[0]} s, connect {connect[1]} after {connect[0]} s")  # fmt: skip
    return {"what": what, "seconds": round(time.monotonic() - started, 1), "problems": problems}


def _frozen(server, process, name):
    """What the program tells of a server that is frozen when it begins."""
    server.freeze()
    thaw = deaths.after(FROZEN_SECONDS, server.thaw)
    process.stdin.write("\n")
    process.stdin.flush()
    told = json.loads(process.stdout.readline())[name]
    thaw.cancel()
    server.thaw()
    server.wait_ready()
    return told
