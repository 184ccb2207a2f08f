"""Whether database, spool and store hold what the hosts were told that they hold."""

import json
import xml.etree.ElementTree as ElementTree
from collections import Counter

_REPORT_WORDS = "PSR Generated in STATUS="


class Books:
    def __init__(self, server, place):
        self.problems = []
        self.rows = _counts(
            server.query("SELECT FILENAME, COUNT(*) FROM HST_SIGNRULES GROUP BY FILENAME")
        )
        events = server.query("SELECT REFERENCE, EVENTKEY FROM EVT_JOURNAL")
        self.written = Counter(reference for reference, _ in events)
        self.keys = Counter(key for _, key in events)
        self.waiting = Counter()
        self._read_spool(place)
        self.reports = self._read_store(place)

    def problem(self, text):
        self.problems.append(text)

    def _read_spool(self, place):
        waiting, damaged = place.spool_lines()
        if damaged:
            self.problem(f"{len(damaged)} damaged lines in the spool, the first {damaged[0]!r}")
        for line in waiting:
            try:
                event = json.loads(line)
                if not line.endswith(b"\n"):
                    self.problem(f"a line of the spool without its end: {line!r}")
            except ValueError:
                self.problem(f"a torn line in the spool: {line!r}")
                continue
            self.waiting[event["REFERENCE"]] += 1
            # One that is in the table already waits to be taken out of the spool; its key tells.
            if event["EVENTKEY"] in self.keys:
                self.waiting[event["REFERENCE"]] -= 1

    def _read_store(self, place):
        """The identifiers of whole reports."""
        identifiers = []
        self.unfinished = 0
        for file in place.reports():
            if file.suffix == ".part":
                self.unfinished += 1
                continue
            identifiers.append(int(file.stem))
            try:
                ElementTree.parse(file)
            except ElementTree.ParseError as torn:
                self.problem(f"half a report in the store: {file}: {torn}")
        for identifier, times in Counter(identifiers).items():
            if times > 1:
                self.problem(f"identifier {identifier} was given {times} times")
        return set(identifiers)

    def expect_acknowledged(self, checks):
        """Every check that was told is in the books once, in all its parts."""
        for check in checks:
            order = check["order"]
            if check["verdict"] != check["expected"] or check["problem"]:
                self.problem(f"{order}: verdict {check['verdict']} instead of {check['expected']}: "
                             f"{check['problem']}")  # fmt: skip
            if not check["rowsDue"] == check["rowsWritten"] == self.rows[order]:
                self.problem(f"{order}: {check['rowsDue']} rows due, {check['rowsWritten']} told, "
                             f"{self.rows[order]} there")  # fmt: skip
            asked = check["asked"] and check["verdict"] == 2
            if check["report"] != ("handed on" if asked else "not due"):
                self.problem(f"{order}: report {check['report']}")
            if asked and check["reportFileId"] not in self.reports:
                self.problem(f"{order}: report {check['reportFileId']} is not in the store")
            self.expect_events(order, 2 if asked else 1)

    def expect_as_told(self, check):
        """A check that met a failure: what it was told of is there. A row that was told as missing may be
        there where only the answer was lost; an event is there or in the spool, once."""
        order = check["order"]
        if not check["rowsWritten"] <= self.rows[order] <= check["rowsDue"]:
            self.problem(f"{order}: {check['rowsDue']} rows due, {check['rowsWritten']} told, "
                         f"{self.rows[order]} there")  # fmt: skip
        if check["report"] == "handed on" and check["reportFileId"] not in self.reports:
            self.problem(f"{order}: report {check['reportFileId']} is not in the store")
        self.expect_events(order, int(check["ran"]) + (check["report"] == "handed on"))

    def expect_delivered(self):
        waiting = sum(self.waiting.values())
        if waiting > 0:
            self.problem(f"{waiting} events still wait after the next contact")

    def expect_events(self, order, due):
        there = self.written[order] + self.waiting[order]
        if there != due:
            self.problem(f"{order}: {due} events due, {self.written[order]} in the table and "
                         f"{self.waiting[order]} in the spool")  # fmt: skip

    def expect_no_others(self, checks, killed=0):
        """Nothing is in the books that nobody was told of, but for checks that a kill cut off."""
        known = {check["order"] for check in checks}
        others = (self.rows.keys() | self.written.keys() | self.waiting.keys()) - known
        if len(others) > killed:
            self.problem(f"{len(others)} orders in the books that were not told, but {killed} were "
                         f"cut off: {sorted(others)[:3]}")  # fmt: skip
        for order in others:
            if self.rows[order] > 2 or self.written[order] + self.waiting[order] > 2:
                self.problem(f"{order}, cut off, has {self.rows[order]} rows, "
                             f"{self.written[order]} + {self.waiting[order]} events")  # fmt: skip

    def expect_rising(self, checks):
        """An identifier given after another one was told is the larger one."""
        given = [
            check for check in checks if check["reportFileId"] and check["report"] == "handed on"
        ]
        identifiers = Counter(check["reportFileId"] for check in given)
        for identifier, times in identifiers.items():
            if times > 1:
                self.problem(f"identifier {identifier} was told {times} times")
        ended = sorted((check["ended"], check["reportFileId"]) for check in given)
        largest, next_ended = 0, 0
        for check in sorted(given, key=lambda each: each["begun"]):
            while next_ended < len(ended) and ended[next_ended][0] < check["begun"]:
                largest = max(largest, ended[next_ended][1])
                next_ended += 1
            if check["reportFileId"] <= largest:
                self.problem(f"identifier {check['reportFileId']} was given after {largest}")

    def totals(self):
        return {"rows": sum(self.rows.values()), "events": sum(self.written.values()),
                "waiting": sum(self.waiting.values()), "reports": len(self.reports),
                "unfinished": self.unfinished}  # fmt: skip


def _counts(pairs):
    return Counter({name: int(count) for name, count in pairs})
