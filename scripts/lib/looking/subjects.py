"""What is looked at: the sample bank, and beside it a contract with as much as a page has to bear."""

import subprocess
from collections import namedtuple

from .terminal import environment

# A command, what is typed while it runs, and the variables it is run with.
Subject = namedtuple("Subject", "name command answers environment")

_ORDER = ["--signers", "Björn Weiß", "--total", "20000.00", "--largest", "9000.00",
          "--currency", "EUR"]  # fmt: skip
_FRENCH = {"SIGNUTILS_LANG": "fr"}
_NAMES = [("Maximiliane-Charlotte", "von und zu Hohenlohe-Waldenburg-Schillingsfürst"),
          ("Ωραιοζήλη", "Παπακωνσταντινοπούλου"), ("李", "小龍"),
          ("Wolfeschlegelsteinhausenbergerdorffwelchevoralternwaren", "O'X")]  # fmt: skip
_LIMITS = [500, 12_500.5, 99_999.99, 100_000, 25_000_000, 125_000_000.25, 999_999_999.99]


def _toml(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"') + '"'


def crowded():
    """A rule file of one contract with long names and many limits, on the total and on the largest
    order."""
    lines = []
    for number, (first, last) in enumerate(_NAMES):
        name = f"{first} {last}".replace("'", "")
        lines += ["[[holder]]", f'huid = "HOLDER-WITH-A-LONG-NAME-{number}"',
                  f"first-name = {_toml(first)}", f"last-name = {_toml(last)}",
                  'opposition = "0"', f"certificates = [ {{ name = {_toml(name)} }} ]"]  # fmt: skip
    lines += ["[[contract]]", 'cuid = "C-CROWDED"', 'partner = "CROWDED"', 'service = "CCT"',
              'client = "MANY"', "protocol = 9", 'side = "server"',
              'terms = [ { type = 1, profile = 2, all-holders = false, opposition = "0" } ]',
              "rules = ["]  # fmt: skip
    for number, limit in enumerate(_LIMITS):
        holder = f'holder1 = "HOLDER-WITH-A-LONG-NAME-{number % len(_NAMES)}"'
        other = f', holder2 = "HOLDER-WITH-A-LONG-NAME-{(number + 1) % len(_NAMES)}"'
        pair = number % 3 == 2
        lines.append(f"  {{ {holder}{other if pair else ''}, alone = {'false' if pair else 'true'}, "
                     f'amount = "{limit:.2f}", level = "file" }},')  # fmt: skip
    return "\n".join([*lines, "]"]) + "\n"


class Bank:
    def __init__(self, signcheck, folder):
        self.signcheck = signcheck
        self.folder = folder
        self.database = f"Driver=SQLite3;Database={folder}/bank.db"
        self._environment = {
            "SIGNCHECK_DB": self.database,
            "SIGNUTILS_SPOOL": str(folder / "spool"),
            "SIGNUTILS_HANDOFF": str(folder / "handoff"),
            "SIGNCHECK_PROGRESS": str(folder / "progress"),
        }
        self.order = folder / "order.xml"
        self.order.write_text("<Document/>")
        self.rules = folder / "crowded.toml"
        self.rules.write_text(crowded())
        self.run("init", "--sample", "--db", self.database)
        self.run("rules", "apply", self.rules, "--yes")
        exported = folder / "rules.toml"
        exported.write_text(self.run("rules", "export", "--contract", "C-7001"))
        self.changed = folder / "changed.toml"
        self.changed.write_text(exported.read_text().replace('"50000.00"', '"75000.00"'))

    def run(self, *arguments, allowed=(0,), **more):
        done = subprocess.run([self.signcheck, *arguments], capture_output=True, text=True,
                              env=environment(**self._environment, **more))  # fmt: skip
        if done.returncode not in allowed:
            raise SystemExit(f"signcheck {arguments}: {done.stdout}{done.stderr}")
        return done.stdout

    def _check(self, *more):
        return ["check", self.order, "--partner", "BODENSEE", "--service", "CCT", "--client",
                "FINANZ", "--protocol", "9", "--type", "1", *_ORDER, *more]  # fmt: skip

    def shown(self):
        """Commands whose output is looked at in a terminal; the last one changes the bank."""
        trace = self.folder / "trace.txt"
        self.run(*self._check("--trace", trace), allowed=(1,))
        commands = [
            ("map", ["map", "C-7001"], {}),
            ("map-crowded", ["map", "C-CROWDED"], {}),
            ("lint", ["lint", "C-1001"], {}),
            ("simulate", ["simulate", "C-7001", *_ORDER], {}),
            ("simulate-explain", ["simulate", "C-7001", *_ORDER, "--explain"], {}),
            ("simulate-explain-fr", ["simulate", "C-7001", *_ORDER, "--explain"], _FRENCH),
            ("pending", ["pending", "C-7001", *_ORDER], {}),
            ("pending-history", ["pending", "C-7001", "--file", str(self.order)], {}),
            ("check-explain", self._check("--explain"), {}),
            ("check-explain-fr", self._check("--explain"), _FRENCH),
            ("explain", ["explain", str(trace)], {}),
            ("explain-fr", ["explain", str(trace)], _FRENCH),
            ("rules-diff", ["rules", "diff", str(self.changed), "--effect"], {}),
        ]
        subjects = [Subject(name, [self.signcheck, *command], (), {**self._environment, **more})
                    for name, command, more in commands]  # fmt: skip
        return [*subjects,
                Subject("rules-apply", [self.signcheck, "rules", "apply", str(self.changed)],
                        (("yes or no:", "yes"),), self._environment)]  # fmt: skip

    def pages(self):
        """The pages that commands write."""
        trace = self.folder / "trace.txt"
        simulated = ["simulate", "C-CROWDED", "--signers", "李 小龍", "--total", "900000.00",
                     "--largest", "100.00", "--currency", "EUR", "--explain"]  # fmt: skip
        written = []
        for name, command, more in [
            ("page-map", ["map", "C-7001"], {}),
            ("page-map-crowded", ["map", "C-CROWDED"], {}),
            ("page-check", self._check("--explain"), {}),
            ("page-check-fr", self._check("--explain"), _FRENCH),
            ("page-trace", ["explain", trace], {}),
            ("page-trace-fr", ["explain", trace], _FRENCH),
            ("page-simulate", simulated, {}),
            ("page-simulate-fr", simulated, _FRENCH),
        ]:
            page = self.folder / f"{name}.html"
            self.run(*command, "--html", page, allowed=(0, 1, 2), **more)
            written.append(page)
        return written


NAMES = [
    "terminal: map, lint, simulate, pending, check --explain, explain, rules diff, rules apply",
    "pages: map, check --explain, explain, simulate --explain, in English and French",
]
