"""Whole checks by a host in Python."""

from __future__ import annotations

import threading
import unittest

from signutils import Decision, JournalState, ReportState, Verdict

from bank import LIBRARY, BankTest


class Checks(BankTest):
    def test_accepted_order_is_recorded_and_journalled(self) -> None:
        check = self.session().check_sign_rules("order.xml", ["Ana Ruiz"])
        self.assertIs(check.decision, Decision.ACCEPTED)
        self.assertTrue(check.accepted)
        self.assertEqual(check.verdict, Verdict.ACCEPTED)
        self.assertEqual((check.rows_due, check.rows_written), (1, 1))
        self.assertEqual(check.journal, JournalState.WRITTEN)
        self.assertEqual(check.report, ReportState.NOT_DUE)
        self.assertEqual((check.total_amount, check.currency), (100.00, "EUR"))
        self.assertEqual(self.query("SELECT CNS, STATUT FROM HST_SIGNRULES"), [("Ana Ruiz", "1")])
        self.assertEqual(self.query("SELECT COUNT(*) FROM EVT_JOURNAL"), [(1,)])

    def test_refused_order_is_answered_with_a_report(self) -> None:
        self.execute("UPDATE SSR_HOLDER SET LNAME = 'Œuvré'")
        session = self.session()
        session.set_amount_info(1000.01, 1.00, "EUR")
        session.set_psr_warning("STATUS")
        check = session.check_sign_rules("order.xml", "Ana Ruiz")
        self.assertIs(check.decision, Decision.REFUSED)
        self.assertEqual(check.reason_code, "AM02")
        self.assertIn("Œuvré", check.reason_text)
        self.assertEqual((check.report, check.report_file_id), (ReportState.HANDED_ON, 1))
        self.assertEqual(session.get_extra_info(), "PSR Generated in STATUS=1")
        report = (self.folder / "handoff/STATUS/PARTNER1/1.psr").read_text(encoding="utf-8")
        self.assertIn("Œuvré", report)
        self.assertEqual(session.get_psr_warning(), report)

    def test_signers_nobody_knows_match_no_rule(self) -> None:
        check = self.session().check_sign_rules("order.xml", ["Łukasz Nowak"])
        self.assertIs(check.decision, Decision.NO_RULE)
        self.assertEqual(check.reason_code, "NARR")
        self.assertEqual(self.query("SELECT CNS FROM HST_SIGNRULES"), [("Łukasz Nowak",)])

    def test_check_without_a_database_was_not_run(self) -> None:
        session = self.session()
        session.set_connexion_string("")
        check = session.check_sign_rules("order.xml", ["Ana Ruiz"])
        self.assertIs(check.decision, Decision.NOT_RUN)
        self.assertEqual(check.verdict, Verdict.REFUSED)
        self.assertEqual(check.problem, "DSN not defined")
        self.assertFalse(check.accepted)

    def test_check_whose_holders_cannot_be_read_is_incomplete(self) -> None:
        self.execute("ALTER TABLE SSR_HOLDERID RENAME TO AWAY")
        check = self.session().check_sign_rules("order.xml", ["Ana Ruiz"])
        self.assertFalse(check.lookups_complete)
        self.assertIs(check.decision, Decision.INCOMPLETE)

    def test_amounts_from_the_file_are_weighed(self) -> None:
        for limit, decision in (("350.50", Decision.ACCEPTED), ("350.49", Decision.REFUSED)):
            with self.subTest(limit=limit), LIBRARY.com():
                self.execute(f"UPDATE SSR_CONTRACTRULE SET AMOUNT = '{limit}'")
                session = self.session()
                session.set_format_info("ISO20022", "pain.001")
                check = session.check_sign_rules(self.order(), ["Ana Ruiz"])
                self.assertIs(check.decision, decision)
                self.assertEqual((check.total_amount, check.max_order_amount), (350.50, 250.50))
                self.assertEqual(check.order_count, 2)

    def test_acceptance_on_unknown_amounts_is_none(self) -> None:
        session = self.session()
        session.set_format_info("ISO20022", "pain.001")
        with LIBRARY.com():
            check = session.check_sign_rules(self.order("<Document>\n</Wrong>"), ["Ana Ruiz"])
        self.assertEqual(check.verdict, Verdict.ACCEPTED)
        self.assertIs(check.decision, Decision.AMOUNTS_UNKNOWN)
        self.assertFalse(check.accepted)
        self.assertIn("line 2", check.amounts_problem)

    def test_rules_alone_give_verdict_and_reasons(self) -> None:
        session = self.session()
        answer = session.check_sign_rules_for("order.xml", ["Ana Ruiz"], 1000.01, 1.00)
        self.assertEqual((answer.verdict, answer.reason_code), (Verdict.REFUSED, "AM02"))
        self.assertIn("1000.01", answer.reason_text)
        self.assertTrue(session.get_last_check().ran)

    def test_distributed_signatures_may_still_come(self) -> None:
        self.execute("UPDATE SSR_CONTRACTCUR SET PROFILE = 1")
        for veu, decision in ((False, Decision.REFUSED), (True, Decision.ACCEPTED)):
            with self.subTest(veu=veu):
                session = self.session()
                if veu:
                    session.set_mode_veu()
                check = session.check_sign_rules("order.xml", ["Ana Ruiz"])
                self.assertIs(check.decision, decision)

    def test_threads_judge_side_by_side(self) -> None:
        decisions: dict[float, list[Decision]] = {1.00: [], 1000.01: []}

        def judge(total: float) -> None:
            for _ in range(5):
                session = self.session()
                session.set_amount_info(total, 1.00, "EUR")
                decisions[total].append(
                    session.check_sign_rules("order.xml", ["Ana Ruiz"]).decision
                )

        threads = [threading.Thread(target=judge, args=(total,)) for total in decisions]
        for thread in threads:
            thread.start()
        for thread in threads:
            thread.join()
        self.assertEqual(decisions[1.00], [Decision.ACCEPTED] * 5)
        self.assertEqual(decisions[1000.01], [Decision.REFUSED] * 5)


if __name__ == "__main__":
    unittest.main()
