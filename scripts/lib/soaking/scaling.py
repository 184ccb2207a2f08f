"""Several machines: a host and a Galera node on each, checks per second with one, two and three of them,
and one machine that is cut off the network under load and joined again."""

import os
import shutil
import signal
import time
from statistics import quantiles

from . import children, galera, hosts, processors
from .books import Books
from .machines import Network

THREADS = 4

# Nodes, hosts (each on the machine of its node), and whether the last machine is cut off meanwhile.
# One host on a cluster tells what the copies to the other nodes cost.
RUNS = [(1, 1, False), (2, 1, False), (2, 2, False), (3, 1, False), (3, 3, False), (3, 3, True)]
ROUNDS = len(RUNS)

_WARM_SECONDS = 10
_CUT_SECONDS = 20
_JOINED_SECONDS = 10
_SECONDS_TO_SYNC = 240

# What every node must agree on to the last letter: history, journal, and the order of rules, which is that
# of their insertion and has no key to go by.
_SAME = ("SELECT COUNT(*), COALESCE(SUM(CRC32(CONCAT_WS('|', ROWNO, DATETIME, STATUT, SIGNER1, MOTIF, CNS, "
         "FILENAME))), 0) FROM HST_SIGNRULES; SELECT COUNT(*), COUNT(DISTINCT EVENTID), "
         "COALESCE(SUM(CRC32(CONCAT_WS('|', EVENTID, EVENTKEY, TEXT))), 0) FROM EVT_JOURNAL; "
         "SELECT CUID, HUID1, HUID2, AMOUNT FROM SSR_CONTRACTRULE; SELECT HUID, CN FROM SSR_HOLDERID")  # fmt: skip


def rounds(build, folder, _product, checks, done):
    for number in range(done, ROUNDS):
        own = folder / f"round{number}"
        nodes, working, cut = RUNS[number]
        bench = _Bench(build, own, nodes, working)
        try:
            yield bench.cut_round() if cut else bench.rate_round(checks)
        finally:
            bench.close()
            shutil.rmtree(own, ignore_errors=True)


