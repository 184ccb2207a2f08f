"""Host programs that make checks, and what they told of them."""

import json
import os
import subprocess
from pathlib import Path


class Place:
    """Spool, store and temporary folder that the hosts of a run share."""

    def __init__(self, folder):
        self.spool = folder / "spool"
        self.store = folder / "store"
        self.progress = folder / "progress"
        self.temporary = folder / "temporary"
        self.told = folder / "told"
        for each in (self.temporary, self.told):
            each.mkdir(parents=True)

    def environment(self, **more):
        return dict(os.environ, SIGNUTILS_SPOOL=str(self.spool), SIGNUTILS_HANDOFF=str(self.store),
                    SIGNCHECK_PROGRESS=str(self.progress), TMPDIR=str(self.temporary), **more)  # fmt: skip

    def spool_lines(self):
        """The lines that wait, and those that were found damaged."""
        waiting, damaged = [], []
        for file in sorted(self.spool.glob("*")):
            if file.suffix == ".jsonl":
                waiting += file.read_bytes().splitlines(keepends=True)
            elif file.suffix == ".damaged":
                damaged += file.read_bytes().splitlines(keepends=True)
        return waiting, damaged

    def reports(self):
        return sorted(self.store.glob("*/*/*"))


class Host:
    """A running signutils_soak_host; `prefix` runs it on a machine."""

    def __init__(self, program, place, connexion, name, threads, checks, prefix=()):
        self.name = name
        self.file = place.told / name
        with open(self.file, "wb") as told, open(place.told / f"{name}.errors", "wb") as errors:
            self.process = subprocess.Popen(
                [*prefix, program, connexion, name, str(threads), str(checks)],
                stdin=subprocess.DEVNULL, stdout=told, stderr=errors, env=place.environment())  # fmt: skip
        self.errors = place.told / f"{name}.errors"

    def told(self):
        """What it told, as dictionaries; a line that a kill cut short was not acknowledged."""
        lines = self.file.read_bytes().splitlines(keepends=True)
        return [json.loads(line) for line in lines if line.endswith(b"\n")]

    def end(self):
        """Waits for it. What it said on standard error is no problem of the check: nothing."""
        status = self.process.wait()
        return status, self.errors.read_text(errors="replace")


def checks_of(told):
    return [line for line in told if "order" in line]


def footprints_of(told):
    return [line for line in told if "footprint" in line]


def install(signcheck, connexion, place):
    done = subprocess.run([signcheck, "init", "--db", connexion, "--sample"], capture_output=True,
                          text=True, env=place.environment())  # fmt: skip
    if done.returncode != 0:
        raise RuntimeError(f"signcheck init: {done.stdout}{done.stderr}")


def program(build, name):
    found = Path(build) / "bin" / name
    if not found.exists():
        raise RuntimeError(f"{found} is not built")
    return str(found)
