"""A signcheck that works through a folder of orders, and what it told."""

import json
import os
import subprocess
import tempfile
import time

from . import spool_orders


class Run:
    """A running signcheck batch or watch. Its JSON lines are in `told` once it has ended."""

    def __init__(self, signcheck, command, orders, server, place, *options):
        self.output = tempfile.TemporaryFile()
        self.errors = tempfile.TemporaryFile()
        self.process = subprocess.Popen(
            [signcheck, command, orders, "--db", server.connexion, "--json", *spool_orders.TERMS,
             *options], stdin=subprocess.DEVNULL, stdout=self.output, stderr=self.errors,
            env=place.environment())  # fmt: skip
        self.usage = None
        self.peak_kib = 0

    def wait(self):
        """Its exit status, -N for signal N; notes what it used."""
        # The system's own figure of the most memory counts that of the process that started it.
        while self.process.returncode is None:  # else who was to signal it has seen its end
            self.peak_kib = max(self.peak_kib, _peak_of(self.process.pid))
            ended, status, self.usage = os.wait4(self.process.pid, os.WNOHANG)
            if ended:
                self.process.returncode = os.waitstatus_to_exitcode(status)
            else:
                time.sleep(0.02)
        return self.process.returncode

    def said(self):
        self.errors.seek(0)
        return self.errors.read().decode(errors="replace")

    def told(self):
        """The orders that it told, and its summary; a line that a kill cut short is left out."""
        self.output.seek(0)
        lines = [json.loads(line) for line in self.output if line.endswith(b"\n")]
        orders = [line for line in lines if "file" in line]
        sums = [line["summary"] for line in lines if "summary" in line]
        return orders, sums[0] if sums else None

    def close(self):
        self.output.close()
        self.errors.close()


def expect_each_once(problems, server, orders, numbers):
    """Every order has one history row and at most one event, and no others have any. Returns how many
    have no event: a kill may fall between both."""
    rows = _counts(server, "SELECT FILENAME, COUNT(*) FROM HST_SIGNRULES GROUP BY FILENAME")
    due = {f"{orders}/{spool_orders.name_of(number)}" for number in numbers}
    for name in sorted(due | rows.keys()):
        if rows.get(name, 0) != (1 if name in due else 0):
            problems.append(f"{name}: {rows.get(name, 0)} history rows")
    texts = server.query("SELECT COUNT(*) FROM EVT_JOURNAL")
    return len(due) - int(texts[0][0])


def expect_verdicts(problems, told, numbers):
    """What was told of the orders is what they deserve, once each."""
    expected = {spool_orders.name_of(number): number for number in numbers}
    seen = set()
    for line in told:
        name = os.path.basename(line["file"])
        number = expected.get(name)
        if number is None or name in seen:
            problems.append(f"{name} was told twice, or is no order: {line}")
            continue
        seen.add(name)
        outcome = "refused" if spool_orders.is_refused(number) else "success"
        if line["outcome"] != outcome or line["total"] != spool_orders.amount_of(number):
            problems.append(f"{name}: {line['outcome']} on {line.get('total')} instead of {outcome} "
                            f"on {spool_orders.amount_of(number)}: {line.get('error')} {line.get('amountsProblem')}")  # fmt: skip
    return seen


def _peak_of(pid):
    try:
        with open(f"/proc/{pid}/status") as status:
            lines = [line for line in status if line.startswith("VmHWM:")]
    except (FileNotFoundError, ProcessLookupError):
        return 0
    return int(lines[0].split()[1]) if lines else 0


def _counts(server, query):
    return {name: int(count) for name, count in server.query(query)}
