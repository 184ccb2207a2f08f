"""Servers that die: killed, killed and restarted, or frozen, at every boundary between two statements
of a check. What the check answers, what it wrote and what it spooled must be what is documented."""

import json
import subprocess
import threading
import time

from . import galera, hosts, servers
from .books import Books
from .relay import Relay

# A refusal by two rules, with a report: the fifth of the sample orders.
ORDER = "4"
# An acceptance, for the next contact.
NEXT_ORDER = "0"
REPETITIONS = 3
FAULTS = ("killed", "restarted", "frozen")

SILENCE = 3
# Each of the check's contacts may wait for the server once: opening, rules or a holder, the rows'
# connection, a row, the journal's connection, an event.
LONGEST_SECONDS = 6 * SILENCE + 2

# The boundaries of the check, each before the statement that it is named after. The server gives
# away all rows of a query with its answer, so that no boundary lies between two rules.
PLACES = [
    ("open", "connect"),
    ("set up", "SET "),
    ("rules", "SELECT C.CUID"),
    ("holder of rule 1", "SELECT H.HUID"),
    ("holder of rule 2", "SELECT H.HUID"),
    ("second holder", "SELECT H.HUID"),
    ("rows: open", "connect"),
    ("rows: set up", "SET "),
    ("row 1", "INSERT INTO HST_SIGNRULES"),
    ("row 2", "INSERT INTO HST_SIGNRULES"),
    ("journal: test", "SELECT 1"),
    ("event 1", "INSERT INTO EVT_JOURNAL"),
    ("event 2", "INSERT INTO EVT_JOURNAL"),
    ("end", None),
]
ROUNDS = len(FAULTS) * REPETITIONS
NAMES = [name for name, _ in PLACES]


class Expected:
    """What a check comes to whose server dies at a boundary. `gone`: new connections fail too."""

    def __init__(self, place, gone):
        self.ran = self._behind(place, "set up", needs_new="open", gone=gone)
        self.rules = self._behind(place, "rules", needs_new="open", gone=gone)
        self.lookups = self.ran and not _between(place, "holder of rule 1", "second holder")
        if not self.ran:
            self.verdict, self.due = 2, 0
        elif not self.rules or place == "holder of rule 1":
            # Nothing was read that concerns the signer: one row says so.
            self.verdict, self.due = 0, 1
        else:
            self.verdict, self.due = 2, 1 if place == "holder of rule 2" else 2
        self.written = self._rows(place, gone)
        self.report = self.verdict == 2
        self.events = self.ran + self.report
        self.spooled = self._spools(place, gone)
        if place == "rules":
            self.lookups = True  # there is no rule whose holders are looked up

    @staticmethod
    def _behind(place, last, needs_new, gone):
        """Whether the death comes behind this part, or before the connection that it needs."""
        return NAMES.index(place) > NAMES.index(last) or (place == needs_new and not gone)

    def _rows(self, place, gone):
        if not self.ran:
            return 0
        if NAMES.index(place) <= NAMES.index("rows: open"):
            return 0 if gone else self.due
        if place in ("rows: set up", "row 1"):
            return 0
        return 1 if place == "row 2" else self.due

    def _spools(self, place, gone):
        if place in ("event 1", "event 2"):
            return True
        return gone and place != "end"

    def differences(self, check, elapsed):
        told = {"ran": self.ran, "rulesComplete": self.rules, "lookupsComplete": self.lookups,
                "verdict": self.verdict, "rowsDue": self.due, "rowsWritten": self.written,
                "report": "handed on" if self.report else "not due",
                "journal": "spooled" if self.spooled else "written"}  # fmt: skip
        found = [f"{name} is {check[name]} instead of {value}"
                 for name, value in told.items() if check[name] != value]  # fmt: skip
        whole = self.ran and self.rules and self.lookups and self.written == self.due
        if bool(check["problem"]) == whole:
            found.append(f"the problem told is '{check['problem']}'")
        if elapsed > LONGEST_SECONDS:
            found.append(f"it took {elapsed:.1f} s")
        return found


def after(seconds, action):
    """Does it then, unless it is cancelled."""
    timer = threading.Timer(seconds, action)
    timer.daemon = True
    timer.start()
    return timer


def _between(place, first, last):
    return NAMES.index(first) <= NAMES.index(place) <= NAMES.index(last)


def rounds(build, folder, product, _amount, done):
    bench = _Bench(build, folder, product)
    try:
        bench.compare_boundaries()
        for number in range(done, ROUNDS):
            fault = FAULTS[number % len(FAULTS)]
            yield bench.round(number, fault)
    finally:
        bench.close()


