"""The single operations of a session, by a host in Python."""

from __future__ import annotations

import gc
import unittest

import signutils
from signutils import EventLevel, OperationFailed, ReportNotHandedOn, Signer, Signers

from bank import LIBRARY, BankTest


class Operations(BankTest):
    def checked_session(self) -> signutils.Session:
        session = self.session()
        session.check_sign_rules("order.xml", ["Ana Ruiz"])
        return session

    def test_library_tells_its_version(self) -> None:
        self.assertRegex(LIBRARY.version, r"^\d+\.\d+\.\d+$")

    def test_measures_count_the_checks_of_the_process(self) -> None:
        LIBRARY.start_measures()
        self.checked_session()
        path = self.folder / "host.prom"
        LIBRARY.write_measures(path)
        text = path.read_text(encoding="utf-8")
        self.assertRegex(text, r'signutils_checks_total\{source="host",verdict="success",.*\} \d+')

    def test_measures_that_cannot_be_written_say_why(self) -> None:
        LIBRARY.start_measures()
        with self.assertRaisesRegex(OperationFailed, "cannot be written to .*: path not found"):
            LIBRARY.write_measures(self.folder / "nowhere" / "host.prom")

    def test_names_of_a_certificate_are_found(self) -> None:
        session = self.checked_session()
        names = session.get_signer_names("ana ruiz")
        assert names is not None
        self.assertEqual((names.first_name, names.last_name), ("Ana", "Ruiz"))
        self.assertIsNone(session.get_signer_names("Nobody"))

    def test_holder_completes_the_signers(self) -> None:
        session = self.checked_session()
        signers = Signers(LIBRARY, ["Łukasz Nowak", "ANA RUIZ"])
        holder = session.get_signer_infos("H1", signers)
        self.assertTrue(holder.found)
        self.assertTrue(holder.not_opposition)
        self.assertEqual(holder.certificate, "Ana Ruiz")
        self.assertEqual(
            list(signers), [Signer("Łukasz Nowak", "", ""), Signer("ANA RUIZ", "Ana", "Ruiz")]
        )
        self.assertFalse(session.get_signer_infos("H1", signers).found)
        with self.assertRaises(IndexError):
            signers[2]

    def test_amounts_are_worked_out_from_the_file(self) -> None:
        session = self.session()
        session.set_format_info("ISO20022", "pain.001")
        order = self.order()
        with LIBRARY.com():
            amounts = session.get_max_amount_file(order)
        self.assertEqual((amounts.total_amount, amounts.max_order_amount), (350.50, 250.50))
        self.assertEqual((amounts.order_count, amounts.currency), (2, "EUR"))
        self.assertEqual(amounts.errors, "")
        self.assertEqual(list(self.folder.glob("order.xml.*")), [])

    def test_conversion_that_fails_says_why(self) -> None:
        session = self.session()
        session.set_format_info("ISO20022", "pain.001")
        with LIBRARY.com(), self.assertRaisesRegex(OperationFailed, "line 2"):
            session.exec_work_fmt(self.order("<Document>\n</Wrong>"))

    def test_report_is_written_and_handed_on(self) -> None:
        session = self.session()
        report = session.generate_psr(
            initiating_party="BANKFRPP",
            orgnl_msg_id="ÉTÉ",
            orgnl_msg_nm_id="pain.001.001.03",
            msg_id="MSG-1",
            reason_code="AM02",
            reason_info="Refusé",
            nb_of_txs=3,
            ctrl_sum=12.5,
        )
        self.assertIn("<OrgnlMsgId>ÉTÉ</OrgnlMsgId>", report)
        self.assertIn("<OrgnlCtrlSum>12.50</OrgnlCtrlSum>", report)
        store = self.folder / "störe"
        number = session.add_payment_status_report(
            report, service="STATUS", partner="PARTNER1", target=store
        )
        self.assertEqual(number, 1)
        filed = store / "STATUS" / "PARTNER1" / "1.psr"
        self.assertEqual(filed.read_text(encoding="utf-8"), report)

    def test_report_that_is_not_handed_on_says_why(self) -> None:
        with self.assertRaisesRegex(ReportNotHandedOn, r"not handed on: .*\.\.") as raised:
            self.session().add_payment_status_report("<a/>", service="..", partner="PARTNER1")
        self.assertEqual(raised.exception.error_code, 2)

    def test_events_carry_level_reference_and_message(self) -> None:
        session = self.session()
        session.set_ref_request("request é")
        session.set_id_file_vfs(42)
        session.log_event(EventLevel.ERROR, "Łódź")
        ((level, reference, text),) = self.query("SELECT LEVEL, REFERENCE, TEXT FROM EVT_JOURNAL")
        self.assertEqual((level, reference), (1, "request é"))
        self.assertIn("IdFichier=42\r\n", text)
        self.assertTrue(text.endswith("\r\n\r\nŁódź"))

    def test_protocols_are_listed_and_renamed(self) -> None:
        session = self.session()
        LIBRARY.register_protocol(4711, "Protocôle")
        self.addCleanup(LIBRARY.register_protocol, 4711, "")
        self.assertEqual(session.get_protocol_name(4711), "Protocôle")
        protocols = list(session.protocols())
        self.assertEqual(protocols[-1], (4711, "Protocôle"))
        self.assertEqual(protocols, sorted(protocols))
        LIBRARY.register_protocol(4711, "")
        self.assertEqual(session.get_protocol_name(4711), "")


