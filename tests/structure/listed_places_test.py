"""What is listed about places in the sources still names them: gaps of the coverage, mutants that survive,
mistakes that are planted. Running these lists takes long, so a rotten one would be noticed late."""

import subprocess
import sys
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
ROOT = Path(__file__).resolve().parent.parent.parent
sys.path.insert(0, str(ROOT / "scripts/lib"))

from explanations import Explanations


def gone(explained):
    """(file, line) of every entry whose line its file has no more."""
    lines = {file: {line.strip() for line in (ROOT / file).read_text().splitlines()}
             for file, _, _ in explained.reasons}  # fmt: skip
    return sorted({(file, line) for file, line, _ in explained.reasons if line not in lines[file]})


class ListedPlaces(unittest.TestCase):
    def test_gaps_of_the_coverage_quote_lines_that_exist(self):
        self.assertEqual(gone(Explanations(ROOT / "scripts/lib/coverage_gaps")), [])

    def test_survivors_quote_lines_that_exist(self):
        self.assertEqual(gone(Explanations(ROOT / "scripts/lib/mutants/survivors")), [])

    def test_a_line_that_is_gone_is_told(self):
        explained = Explanations(ROOT / "scripts/lib/coverage_gaps")
        file, _, what = next(iter(explained.reasons))
        explained.reasons = {(file, "no such line;", what): "a reason"}
        self.assertEqual(gone(explained), [(file, "no such line;")])


class PlantedMistakes(unittest.TestCase):
    def test_each_applies_where_it_was_made_for(self):
        patches = sorted((ROOT / "tests/model/defects").glob("*.patch"))
        self.assertGreaterEqual(len(patches), 30)
        for patch in patches:
            with self.subTest(patch.stem):
                text = patch.read_text()
                file = next(line[6:] for line in text.splitlines() if line.startswith("--- a/"))
                told = subprocess.run(
                    ["patch", "--fuzz=0", "--dry-run", "--output=/dev/null", str(ROOT / file)],
                    input=text, text=True, capture_output=True)  # fmt: skip
                self.assertEqual(told.returncode, 0, told.stdout + told.stderr)


if __name__ == "__main__":
    unittest.main()