class Single:
    """One server, behind a relay where its driver has no time-outs."""

    def __init__(self, product, folder):
        self.server = servers.make(product, folder)
        self.server.start()
        self.connexion = self.server.connexion
        self._relay = None
        if product == "postgresql":
            self._relay = Relay(self.server.port, SILENCE)
            self.connexion = self.connexion.replace(
                f"Port={self.server.port}", f"Port={self._relay.port}"
            )

    def is_gone(self, fault):
        """Whether new connections fail too while the check goes on."""
        return fault != "restarted"

    def harm(self, fault):
        if fault == "frozen":
            self.server.freeze()
            return
        self.server.kill()
        if fault == "restarted":
            self.server.start()

    def mend(self, fault):
        if fault == "frozen":
            self.server.thaw()
        if fault == "killed":
            self.server.start()
        self.server.wait_ready()

    def query(self, statement):
        return self.server.query(statement)

    def close(self):
        self.server.stop()
        if self._relay is not None:
            self._relay.close()


class Clustered:
    """Three nodes, of which the one dies that the host is connected to."""

    def __init__(self, folder):
        self.cluster = galera.Cluster(folder)
        self.cluster.start()
        self.connexion = self.cluster.connexion
        self.query = self.cluster.query
        self._first = self.cluster.nodes[0]

    def is_gone(self, fault):
        """The driver goes on to the next node where a connect is refused, not where it is silent."""
        return fault == "frozen"

    def harm(self, fault):
        if fault == "frozen":
            self._first.freeze()
            return
        self._first.kill()
        if fault == "restarted":
            self._first.join()

    def mend(self, fault):
        if fault == "frozen":
            self._first.thaw()
            self._first.wait_ready()
        if fault == "killed":
            self._first.join()
        self.cluster.wait_size(galera.NODES)

    def close(self):
        self.cluster.stop()


class _Bench:
    def __init__(self, build, folder, product):
        self.program = hosts.program(build, "signutils_boundary_host")
        self.place = hosts.Place(folder / "place")
        self.site = site(product, folder / "server")
        hosts.install(hosts.program(build, "signcheck"), self.site.connexion, self.place)
        self.contacts = 0

    def close(self):
        self.site.close()

    def _start(self, order, name, stop):
        return subprocess.Popen(
            [self.program, self.site.connexion, order, name, str(stop)], stdin=subprocess.PIPE,
            stdout=subprocess.PIPE, text=True, env=self.place.environment())  # fmt: skip

    def compare_boundaries(self):
        host = self._start(ORDER, "clean", 0)
        lines = [json.loads(line) for line in host.communicate(timeout=60)[0].splitlines()]
        passed = lines[-1]["passed"] + [None]
        if len(passed) != len(PLACES) or not all(
            start is None or text.startswith(start) for text, (_, start) in zip(passed, PLACES)
        ):
            raise RuntimeError(f"the check has other boundaries than expected: {passed}")

    def round(self, number, fault):
        started = time.monotonic()
        problems, slowest = [], 0.0
        for stop, (name, _) in enumerate(PLACES, 1):
            order = f"{fault}-{number}-{stop}"
            check, elapsed = self._check_with_fault(order, stop, fault)
            slowest = max(slowest, elapsed)
            found = Expected(name, self.site.is_gone(fault)).differences(check, elapsed)
            found += self._differences_in_books(check)
            problems += [f"{fault} at '{name}': {text}" for text in found]
        return {"what": fault, "faults": len(PLACES), "seconds": round(time.monotonic() - started, 1),
                "slowest": round(slowest, 1), "problems": problems[:20]}  # fmt: skip

    def _check_with_fault(self, order, stop, fault):
        host = self._start(ORDER, order, stop)
        check = None
        if stop == len(PLACES):
            check = json.loads(host.stdout.readline())
        reached = json.loads(host.stdout.readline())
        if reached.get("boundary") != stop:
            raise RuntimeError(f"the host stopped at {reached} instead of {stop}")
        self.site.harm(fault)
        host.stdin.write("\n")
        host.stdin.flush()
        started = time.monotonic()
        # A host that waits without end must not make the run wait with it.
        late = after(3 * LONGEST_SECONDS, lambda: self.site.mend(fault))
        if check is None:
            check = json.loads(host.stdout.readline())
        elapsed = time.monotonic() - started
        late.cancel()
        self.site.mend(fault)
        host.communicate(timeout=60)
        return check, elapsed

    def _differences_in_books(self, check):
        """After the next contact."""
        self.contacts += 1
        following = self._start(NEXT_ORDER, f"next-{self.contacts}", 0)
        following_check = json.loads(following.communicate(timeout=60)[0].splitlines()[0])
        books = Books(self.site, self.place)
        books.expect_acknowledged([following_check])
        books.expect_as_told(check)
        books.expect_delivered()
        return books.problems


def site(product, folder):
    return Clustered(folder) if product == "galera" else Single(product, folder)
