"""Processes that a run starts itself, and signals to these alone.

A signal to a wrong id can end everything on the machine, so an id is never taken from a file, a name or
a pattern: a process is signalled through a descriptor of it that is opened while it cannot have been
reaped, and only when it is a child of ours or a child of such a child.
"""

import os
import signal
import time
from pathlib import Path


class NotOurs(Exception):
    pass


def parent_of(pid):
    # The name in parentheses may hold anything, so what counts stands behind the last one.
    try:
        return int(Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()[1])
    except (FileNotFoundError, ProcessLookupError):
        return None


def children_of(pid):
    found = []
    for entry in os.listdir("/proc"):
        if entry.isdigit() and parent_of(int(entry)) == pid:
            found.append(int(entry))
    return found


def _send(pid, parent, number):
    if pid <= 1 or parent_of(pid) != parent:
        raise NotOurs(f"process {pid} is no child of {parent}")
    try:
        descriptor = os.pidfd_open(pid)
    except ProcessLookupError:
        return
    try:
        # The descriptor is of the process that has the id now; is it still the one that was meant?
        if parent_of(pid) == parent:
            signal.pidfd_send_signal(descriptor, number)
    except ProcessLookupError:
        pass
    finally:
        os.close(descriptor)


def send(process, number):
    """Signals a child (a Popen) that has not ended yet."""
    if process.poll() is None:
        _send(process.pid, os.getpid(), number)


def send_with_children(process, number):
    """Signals a child and its children. Where they are stopped they have stopped when this is back.
    For SIGKILL they are stopped first, so that none starts another one meanwhile; the child itself
    comes last, or its children would not be its children any more."""
    if process.poll() is not None:
        return
    if number in (signal.SIGSTOP, signal.SIGKILL):
        send(process, signal.SIGSTOP)
        _wait_until_stopped(process.pid)
    for child in children_of(process.pid):
        try:
            _send(child, process.pid, number)
        except NotOurs:
            continue  # it has ended meanwhile
        if number == signal.SIGSTOP:
            _wait_until_stopped(child)
    if number != signal.SIGSTOP:
        send(process, number)


def _wait_until_stopped(pid):
    """A signal is taken by each thread in its own time; until then a server still answers."""
    for _ in range(5000):
        if _has_stopped(pid):
            return
        time.sleep(0.001)
    raise RuntimeError(f"process {pid} does not stop")


def _has_stopped(pid):
    try:
        threads = [thread.read_text() for thread in Path(f"/proc/{pid}/task").glob("*/stat")]
    except (FileNotFoundError, ProcessLookupError):
        return False  # one has ended just now
    return all(thread.rpartition(")")[2].split()[0] in "TtZX" for thread in threads)
