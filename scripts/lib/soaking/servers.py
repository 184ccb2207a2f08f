"""Throwaway databases: each in a private folder, on a free port of the loopback, gone at the end."""

import os
import pwd
import shutil
import signal
import socket
import sqlite3
import subprocess
import time
from pathlib import Path

from . import children

# Of a machine that is busy with other work; one that has ended is noticed at once.
_SECONDS_TO_START = 240


class ServerFailed(Exception):
    pass


_given = set()


def free_port():
    # Ports that were given out before count as taken: their servers may be about to listen.
    while True:
        with socket.socket() as probe:
            probe.bind(("127.0.0.1", 0))
            port = probe.getsockname()[1]
        if port not in _given:
            _given.add(port)
            return port


class Database:
    def connexion_of(self, _host):
        """The connection string of one of several hosts, counted from 0."""
        return self.connexion


class Sqlite(Database):
    """A file; there is nothing that could die."""

    product = "sqlite"

    def __init__(self, folder):
        folder.mkdir(parents=True, exist_ok=True)
        self.file = folder / "bank.db"

    def start(self):
        pass

    def stop(self):
        pass

    @property
    def connexion(self):
        return f"Driver=SQLite3;Database={self.file}"

    def query(self, statement):
        connection = sqlite3.connect(self.file, timeout=120, isolation_level=None)
        try:
            return [tuple(str(value) for value in row) for row in connection.execute(statement)]
        finally:
            connection.close()


class Server(Database):
    """A server process. It never runs as root: a run as root gives it to `user`. One that flushes
    nothing is quick, and loses what it has acknowledged when it is killed."""

    product = ""
    user = "nobody"

    def __init__(self, folder, flushes=True):
        self.flushes = flushes
        self.folder = Path(folder)
        self.data = self.folder / "data"
        self.port = free_port()
        self.process = None
        self.folder.mkdir(parents=True, exist_ok=True)
        self.data.mkdir(mode=0o700, exist_ok=True)
        self._account = pwd.getpwnam(self.user) if os.geteuid() == 0 else None
        self._prefix = []
        if self._account is not None:
            self._prefix = ["setpriv", f"--reuid={self._account.pw_uid}",
                            f"--regid={self._account.pw_gid}", "--clear-groups", "--"]  # fmt: skip
        for each in (self.folder, self.data):
            self.give(each)

    def give(self, path):
        """Makes it the server's."""
        if self._account is not None:
            os.chown(path, self._account.pw_uid, self._account.pw_gid)

    def start(self):
        """Starts it and waits until it answers. May be called again after a death."""
        if not any(self.data.iterdir()):
            self.install()
        self.launch()
        self.wait_ready()

    def launch(self, *arguments):
        self.run_down()
        with open(self.folder / "log", "ab") as log:
            self.process = subprocess.Popen(
                [*self._prefix, *self.command(), *arguments], stdin=subprocess.DEVNULL,
                stdout=log, stderr=log, env=self.environment())  # fmt: skip

    def environment(self):
        return dict(os.environ, TMPDIR=str(self.folder))

    def set_up(self, command):
        done = subprocess.run(
            [*self._prefix, *command], capture_output=True, text=True, env=self.environment()
        )
        if done.returncode != 0:
            raise ServerFailed(f"{command[0]}: {done.stdout[-2000:]}{done.stderr[-2000:]}")

    def wait_ready(self, seconds=_SECONDS_TO_START):
        end = time.monotonic() + seconds
        while not self.answers():
            if self.process.poll() is not None or time.monotonic() > end:
                log = (self.folder / "log").read_text(errors="replace")[-3000:]
                raise ServerFailed(f"{self.product} on port {self.port} does not answer:\n{log}")
            time.sleep(0.05)

    def answers(self):
        try:
            return self.query("SELECT 1") == [("1",)]
        except ServerFailed:
            return False

    def query(self, statement):
        try:
            done = subprocess.run(
                self.client(), input=statement, capture_output=True, text=True, timeout=600
            )
        except subprocess.TimeoutExpired as late:
            raise ServerFailed(str(late)) from late
        if done.returncode != 0:
            raise ServerFailed(done.stderr.strip())
        return [tuple(line.split("\t")) for line in done.stdout.splitlines()]

    def kill(self):
        children.send_with_children(self.process, signal.SIGKILL)
        self.process.wait()

    def freeze(self):
        children.send_with_children(self.process, signal.SIGSTOP)

    def thaw(self):
        children.send_with_children(self.process, signal.SIGCONT)

    def run_down(self):
        """Waits for the children of a server that was killed; they may still hold its memory."""
        if self.process is not None:
            self.process.wait(timeout=60)

    def stop(self):
        if self.process is None or self.process.poll() is not None:
            return
        self.thaw()
        children.send(self.process, self.gentle)
        try:
            self.process.wait(timeout=60)
        except subprocess.TimeoutExpired:
            self.kill()


