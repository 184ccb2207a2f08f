"""That the long runs notice what they are there to notice: each test spoils one thing."""

import json
import shutil
import sys
import tempfile
import unittest
from pathlib import Path

sys.dont_write_bytecode = True
sys.path.insert(0, str(Path(__file__).resolve().parents[2] / "scripts/lib"))

from soaking import hosts, servers
from soaking.books import Books

TABLES = (
    "CREATE TABLE HST_SIGNRULES (FILENAME TEXT)",
    "CREATE TABLE EVT_JOURNAL (EVENTKEY TEXT, REFERENCE TEXT)",
)


class BooksNotice(unittest.TestCase):
    def setUp(self):
        self.folder = Path(tempfile.mkdtemp())
        self.addCleanup(shutil.rmtree, self.folder)
        self.place = hosts.Place(self.folder / "place")
        self.server = servers.Sqlite(self.folder / "server")
        for table in TABLES:
            self.server.query(table)
        self.checks = [self.refusal("a", 1, 10, 20), self.refusal("b", 2, 30, 40)]
        for check in self.checks:
            self.put_report(check["reportFileId"])
            self.server.query(f"INSERT INTO HST_SIGNRULES VALUES ('{check['order']}')")
            for event in ("check", "report"):
                self.put_event(check["order"], f"{check['order']} {event}")

    @staticmethod
    def refusal(order, identifier, begun, ended):
        return {"order": order, "verdict": 2, "expected": 2, "problem": "", "rowsDue": 1,
                "rowsWritten": 1, "asked": True, "report": "handed on", "journal": "written",
                "reportFileId": identifier, "begun": begun, "ended": ended}  # fmt: skip

    def put_event(self, order, key):
        self.server.query(f"INSERT INTO EVT_JOURNAL VALUES ('{key}', '{order}')")

    def put_report(self, identifier, text="<Document/>"):
        folder = self.place.store / "STATUS/PARTNER"
        folder.mkdir(parents=True, exist_ok=True)
        (folder / f"{identifier}.psr").write_text(text)

    def spool(self, line, ending="jsonl"):
        self.place.spool.mkdir(exist_ok=True)
        with open(self.place.spool / f"events-1.{ending}", "ab") as file:
            file.write(line)

    def problems(self):
        books = Books(self.server, self.place)
        books.expect_acknowledged(self.checks)
        books.expect_no_others(self.checks)
        books.expect_rising(self.checks)
        return "\n".join(books.problems)

    def test_nothing_in_balanced_books(self):
        self.assertEqual(self.problems(), "")

    def test_nothing_in_an_event_that_waits_instead(self):
        self.server.query("DELETE FROM EVT_JOURNAL WHERE EVENTKEY = 'a check'")
        self.spool(json.dumps({"EVENTKEY": "a check", "REFERENCE": "a"}).encode() + b"\n")
        self.assertEqual(self.problems(), "")

    def test_a_lost_row(self):
        self.server.query("DELETE FROM HST_SIGNRULES WHERE FILENAME = 'a'")
        self.assertIn("a: 1 rows due, 1 told, 0 there", self.problems())

    def test_a_doubled_row(self):
        self.server.query("INSERT INTO HST_SIGNRULES VALUES ('b')")
        self.assertIn("b: 1 rows due, 1 told, 2 there", self.problems())

    def test_a_lost_event(self):
        self.server.query("DELETE FROM EVT_JOURNAL WHERE EVENTKEY = 'a check'")
        self.assertIn("a: 2 events due, 1 in the table", self.problems())

    def test_a_doubled_event(self):
        self.put_event("a", "another key")
        self.assertIn("a: 2 events due, 3 in the table", self.problems())

    def test_an_event_in_the_table_and_in_the_spool_under_two_keys(self):
        self.spool(json.dumps({"EVENTKEY": "other", "REFERENCE": "a"}).encode() + b"\n")
        self.assertIn("a: 2 events due, 2 in the table and 1 in the spool", self.problems())

    def test_a_torn_line(self):
        self.spool(b'{"EVENTKEY": "a ch')
        self.assertIn("torn line", self.problems())

    def test_a_damaged_line_set_aside(self):
        self.spool(b"half\n", ending="damaged")
        self.assertIn("1 damaged lines", self.problems())

    def test_half_a_report(self):
        self.put_report(1, "<Document><Half>")
        self.assertIn("half a report", self.problems())

    def test_a_lost_report(self):
        (self.place.store / "STATUS/PARTNER/2.psr").unlink()
        self.assertIn("b: report 2 is not in the store", self.problems())

    def test_a_report_that_was_not_told(self):
        self.checks[1]["report"] = "not due"
        self.assertIn("b: report not due", self.problems())

    def test_an_identifier_given_twice(self):
        self.checks[1]["reportFileId"] = 1
        self.assertIn("identifier 1 was told 2 times", self.problems())

    def test_an_identifier_that_falls(self):
        self.checks[0]["reportFileId"], self.checks[1]["reportFileId"] = 2, 1
        self.assertIn("identifier 1 was given after 2", self.problems())

    def test_another_verdict(self):
        self.checks[0]["verdict"] = 1
        self.assertIn("a: verdict 1 instead of 2", self.problems())

    def test_a_problem_told_to_the_caller(self):
        self.checks[0]["problem"] = "database is locked"
        self.assertIn("database is locked", self.problems())

    def problems_as_told(self, **told):
        """Of the first check where it told something else."""
        books = Books(self.server, self.place)
        books.expect_as_told({**self.checks[0], "ran": True, **told})
        books.expect_delivered()
        return "\n".join(books.problems)

    def test_nothing_in_a_failure_that_left_what_it_told(self):
        self.assertEqual(self.problems_as_told(), "")

    def test_nothing_in_a_row_that_is_there_although_its_answer_was_lost(self):
        self.assertEqual(self.problems_as_told(rowsWritten=0), "")

    def test_a_row_that_a_failed_check_told_of_and_that_is_missing(self):
        self.assertIn("a: 2 rows due, 2 told, 1 there", self.problems_as_told(rowsDue=2, rowsWritten=2))

    def test_a_row_that_a_failed_check_does_not_owe(self):
        self.assertIn("a: 0 rows due, 0 told, 1 there", self.problems_as_told(rowsDue=0, rowsWritten=0))

    def test_an_event_that_a_failed_check_does_not_owe(self):
        self.assertIn("a: 1 events due, 2 in the table", self.problems_as_told(ran=False))

    def test_a_report_that_a_failed_check_told_of_and_that_is_missing(self):
        self.assertIn("a: report 9 is not in the store", self.problems_as_told(reportFileId=9))

    def test_an_event_that_waits_after_the_next_contact(self):
        self.spool(json.dumps({"EVENTKEY": "other", "REFERENCE": "b"}).encode() + b"\n")
        self.assertIn("1 events still wait", self.problems_as_told())

    def test_an_order_that_nobody_was_told_of(self):
        self.put_event("stranger", "key")
        self.assertIn("1 orders in the books that were not told", self.problems())


if __name__ == "__main__":
    unittest.main()
