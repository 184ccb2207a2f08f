"""Verdicts of earlier runs."""

import hashlib
import json
from collections import defaultdict


def digest(*texts):
    return hashlib.sha256("\0".join(texts).encode()).hexdigest()[:16]


class Journal:
    """A verdict a line; of two about one mutant the later counts."""

    def __init__(self, path):
        self.path = path
        self.verdicts = {}
        if path.exists():
            for line in path.read_text().splitlines():
                record = json.loads(line)
                self.verdicts[record["mutant"]] = record

    def add(self, record):
        self.verdicts[record["mutant"]] = record
        with self.path.open("a") as journal:
            journal.write(json.dumps(record) + "\n")


def counts_by_file(records):
    counts = defaultdict(lambda: defaultdict(int))
    for record in records:
        counts[record["file"]][record["verdict"]] += 1
    return counts
