#!/usr/bin/env python3
"""The long runs of batch and watch, a few seconds of each. Usage: short_runs_test.py BUILD_FOLDER"""

import shutil
import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "scripts/lib"))

from soaking import batch, stages, watch

BUILD = sys.argv.pop(1)


class ShortRuns(unittest.TestCase):
    def setUp(self):
        self.folder = Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)

    def last_round(self, module, amount):
        rounds = module.rounds(BUILD, self.folder, "sqlite", amount, module.ROUNDS - 1)
        return next(iter(list(rounds)))

    def test_a_batch_killed_over_and_over_judges_each_order_once(self):
        record = self.last_round(batch, 150)
        self.assertEqual(record["problems"], [])
        self.assertEqual(record["checks"], 150)
        self.assertGreater(record["kills"], 0)

    def test_a_watched_folder_judges_each_order_once_and_whole(self):
        record = self.last_round(watch, 4 * watch.ROUNDS)
        self.assertEqual(record["problems"], [])
        self.assertGreater(record["checks"], 4)

    def test_the_stages_are_there(self):
        for name in ("batch-sqlite", "batch-postgresql", "watch-sqlite"):
            self.assertEqual(stages.find(name).name, name)


if __name__ == "__main__":
    unittest.main()
