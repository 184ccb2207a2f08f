"""Kills: hosts under load die at random moments; nothing they were told of may be lost or torn."""

import random
import signal
import time

from . import children, hosts
from .books import Books
from .rounds import on_server

ROUNDS = 8

_HOSTS = 3
_THREADS = 2
# Of a host: one on SQLite makes its first check after 30 ms, one on a busy server after 200.
_LONGEST_SECONDS = {"sqlite": 0.5}
_LONGEST_ON_SERVERS = 1.5
# The journal's table is away for every other so many kills, so that the spool is at work too.
_TURN = 25


def rounds(build, folder, product, kills, done):
    program = hosts.program(build, "signutils_soak_host")
    return on_server(build, folder, product, range(done, ROUNDS),
                     lambda server, place, number: _Round(program, server, place, kills // ROUNDS,
                                                          number).run())  # fmt: skip


class _Round:
    def __init__(self, program, server, place, kills, number):
        self.program = program
        self.server = server
        self.place = place
        self.kills = kills
        self.number = number
        self.random = random.Random(number)
        self.started = 0
        self.checks = []
        self.away = False

    def run(self):
        started = time.monotonic()
        longest = _LONGEST_SECONDS.get(self.server.product, _LONGEST_ON_SERVERS)
        running = [self._start() for _ in range(_HOSTS)]
        for kill in range(self.kills):
            self._turn_journal(kill)
            time.sleep(self.random.uniform(0, longest / _HOSTS))
            self._kill(running.pop(0))
            running.append(self._start())
        for host in running:
            self._kill(host)
        self._put_journal(away=False)
        return self._judge(time.monotonic() - started)

    def _start(self):
        self.started += 1
        name = f"k{self.number}h{self.started}"
        return hosts.Host(self.program, self.place, self.server.connexion, name, _THREADS, 0)

    def _kill(self, host):
        children.send(host.process, signal.SIGKILL)
        status, errors = host.end()
        if status != -signal.SIGKILL or errors:
            raise RuntimeError(f"{host.name} ended by itself with {status}: {errors[:500]}")
        self.checks += hosts.checks_of(host.told())
        host.file.unlink()
        host.errors.unlink()

    def _turn_journal(self, kill):
        if kill % _TURN == 0 and kill > 0:
            self._put_journal(away=kill // _TURN % 2 == 1)

    def _put_journal(self, away):
        if away != self.away:
            names = ("EVT_JOURNAL", "EVT_AWAY") if away else ("EVT_AWAY", "EVT_JOURNAL")
            self.server.query("ALTER TABLE {} RENAME TO {}".format(*names))
            self.away = away

    def _judge(self, seconds):
        before = Books(self.server, self.place)
        waited = sum(before.waiting.values())
        # The next contact delivers what waits.
        last = hosts.Host(self.program, self.place, self.server.connexion,
                          f"k{self.number}last", 1, 10)  # fmt: skip
        ended = last.end()
        self.checks += hosts.checks_of(last.told())
        books = Books(self.server, self.place)
        books.problems += before.problems
        if ended != (0, ""):
            books.problem(f"the host after the kills ended with {ended}")
        books.expect_acknowledged(self.checks)
        books.expect_no_others(self.checks, killed=self.started * _THREADS)
        books.expect_rising(self.checks)
        books.expect_delivered()
        return {"kills": self.started, "checks": len(self.checks), "seconds": round(seconds, 1),
                **books.totals(), "waited": waited,
                "spooled": sum(check["journal"] == "spooled" for check in self.checks),
                "problems": books.problems[:20]}  # fmt: skip
