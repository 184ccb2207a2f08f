"""Processor time: of one process, and of the whole machine."""

import os
from pathlib import Path

_TICKS = os.sysconf("SC_CLK_TCK")


def seconds_of(pid):
    """User and system time of all threads so far, also of a process that ended and was not waited for."""
    # The name in parentheses may hold anything, so what counts stands behind the last one.
    fields = Path(f"/proc/{pid}/stat").read_text().rpartition(")")[2].split()
    return (int(fields[11]) + int(fields[12])) / _TICKS


class Machine:
    """How busy all processors of the machine are from now on, other work included."""

    def __init__(self):
        self._begin = self._now()

    @staticmethod
    def _now():
        fields = [int(each) for each in Path("/proc/stat").read_text().splitlines()[0].split()[1:9]]
        return sum(fields), fields[3] + fields[4]

    def busy(self):
        """The share of all processors, from 0 to 1."""
        total, idle = (now - then for now, then in zip(self._now(), self._begin))
        return 1 - idle / max(total, 1)