class _Bench:
    def __init__(self, build, folder, nodes, working):
        self.program = hosts.program(build, "signutils_soak_host")
        self.network = Network(nodes)
        self.machines = self.network.machines
        self.cluster = galera.Cluster(folder / "server", machines=self.machines)
        self.places = [hosts.Place(folder / f"machine{number}") for number in range(working)]
        try:
            self.cluster.start()
            # An administrator's machine: it reaches every node.
            hosts.install(hosts.program(build, "signcheck"), self.cluster.connexion, self.places[0])
            for table in ("HST_SIGNRULES", "EVT_JOURNAL"):
                self.cluster.query(f"DELETE FROM {table}")
        except BaseException:
            self.close()
            raise

    def close(self):
        self.cluster.stop()
        self.network.close()

    def _start(self, number, name, checks, threads=THREADS):
        return hosts.Host(self.program, self.places[number], self.cluster.connexion_of(number),
                          f"{name}{number}", threads, checks, prefix=self.machines[number].prefix)  # fmt: skip

    def _start_all(self, name, checks, threads=THREADS):
        return [self._start(number, name, checks, threads) for number in range(len(self.places))]

    def _node_seconds(self):
        return sum(processors.seconds_of(node.process.pid) for node in self.cluster.nodes)

    def _counters(self, name):
        """Of all nodes together."""
        told = [node.query(f"SHOW GLOBAL STATUS LIKE '{name}'") for node in self.cluster.nodes]
        return sum(int(rows[0][1]) for rows in told)

    def rate_round(self, checks):
        problems = []
        started, busy, before = time.monotonic(), processors.Machine(), self._node_seconds()
        running = self._start_all("m", -(-checks // THREADS))
        host_seconds = sum(_seconds_at_end(host) for host in running)
        seconds = time.monotonic() - started
        share, node_seconds = busy.busy(), self._node_seconds() - before
        told = [self._end(host, problems) for host in running]
        made = [check for lines in told for check in lines]
        if len(made) != len(running) * THREADS * -(-checks // THREADS):
            problems.append(f"{len(made)} checks were told")
        totals = self._judge(told, problems)
        figures = {"MACHINES": len(self.machines), "HOSTS": len(running), "CHECKS": len(made),
                   "CHECKS/S": _rounded(len(made) / seconds),
                   "MEDIAN MS": _milliseconds(made, 50), "99 % MS": _milliseconds(made, 99),
                   "HOST MS/CHECK": _rounded(host_seconds / len(made) * 1000),
                   "NODES MS/CHECK": _rounded(node_seconds / len(made) * 1000),
                   "BUSY": f"{share:.0%}", **self._conflicts()}  # fmt: skip
        what = f"{len(self.machines)} machines, {len(running)} hosts"
        return {"what": what, "checks": len(made), "seconds": round(seconds, 1), **totals,
                "figures": figures, "problems": problems[:20]}  # fmt: skip

    def _conflicts(self):
        """Writes of two nodes that met: refused when they were committed, or given up for another node's."""
        return {"REFUSED": self._counters("wsrep_local_cert_failures"),
                "GIVEN UP": self._counters("wsrep_local_bf_aborts")}  # fmt: skip

    def _end(self, host, problems):
        status, errors = host.end()
        if status != 0 or errors:
            problems.append(f"{host.name} ended with {status}: {errors[:500]}")
        return hosts.checks_of(host.told())

    def _judge(self, told, problems, cut=None):
        """`cut`: the number of the host whose checks may have met the cut."""
        made = [check for lines in told for check in lines]
        totals = {}
        for number, (place, lines) in enumerate(zip(self.places, told)):
            books = Books(self.cluster, place)
            failed = [check for check in lines if check["problem"]] if number == cut else []
            books.expect_acknowledged([check for check in lines if check not in failed])
            for check in failed:
                books.expect_as_told(check)
            books.expect_no_others(made)
            books.expect_rising(lines)
            if cut is not None:
                books.expect_delivered()
            problems += [f"machine {number + 1}: {text}" for text in books.problems]
            for name, count in books.totals().items():
                # Rows and events are everybody's, spool and store each machine's own.
                shared = name in ("rows", "events")
                totals[name] = count if shared else totals.get(name, 0) + count
        self._expect_same(problems)
        return totals

    def _expect_same(self, problems):
        held = [node.query(f"SET SESSION wsrep_sync_wait = 15; {_SAME}") for node in self.cluster.nodes]
        for number, each in enumerate(held):
            if each != held[0]:
                problems.append(f"node {number + 1} holds {each}, node 1 {held[0]}")
        events, numbers, _ = held[0][1]
        if events != numbers:
            problems.append(f"{events} events have {numbers} numbers")

    def cut_round(self):
        problems, marks = [], {}
        cut = len(self.machines) - 1
        node = self.cluster.nodes[cut]
        others = self.cluster.nodes[:cut]
        started = time.monotonic()
        running = self._start_all("c", 0)
        time.sleep(_WARM_SECONDS)
        marks["cut"] = time.monotonic()
        self.machines[cut].cut_off()
        self.cluster.wait_size(len(others), among=others)
        marks["out"] = time.monotonic()
        time.sleep(_CUT_SECONDS)
        marks["joined"] = time.monotonic()
        self.machines[cut].join()
        self.cluster.wait_size(len(self.cluster.nodes), seconds=_SECONDS_TO_SYNC)
        node.wait_ready(_SECONDS_TO_SYNC)
        marks["synced"] = time.monotonic()
        time.sleep(_JOINED_SECONDS)
        for host in running:
            children.send(host.process, signal.SIGTERM)
        told = [self._end(host, problems) for host in running]
        ended = time.monotonic()
        # The next contact delivers what waits.
        last = [self._end(host, problems) for host in self._start_all("last", 10, threads=1)]
        told = [lines + more for lines, more in zip(told, last)]
        totals = self._judge(told, problems, cut)
        self._expect_seen(told, marks, cut, problems)
        made = sum(len(lines) for lines in told)
        figures = {"OUT AFTER S": _rounded(marks["out"] - marks["cut"]),
                   "BACK AFTER S": _rounded(marks["synced"] - marks["joined"]),
                   **self._phases(told, marks, started, ended, cut), **self._conflicts()}  # fmt: skip
        return {"what": "a machine cut off and joined", "checks": made,
                "seconds": round(ended - started, 1), **totals,
                "spooled": sum(check["journal"] == "spooled" for lines in told for check in lines),
                "figures": figures, "problems": problems[:20]}  # fmt: skip

    def _expect_seen(self, told, marks, cut, problems):
        """The cut was a cut, and over: what this run is there for has happened."""
        failed = [check for check in told[cut] if check["problem"]]
        if not failed:
            problems.append("no check of the machine that was cut off met the cut")
        late = [check for check in failed if check["begun"] > marks["synced"] * 1e6 + 1e6]
        if late:
            problems.append(f"{len(late)} checks fail although the machine is back: {late[0]}")

    def _phases(self, told, marks, started, ended, cut):
        """Checks per second of the machines that stay and of the one that is cut off."""
        phases = {"BEFORE": (started, marks["cut"]), "CUT": (marks["out"], marks["joined"]),
                  "AFTER": (marks["synced"], ended)}  # fmt: skip
        staying = [check for number, lines in enumerate(told) if number != cut for check in lines]
        figures = {}
        for name, (begin, end) in phases.items():
            whole = [each for each in staying + told[cut]
                     if begin <= each["ended"] / 1e6 < end and not each["problem"]]  # fmt: skip
            figures[f"{name}/S"] = _rounded(len(whole) / (end - begin))
        failed = [check for check in told[cut] if check["problem"]]
        figures["FAILED"] = len(failed)
        figures["OF THESE UNREAD"] = sum(not check["rulesComplete"] for check in failed)
        figures["LONGEST S"] = _longest(staying)
        figures["LONGEST S OF CUT"] = _longest(told[cut])
        return figures


def _seconds_at_end(host):
    """Waits for a host without taking its end, and tells its processor time."""
    os.waitid(os.P_PID, host.process.pid, os.WEXITED | os.WNOWAIT)
    return processors.seconds_of(host.process.pid)


def _longest(checks):
    return _rounded(max((check["ended"] - check["begun"]) / 1e6 for check in checks))


def _milliseconds(checks, percent):
    return _rounded(quantiles([(check["ended"] - check["begun"]) / 1000 for check in checks],
                              n=100)[percent - 1])  # fmt: skip


def _rounded(value):
    return round(value, 1)