class Lives(BankTest):
    def test_copy_outlives_its_origin(self) -> None:
        origin = self.session()
        origin.check_sign_rules("order.xml", ["Ana Ruiz"])
        with origin.copy() as copy:
            origin.close()
            self.assertTrue(copy.get_last_check().accepted)
            self.assertIsNotNone(copy.get_signer_names("Ana Ruiz"))

    def test_assigned_session_takes_over_the_settings(self) -> None:
        source = self.session()
        source.set_ref_request("of the source")
        with signutils.Session(LIBRARY) as target:
            target.assign(source)
            target.assign(target)
            source.close()
            target.log_event(EventLevel.INFORMATION, "message")
        self.assertEqual(self.query("SELECT REFERENCE FROM EVT_JOURNAL"), [("of the source",)])

    def test_closed_session_is_refused_and_may_be_closed_again(self) -> None:
        session = self.session()
        session.close()
        session.close()
        self.assertTrue(session.closed)
        with self.assertRaisesRegex(ValueError, "closed"):
            session.set_mode_veu()
        with self.assertRaisesRegex(ValueError, "closed"):
            self.session().assign(session)

    def test_trace_holds_the_check_and_waits_for_its_sessions(self) -> None:
        path = self.folder / "trâce.txt"
        with signutils.Trace(LIBRARY, path) as trace:
            session = self.session(trace)
            session.check_sign_rules("order.xml", ["Ana Ruiz"])
            with self.assertRaisesRegex(ValueError, "Close the session first"):
                trace.close()
            session.close()
        self.assertIn("CHECK SIGNATURES RULES", path.read_text(encoding="utf-8"))
        with self.assertRaisesRegex(ValueError, "closed"):
            self.session(trace)

    def test_session_that_is_forgotten_gives_its_trace_free(self) -> None:
        with signutils.Trace(LIBRARY, self.folder / "trace.txt") as trace:
            session = signutils.Session(LIBRARY, trace)
            del session
            gc.collect()
            trace.close()
        self.assertTrue(trace.closed)

    def test_trace_of_an_assigned_session_is_held_too(self) -> None:
        with signutils.Trace(LIBRARY, self.folder / "trace.txt") as trace:
            source = self.session(trace)
            target = self.session()
            target.assign(source)
            source.close()
            with self.assertRaises(ValueError):
                trace.close()
            target.close()

    def test_trace_that_cannot_be_opened_says_why(self) -> None:
        with self.assertRaisesRegex(OperationFailed, "path not found"):
            signutils.Trace(LIBRARY, self.folder / "nowhere" / "trace.txt")

    def test_com_is_left_as_the_host_has_it(self) -> None:
        single = signutils.Apartment.SINGLE_THREADED
        with LIBRARY.com(single), LIBRARY.com(), LIBRARY.com(single):
            pass
        with LIBRARY.com(), LIBRARY.com():
            pass


if __name__ == "__main__":
    unittest.main()
