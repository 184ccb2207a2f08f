"""Builds one mutant and runs tests against it."""

import os
import resource
import shutil
import signal
import subprocess
import tempfile
from pathlib import Path

KILLED, TIMEOUT, SURVIVED, NOT_COMPILING = "killed", "timeout", "survived", "not compiling"

# Twice as quick as GCC over one small file.
_COMPILER = "clang++-14"
_MEMORY = 4 << 30
_OUTPUT = 64 << 20
# A waiting program uses no processor time.
_WALL_SECONDS = 300
_LEAST_SECONDS = 3
_TIMES_THE_ORIGINAL = 4
_KILLERS_FIRST = 10


class Program:
    """A test program, which of its tests are run, and how many seconds of processor they need."""

    def __init__(self, name, filter="*", **environment):
        self.name = name
        self.filter = filter
        self.environment = environment
        self.seconds = None


class Bench:
    def __init__(self, root, build, temporary_parent):
        self.root = root
        self.build = build
        self.work = Path(tempfile.mkdtemp(prefix="bench.", dir=build))
        self.temporary = Path(tempfile.mkdtemp(prefix="mutants.", dir=temporary_parent))
        self.commands = {}
        self.killers = {}

    def close(self):
        shutil.rmtree(self.work)
        shutil.rmtree(self.temporary, ignore_errors=True)

    def _lines(self, program):
        if program.name not in self.commands:
            told = subprocess.run(
                ["ninja", "-C", self.build, "-t", "commands", program.name],
                check=True, capture_output=True, text=True)  # fmt: skip
            self.commands[program.name] = told.stdout.splitlines()
        return self.commands[program.name]

    def _line(self, program, wanted):
        return next(line for line in self._lines(program) if wanted in line + " ")

    def prepare(self, file, program):
        """Compiles what the file includes once, for all of its mutants."""
        line = self._line(program, f" -c {self.root / file} ")
        flags = line[line.index("/usr/bin/") : line.index(" -MD ")].partition(" ")[2]
        compiler = f"{_COMPILER} {flags} -O0 -w"
        includes = self.work / "includes.h"
        text = (self.root / file).read_text()
        includes.write_text(
            "".join(f"{each}\n" for each in text.splitlines() if each.startswith("#include")))  # fmt: skip
        made = f"{compiler} -x c++-header -fpch-instantiate-templates {includes} -o {includes}.pch"
        self._shell(made).check_returncode()
        self.compiler = f"{compiler} -include-pch {includes}.pch"

    def _shell(self, command):
        return subprocess.run(command, shell=True, cwd=self.build, capture_output=True, text=True)

    def errors_of(self, source):
        """Compiles: None when that went well."""
        mutated = self.work / "mutant.cpp"
        mutated.write_text(source)
        told = self._shell(f"{self.compiler} -ferror-limit=0 -o {self.work}/mutant.o -c {mutated}")
        if told.returncode != 0 and f"{mutated}:" not in told.stderr:
            # No mistake is refused where it does not stand: a header was touched, a compiler killed.
            raise SystemExit(f"the compiler failed for a reason of its own:\n{told.stderr}")
        return None if told.returncode == 0 else told.stderr

    def link(self, program):
        """Whether the mutant fits into the program. It stands before the room's library, whose own
        object then stays out."""
        line = self._line(program, f" -o bin/{program.name} ").removeprefix(": && ")
        line = line.removesuffix(" && :").replace(
            f" -o bin/{program.name} ", f" -o {self.work}/mutant {self.work}/mutant.o ")  # fmt: skip
        linked = self._shell(f"{_COMPILER} -fuse-ld=lld-14 {line.partition(' ')[2]}")
        if linked.returncode != 0 and " symbol: " not in linked.stderr:
            raise SystemExit(f"{program.name} cannot be linked:\n{linked.stderr}")
        return linked.returncode == 0

    def run(self, program, filter, seconds, environment):
        """Runs the linked mutant: the exit status and the name of the test that failed."""
        folder = tempfile.mkdtemp(dir=self.temporary)
        output = self.work / "output"
        limits = ((resource.RLIMIT_CPU, seconds), (resource.RLIMIT_AS, _MEMORY),
                  (resource.RLIMIT_FSIZE, _OUTPUT), (resource.RLIMIT_CORE, 0))  # fmt: skip

        def limit():
            for kind, most in limits:
                resource.setrlimit(kind, (most, most))

        before = resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime
        with output.open("wb") as log:
            test = subprocess.Popen(
                [self.work / "mutant", "--gtest_fail_fast", "--gtest_brief=1", f"--gtest_filter={filter}"],
                cwd=folder, env=os.environ | {"TMPDIR": folder} | program.environment | environment,
                stdin=subprocess.DEVNULL, stdout=log, stderr=log,
                start_new_session=True, preexec_fn=limit)  # fmt: skip
            try:
                status = test.wait(_WALL_SECONDS)
            except subprocess.TimeoutExpired:
                os.killpg(test.pid, signal.SIGKILL)
                test.wait()
                status = -signal.SIGXCPU
        self.used = resource.getrusage(resource.RUSAGE_CHILDREN).ru_utime - before
        shutil.rmtree(folder, ignore_errors=True)
        failed = None
        for line in output.read_text(errors="replace").splitlines():
            if line.startswith("[  FAILED  ] "):
                failed = line.removeprefix("[  FAILED  ] ").split(",")[0].split(" ")[0]
                break
        return status, failed

    def measure(self, program):
        """Runs the tests on the compiled file without a mistake in it, which they have to pass."""
        if not self.link(program):
            raise SystemExit(f"{program.name} cannot be linked on the sources as they are")
        status, failed = self.run(program, program.filter, resource.RLIM_INFINITY, {})
        if status != 0:
            raise SystemExit(f"{program.name} fails on the sources as they are: {failed or status}")
        if program.seconds is None:
            program.seconds = int(max(_LEAST_SECONDS, _TIMES_THE_ORIGINAL * self.used))

    def judge(self, program, **environment):
        """What the tests of one program make of the linked mutant, and which test noticed."""
        killers = self.killers.setdefault(program.name, [])
        filters = [":".join(killers[:_KILLERS_FIRST])] if killers else []
        for filter in filters + [program.filter]:
            status, failed = self.run(program, filter, program.seconds, environment)
            if failed in killers:
                killers.remove(failed)
            if failed:
                killers.insert(0, failed)
            if status in (-signal.SIGXCPU, -signal.SIGKILL):
                return TIMEOUT, failed
            if status != 0:
                return KILLED, failed or f"status {status}"
        return SURVIVED, None
