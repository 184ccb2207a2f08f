"""The names of docs/metrics.md are those that are written, and the dashboard asks for no other."""

import json
import re
import unittest
from pathlib import Path
from typing import Dict, List, Set, Tuple

DOCS = Path(__file__).resolve().parents[2] / "docs"
PAGE = (DOCS / "metrics.md").read_text(encoding="utf-8")
DASHBOARD = json.loads((DOCS / "dashboard.json").read_text(encoding="utf-8"))

ROW = re.compile(r"^\| `(signutils_[a-z_]+)` \| (counter|gauge|histogram) \|([^|]*)\|", re.M)
# What signcheck wrote, as the test of the page has compared it.
WRITTEN = re.compile(r"^# TYPE (\S+) (\S+)$", re.M)
NAME = re.compile(r"\bsignutils_[a-z_]+")
SELECTOR = re.compile(r"(signutils_[a-z_]+)\{([^}]*)\}")
GROUPING = re.compile(r"\bby \(([^)]*)\)")


def documented() -> Dict[str, Tuple[str, Set[str]]]:
    """Type and labels by name."""
    return {name: (kind, set(re.findall(r"`([a-z]+)`", labels))) for name, kind, labels in ROW.findall(PAGE)}  # fmt: skip


def samples() -> Dict[str, Set[str]]:
    """Labels by the names that samples have."""
    names = {}
    for name, (kind, labels) in documented().items():
        endings = ("_bucket", "_sum", "_count") if kind == "histogram" else ("",)
        for ending in endings:
            names[name + ending] = labels | {"source"} | ({"le"} if ending == "_bucket" else set())
    return names


def expressions() -> List[str]:
    """Those of the panels and of the variables, and those of the page."""
    found = [target["expr"] for panel in DASHBOARD["panels"] for target in panel["targets"]]
    found += [each["definition"] for each in DASHBOARD["templating"]["list"] if "definition" in each]
    found += re.findall(r"^\| `([^`]*signutils_[^`]* > 0)` \|", PAGE.replace("\\|", "|"), re.M)
    return found


class Names(unittest.TestCase):
    def test_page_lists_what_is_written(self) -> None:
        written = dict(WRITTEN.findall(PAGE))
        self.assertGreaterEqual(len(written), 9)
        self.assertEqual({name: kind for name, (kind, _) in documented().items()}, written)

    def test_expressions_ask_for_documented_samples(self) -> None:
        self.assertGreaterEqual(len(expressions()), 20)
        for expression in expressions():
            names = NAME.findall(expression)
            self.assertTrue(names, expression)
            for name in names:
                self.assertIn(name, samples(), expression)

    def test_expressions_use_labels_that_there_are(self) -> None:
        for expression in expressions():
            for name, selector in SELECTOR.findall(expression):
                for label in re.findall(r"([a-z]+)\s*(?:=~|!=|=)", selector):
                    self.assertIn(label, samples()[name], expression)
            known = set().union(*(samples()[name] for name in NAME.findall(expression)))
            for label in re.split(r",\s*", ", ".join(GROUPING.findall(expression))):
                # `instance` is the server's own.
                self.assertIn(label, known | {"instance", ""}, expression)


class Dashboard(unittest.TestCase):
    def test_every_documented_name_is_shown(self) -> None:
        shown = {name for expression in expressions() for name in NAME.findall(expression)}
        for name in documented():
            self.assertTrue(any(each.startswith(name) for each in shown), name)

    def test_brackets_of_expressions_are_paired(self) -> None:
        for expression in expressions():
            outside = re.sub(r'"[^"]*"', "", expression)
            for opening, closing in (("(", ")"), ("{", "}"), ("[", "]")):
                self.assertEqual(outside.count(opening), outside.count(closing), expression)

    def test_panels_are_whole_and_lie_beside_each_other(self) -> None:
        taken: Set[Tuple[int, int]] = set()
        numbers = [panel["id"] for panel in DASHBOARD["panels"]]
        self.assertEqual(len(numbers), len(set(numbers)))
        for panel in DASHBOARD["panels"]:
            self.assertTrue(panel["title"])
            self.assertTrue(panel["targets"])
            place = panel["gridPos"]
            self.assertLessEqual(place["x"] + place["w"], 24)
            cells = {(x, y) for x in range(place["x"], place["x"] + place["w"])
                     for y in range(place["y"], place["y"] + place["h"])}  # fmt: skip
            self.assertFalse(cells & taken, panel["title"])
            taken |= cells


if __name__ == "__main__":
    unittest.main()