class PostgreSql(Server):
    product = "postgresql"
    user = "postgres"
    gentle = signal.SIGINT

    def __init__(self, folder, **options):
        super().__init__(folder, **options)
        homes = sorted(Path("/usr/lib/postgresql").glob("*/bin/postgres"))
        if not homes:
            raise ServerFailed("PostgreSQL is not installed; run scripts/setup servers")
        self.bin = homes[-1].parent

    @property
    def connexion(self):
        return (f"Driver={{PostgreSQL Unicode}};Server=127.0.0.1;Port={self.port};UID=bank;"
                "Database=postgres;CommLog=0")  # fmt: skip

    def install(self):
        self.set_up([self.bin / "initdb", "-D", self.data, "-U", "bank", "-A", "trust", "-E",
                     "UTF8", "--locale=C.UTF-8", "-N"])  # fmt: skip

    def command(self):
        return [self.bin / "postgres", "-D", self.data, "-k", self.folder,
                "-c", "listen_addresses=127.0.0.1", "-p", str(self.port),
                "-c", "max_connections=300", "-c", "client_min_messages=warning",
                *([] if self.flushes else ["-c", "fsync=off"])]  # fmt: skip

    def client(self):
        return [self.bin / "psql", "-X", "-q", "-v", "ON_ERROR_STOP=1", "-h", "127.0.0.1", "-p",
                str(self.port), "-U", "bank", "-d", "postgres", "-At", "-F", "\t"]  # fmt: skip


def driver_limits(connect, answer):
    """Keys of MariaDB's driver, in seconds."""
    return f"CONN_TIMEOUT={connect};READ_TIMEOUT={answer};WRITE_TIMEOUT={answer}"


class MariaDb(Server):
    """Its driver waits for a server for `limit` seconds at most."""

    product = "mariadb"
    gentle = signal.SIGTERM
    address = "127.0.0.1"

    def __init__(self, folder, limit=3, **options):
        super().__init__(folder, **options)
        self.limits = driver_limits(limit, limit)
        if shutil.which("mariadbd") is None:
            raise ServerFailed("MariaDB is not installed; run scripts/setup servers")

    @property
    def connexion(self):
        return (f"Driver={{MariaDB Unicode}};SERVER={self.address};PORT={self.port};UID=root;"
                f"DATABASE=bank;{self.limits}")  # fmt: skip

    def install(self, *options):
        self.set_up(["mariadb-install-db", "--no-defaults", f"--datadir={self.data}",
                     "--auth-root-authentication-method=normal", "--skip-test-db", *options])  # fmt: skip
        bank = self.data / "bank"
        bank.mkdir()
        (bank / "db.opt").write_text(
            "default-character-set=utf8mb4\ndefault-collation=utf8mb4_general_ci\n"
        )
        for each in (bank, bank / "db.opt"):
            self.give(each)

    def command(self):
        return ["mariadbd", "--no-defaults", f"--datadir={self.data}",
                f"--bind-address={self.address}", f"--port={self.port}", "--skip-name-resolve",
                f"--socket={self.folder}/socket", f"--pid-file={self.folder}/pid",
                "--max-connections=300", "--innodb-buffer-pool-size=64M",
                f"--innodb-flush-log-at-trx-commit={int(self.flushes)}"]  # fmt: skip

    def client(self):
        return ["mariadb", "--no-defaults", "-h", self.address, "-P", str(self.port), "-u", "root",
                "--connect-timeout=3", "-N", "-B", "bank"]  # fmt: skip


def make(product, folder, **options):
    """`limit` is for products whose drivers have time-outs; the others do without."""
    from .galera import Cluster  # which is made of the nodes above

    kinds = {kind.product: kind for kind in (Sqlite, PostgreSql, MariaDb, Cluster)}
    if product in ("sqlite", "postgresql"):
        options.pop("limit", None)
    return kinds[product](Path(folder), **options)
