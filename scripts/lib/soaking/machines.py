"""Machines of one network: each a network namespace of its own on a bridge that they share, so that one
can be cut off. Needs a network namespace in which the run is allowed to configure (confinement.py)."""

import os
import signal
import subprocess
import time

from . import children

_NETWORK = "10.77.0"
_BRIDGE = "bridge0"
_SECONDS_TO_START = 10

# What runs on a machine needs none of the rights that made it.
_WITHOUT_RIGHTS = ["setpriv", "--ambient-caps=-all", "--inh-caps=-all", "--"]


def _ip(*words, prefix=()):
    done = subprocess.run([*prefix, "ip", *words], capture_output=True, text=True)
    if done.returncode != 0:
        raise RuntimeError(f"ip {' '.join(words)}: {done.stderr.strip()}")


class Network:
    """A bridge in the namespace of the run itself, and machines on it."""

    def __init__(self, count):
        self.machines = []
        _ip("link", "set", "lo", "up")
        _ip("link", "add", _BRIDGE, "type", "bridge")
        _ip("address", "add", f"{_NETWORK}.1/24", "dev", _BRIDGE)
        _ip("link", "set", _BRIDGE, "up")
        try:
            for number in range(1, count + 1):
                self.machines.append(Machine(number))
        except BaseException:
            self.close()
            raise

    def close(self):
        for machine in self.machines:
            machine.close()
        _ip("link", "delete", _BRIDGE)


class Machine:
    def __init__(self, number):
        self.address = f"{_NETWORK}.{10 + number}"
        self._cable = f"cable{number}"
        self._holder = subprocess.Popen(["unshare", "--net", "sleep", "infinity"])
        try:
            self._wait_for_namespace()
            self._enter = ["nsenter", f"--net=/proc/{self._holder.pid}/ns/net", "--"]
            self._connect()
        except BaseException:
            self.close()
            raise
        # Put before a command to run it there.
        self.prefix = [*self._enter, *_WITHOUT_RIGHTS]

    def _wait_for_namespace(self):
        own = os.stat("/proc/self/ns/net").st_ino
        end = time.monotonic() + _SECONDS_TO_START
        while os.stat(f"/proc/{self._holder.pid}/ns/net").st_ino == own:
            if self._holder.poll() is not None or time.monotonic() > end:
                raise RuntimeError("a machine's network namespace cannot be made")
            time.sleep(0.01)

    def _connect(self):
        _ip("link", "add", self._cable, "type", "veth", "peer", "name", "eth0", "netns",
            str(self._holder.pid))  # fmt: skip
        _ip("link", "set", self._cable, "master", _BRIDGE, "up")
        _ip("link", "set", "lo", "up", prefix=self._enter)
        _ip("address", "add", f"{self.address}/24", "dev", "eth0", prefix=self._enter)
        _ip("link", "set", "eth0", "up", prefix=self._enter)

    def cut_off(self):
        """From all others; what runs on the machine still reaches each other."""
        _ip("link", "set", self._cable, "down")

    def join(self):
        _ip("link", "set", self._cable, "up")

    def close(self):
        """Its namespace and its cable go with the last process in it."""
        children.send(self._holder, signal.SIGKILL)
        self._holder.wait()
