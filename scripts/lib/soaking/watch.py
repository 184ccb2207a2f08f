"""Watch: a drop folder that orders come into at random moments, slowly written ones among them, while
the host is stopped and started again between the rounds."""

import os
import random
import signal
import threading
import time

from . import children, hosts, runs, spool_orders
from .rounds import on_server

# Each a minute of arrivals, so that a stage of fifteen takes a quarter of an hour.
ROUNDS = 15

_JOBS = 2
_SETTLE = 2
_WRITERS = 4
# Between two pieces of a slowly written order; longer than --settle, so that it looks settled.
_LONGEST_PAUSE = 3.0
_PATIENCE = 120


def rounds(build, folder, product, seconds, done):
    signcheck = hosts.program(build, "signcheck")
    return on_server(build, folder, product, range(done, ROUNDS),
                     lambda server, place, number: _Round(signcheck, server, place,
                                                          seconds / ROUNDS, number).run())  # fmt: skip


class _Round:
    def __init__(self, signcheck, server, place, seconds, number):
        self.signcheck = signcheck
        self.server = server
        self.place = place
        self.seconds = seconds
        self.orders = place.told.parent / "orders"
        self.outside = place.told.parent / "outside"
        self.number = number
        self.next = 0
        self.slow = 0
        self.lock = threading.Lock()
        self.problems = []

    def run(self):
        for folder in (self.orders, self.outside):
            folder.mkdir()
        self._write_whole(random.Random(self.number), self._take_number())  # there at the start
        started = time.monotonic()
        run = runs.Run(self.signcheck, "watch", self.orders, self.server, self.place, "--jobs",
                       str(_JOBS), "--settle", str(_SETTLE))  # fmt: skip
        writers = [threading.Thread(target=self._write_orders, args=(index, started + self.seconds))
                   for index in range(_WRITERS)]  # fmt: skip
        for writer in writers:
            writer.start()
        for writer in writers:
            writer.join()
        self._wait_for_rows()
        children.send(run.process, signal.SIGTERM)
        if run.wait() != 0:
            self.problems.append(f"it did not end cleanly: {run.process.returncode} {run.said()[:500]}")
        told, summary = run.told()
        if run.said():
            self.problems.append(f"it said {run.said()[:500]}")
        run.close()
        seen = runs.expect_verdicts(self.problems, told, range(self.next))
        if len(seen) != self.next or summary is None or summary["left"]:
            self.problems.append(f"{len(seen)} of {self.next} orders were told: {summary}")
        without = runs.expect_each_once(self.problems, self.server, self.orders, range(self.next))
        if without:
            self.problems.append(f"{without} orders have no event")
        return {"what": f"{self.slow} of the orders slowly written", "checks": self.next,
                "peakKib": run.peak_kib, "seconds": round(time.monotonic() - started, 1),
                "problems": self.problems[:20]}  # fmt: skip

    def _take_number(self):
        with self.lock:
            self.next += 1
            return self.next - 1

    def _write_orders(self, index, end):
        chance = random.Random(1000 * self.number + index)
        while time.monotonic() < end:
            chance.choice((self._write_whole, self._write_slowly, self._move_in,
                           self._rename_within))(chance, self._take_number())  # fmt: skip
            time.sleep(chance.uniform(0, 0.5))

    def _write_whole(self, _, number):
        (self.orders / spool_orders.name_of(number)).write_text(spool_orders.text_of(number))

    def _write_slowly(self, chance, number):
        with self.lock:
            self.slow += 1
        text = spool_orders.text_of(number)
        pieces = chance.randint(2, 4)
        with open(self.orders / spool_orders.name_of(number), "w") as file:
            for piece in range(pieces):
                file.write(text[piece * len(text) // pieces : (piece + 1) * len(text) // pieces])
                file.flush()
                time.sleep(chance.uniform(0, _LONGEST_PAUSE))

    def _move_in(self, _, number):
        outside = self.outside / spool_orders.name_of(number)
        outside.write_text(spool_orders.text_of(number))
        os.rename(outside, self.orders / outside.name)

    def _rename_within(self, chance, number):
        name = spool_orders.name_of(number)
        part = self.orders / f"{name}.part"
        with open(part, "w") as file:
            text = spool_orders.text_of(number)
            file.write(text[:100])
            file.flush()
            time.sleep(chance.uniform(0, 0.2))
            file.write(text[100:])
        os.rename(part, self.orders / name)

    def _wait_for_rows(self):
        end = time.monotonic() + _PATIENCE
        while time.monotonic() < end:
            count = int(self.server.query("SELECT COUNT(*) FROM HST_SIGNRULES")[0][0])
            if count >= self.next:
                return
            time.sleep(0.2)
        self.problems.append(f"some of {self.next} orders were not judged in {_PATIENCE} seconds")
