"""A cluster of three MariaDB nodes that replicate to each other, on the loopback."""

import os
import re
import subprocess
import time
from pathlib import Path

from .servers import MariaDb, ServerFailed, driver_limits, free_port

_PROVIDER = Path("/usr/lib/galera/libgalera_smm.so")
_SCRIPTS = Path(__file__).resolve().parents[3] / "build/galera"
NODES = 3
# A node that is silent for so long is put out of the cluster by the others.
SUSPECT_SECONDS = 2


class Node(MariaDb):
    def __init__(self, folder, **options):
        super().__init__(folder, **options)
        if not _PROVIDER.exists():
            raise ServerFailed("Galera is not installed; run scripts/setup servers")
        self.group_port = free_port()
        self.incremental_port = free_port()
        self.copy_port = free_port()
        self.peers = []

    def environment(self):
        path = f"{_SCRIPTS}:{os.environ['PATH']}:/usr/sbin:/sbin"
        return dict(super().environment(), PATH=path)

    def command(self):
        options = ";".join((
            f"gmcast.listen_addr=tcp://{self.address}:{self.group_port}",
            f"ist.recv_addr={self.address}:{self.incremental_port}",
            f"evs.suspect_timeout=PT{SUSPECT_SECONDS}S", "evs.keepalive_period=PT0.5S",
            "evs.inactive_timeout=PT5S",
            "gcache.size=128M"))  # fmt: skip
        return [*super().command(), "--binlog-format=ROW", "--default-storage-engine=InnoDB",
                "--innodb-autoinc-lock-mode=2", "--wsrep-on=ON", f"--wsrep-provider={_PROVIDER}",
                f"--wsrep-provider-options={options}", "--wsrep-sst-method=rsync",
                f"--wsrep-sst-receive-address={self.address}:{self.copy_port}",
                f"--wsrep-node-address={self.address}",
                f"--wsrep-node-incoming-address={self.address}:{self.port}"]  # fmt: skip

    def bootstrap(self):
        self.launch("--wsrep-cluster-address=gcomm://", "--wsrep-new-cluster")
        self.wait_ready()

    def join(self):
        peers = ",".join(f"{peer.address}:{peer.group_port}" for peer in self.peers)
        position = self._position()
        self.launch(f"--wsrep-cluster-address=gcomm://{peers}", *position)
        self.wait_ready()

    def _position(self):
        """Where the node stood when it died, so that it is given what it missed and not everything."""
        self.run_down()
        if not (self.data / "grastate.dat").exists():
            return []
        done = subprocess.run(
            [*self._prefix, *self.command(), "--wsrep-cluster-address=gcomm://", "--wsrep-recover"], capture_output=True, text=True,
            env=self.environment())  # fmt: skip
        found = re.findall(r"Recovered position:\s*(\S+)", done.stdout + done.stderr)
        return [f"--wsrep-start-position={found[-1]}"] if found else []

    def answers(self):
        return self.state() == "Synced"

    def state(self):
        try:
            told = self.query("SHOW STATUS LIKE 'wsrep_local_state_comment'")
            return told[0][1] if told else ""
        except ServerFailed:
            return ""

    def size(self):
        try:
            told = dict(self.query("SHOW STATUS LIKE 'wsrep_cluster_%'"))
        except ServerFailed:
            return 0
        return int(told["wsrep_cluster_size"]) if told["wsrep_cluster_status"] == "Primary" else 0


class MachineNode(Node):
    """A node on a machine of its own, on the ports that a node has there."""

    def __init__(self, folder, machine, **options):
        super().__init__(folder, **options)
        self.address = machine.address
        self.port, self.group_port, self.incremental_port, self.copy_port = 3306, 4567, 4568, 4444
        self._prefix = machine.prefix

    def install(self):
        # The accounts that come with it are for the loopback alone.
        accounts = self.folder / "accounts.sql"
        accounts.write_text("FLUSH PRIVILEGES;\nCREATE USER root@'%';\n"
                            "GRANT ALL PRIVILEGES ON *.* TO root@'%';\n")  # fmt: skip
        super().install(f"--extra-file={accounts}")

    def client(self):
        """From the machine itself, which may be cut off from the others."""
        return [*self._prefix, *super().client()]


class Cluster:
    """Its connection string names every node; the driver tries them in this order."""

    product = "galera"

    def __init__(self, folder, limit=6, machines=None, **options):
        # An insert waits for the others to put out a node that died. A frozen one costs a connect.
        self.limits = driver_limits(3, limit)
        folders = [Path(folder) / f"node{number}" for number in range(len(machines or range(NODES)))]
        if machines:
            self.nodes = [MachineNode(*each, **options) for each in zip(folders, machines)]
        else:
            self.nodes = [Node(each, **options) for each in folders]
        for node in self.nodes:
            node.peers = self.nodes

    @property
    def connexion(self):
        return self.connexion_of(0)

    def connexion_of(self, host):
        """Of a host whose own node comes first, the others behind it."""
        first = host % len(self.nodes)
        ordered = self.nodes[first:] + self.nodes[:first]
        # The driver takes a port behind a name in a list alone: one server has its port in a key.
        servers = f"SERVER={ordered[0].address};PORT={ordered[0].port}"
        if len(ordered) > 1:
            servers = "SERVER=" + ",".join(f"{node.address}:{node.port}" for node in ordered)
        return f"Driver={{MariaDB Unicode}};{servers};UID=root;DATABASE=bank;{self.limits}"

    def start(self):
        first, *others = self.nodes
        first.install()
        for node in others:
            subprocess.run(["cp", "-a", f"{first.data}/.", node.data], check=True)
        first.bootstrap()
        for node in others:
            node.join()
        self.wait_size(len(self.nodes))

    def wait_size(self, size, seconds=240, among=None):
        """Until these nodes, by default all, agree on so many."""
        end = time.monotonic() + seconds
        while any(node.size() != size for node in among or self.nodes):
            if time.monotonic() > end:
                raise ServerFailed(f"the cluster does not come to {size} nodes")
            time.sleep(0.1)

    def stop(self):
        for node in self.nodes:
            # A node that waits for others that are gone would take its time.
            if node.process is not None and node.process.poll() is None:
                node.kill()

    def query(self, statement):
        """Asks a node that has carried out whatever any node has acknowledged."""
        for node in reversed(self.nodes):
            if node.process is not None and node.answers():
                return node.query(f"SET SESSION wsrep_sync_wait = 15; {statement}")
        raise ServerFailed("no node answers")
