"""Batch: a folder of small orders judged at one go, and again with the run killed over and over."""

import os
import random
import signal
import time

from . import children, hosts, runs, spool_orders
from .rounds import on_server

# The first is left alone, for its rate and its memory; the others are killed.
ROUNDS = 2

_JOBS = 4
# Of a killed run: it falls into its beginning, its work and its end.
_KILLS = 20


def rounds(build, folder, product, orders, done):
    signcheck = hosts.program(build, "signcheck")
    return on_server(build, folder, product, range(done, ROUNDS),
                     lambda server, place, number: _Round(signcheck, server, place, orders,
                                                          number).run())  # fmt: skip


class _Round:
    def __init__(self, signcheck, server, place, count, number):
        self.signcheck = signcheck
        self.server = server
        self.place = place
        self.count = count
        self.orders = place.told.parent / "orders"
        self.is_killed = number > 0
        self.random = random.Random(number)
        self.problems = []
        self.told = []
        self.recovered = 0

    def run(self):
        spool_orders.write(self.orders, self.count)
        started = time.monotonic()
        kills = self._kill_runs() if self.is_killed else 0
        last = self._run_to_its_end()
        seconds = time.monotonic() - started
        without = runs.expect_each_once(self.problems, self.server, self.orders, range(self.count))
        if not 0 <= without <= kills * _JOBS:
            self.problems.append(f"{without} orders have no event after {kills} kills")
        runs.expect_verdicts(self.problems, self.told, range(self.count))
        self._expect_clean_folder()
        return {"what": f"{kills} times killed" if self.is_killed else "left alone",
                "kills": kills, "checks": self.count, "recovered": self.recovered,
                "withoutEvent": without, "rate": round(self.count / seconds, 1),
                "peakKib": last.peak_kib,
                "processorSeconds": round(last.usage.ru_utime + last.usage.ru_stime, 1),
                "seconds": round(seconds, 1), "problems": self.problems[:20]}  # fmt: skip

    def _start(self, *options):
        return runs.Run(self.signcheck, "batch", self.orders, self.server, self.place, "--jobs",
                        str(_JOBS), *options)  # fmt: skip

    def _kill_runs(self):
        """Kills one run after the other until most of the orders are judged. How many."""
        whole = self.count / 400  # seconds, at a guess; each run is given a part of it
        for kill in range(_KILLS):
            run = self._start()
            time.sleep(self.random.uniform(0.05, max(0.3, 1.2 * whole / _KILLS)))
            children.send(run.process, signal.SIGKILL)
            status = run.wait()
            if status != -signal.SIGKILL:
                return self._ended_before(run, kill, status)
            self._keep(run)
        return _KILLS

    def _ended_before(self, run, kill, status):
        if status not in (0, 1):
            self.problems.append(f"a run ended by itself with {status}: {run.said()[:500]}")
        self._keep(run)
        return kill

    def _keep(self, run):
        orders, _ = run.told()
        self.told += orders
        self.recovered += sum(order["recovered"] for order in orders)
        run.close()

    def _run_to_its_end(self):
        run = self._start()
        status = run.wait()
        expected = (0, 1) if self.is_killed else (1,)
        if status not in expected:
            self.problems.append(f"the last run ended with {status}: {run.said()[:500]}")
        _, summary = run.told()
        if summary is None or summary["left"] or summary["notJudged"]:
            self.problems.append(f"the last run left something: {summary}")
        self._keep(run)
        return run

    def _expect_clean_folder(self):
        """After the kills work files may lie there, until they are removed by their age."""
        time.sleep(1.5 if self.is_killed else 0)
        run = self._start("--remove-leftovers", "1s")
        if run.wait() != 0:
            self.problems.append(f"the run that tidies up ended otherwise: {run.said()[:500]}")
        run.close()
        names = set(os.listdir(self.orders))
        others = names - {spool_orders.name_of(number) for number in range(self.count)}
        if others:
            self.problems.append(f"{len(others)} other files stay: {sorted(others)[:3]}")
