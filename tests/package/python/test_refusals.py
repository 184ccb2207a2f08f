"""What a host in Python is refused, and in which words."""

from __future__ import annotations

import os
import unittest
from collections.abc import Callable
from unittest import mock

import signutils
from signutils import ArgumentRefused, LoadError, Status

from bank import LIBRARY, BankTest


class Refusals(BankTest):
    def assert_refused(self, status: Status, text: str, call: Callable[[], object]) -> None:
        with self.assertRaises(ArgumentRefused) as raised:
            call()
        self.assertEqual(str(raised.exception), text)
        self.assertEqual(raised.exception.status, status)

    def test_text_that_does_not_fit_names_field_limit_and_remedy(self) -> None:
        self.assert_refused(
            Status.TEXT_TOO_LONG,
            "psrService: has 9 characters, but at most 8 fit. Give the short name that the "
            "contract tables hold.",
            lambda: self.session().set_psr_warning("STATUS_89"),
        )

    def test_character_without_a_place_is_named_with_its_position(self) -> None:
        self.assert_refused(
            Status.NOT_WINDOWS_1252,
            "refRequest: character 3 (U+0141) has no place in Windows-1252. Replace it.",
            lambda: self.session().set_ref_request("ab\u0141"),
        )

    def test_nul_is_refused_and_ends_no_text(self) -> None:
        self.assert_refused(
            Status.BAD_ARGUMENT,
            "signers: character 9 is a NUL, which would end the text. Remove it.",
            lambda: self.session().check_sign_rules("order.xml", "Ana Ruiz\0;Nobody"),
        )
        self.assertEqual(self.query("SELECT COUNT(*) FROM HST_SIGNRULES"), [(0,)])

    def test_half_a_surrogate_pair_is_refused(self) -> None:
        self.assert_refused(
            Status.NOT_UTF8,
            "ref_request: character 2 is half a surrogate pair. Give whole characters.",
            lambda: self.session().set_ref_request("a\ud800"),
        )

    def test_separator_inside_a_name_of_a_list_is_refused(self) -> None:
        self.assert_refused(
            Status.BAD_ARGUMENT,
            "signers: 'Ana;Ruiz' holds ';', which separates certificate names.",
            lambda: self.session().check_sign_rules("order.xml", ["Ana;Ruiz"]),
        )

    def test_numbers_that_would_be_cut_are_refused(self) -> None:
        session = self.session()
        for number in (-1, 2**32):
            self.assert_refused(
                Status.BAD_ARGUMENT,
                f"id_file_vfs: {number} is not between 0 and 4294967295.",
                lambda: session.set_id_file_vfs(number),
            )

    def test_refused_setting_leaves_the_ones_before(self) -> None:
        session = self.session()
        with self.assertRaises(ArgumentRefused):
            session.set_contract_info(
                contract_type=2, protocol=8, partner="P", service="S", client="CLIENT_89"
            )
        self.assertTrue(session.check_sign_rules("order.xml", ["Ana Ruiz"]).accepted)

    def test_refusals_are_value_errors(self) -> None:
        with self.assertRaises(ValueError):
            LIBRARY.register_protocol(4711, "n" * 64)

    def test_library_that_is_not_there_is_named_with_the_remedy(self) -> None:
        missing = self.folder / "libsignutils.so"
        with self.assertRaisesRegex(LoadError, "libsignutils.so.*SIGNUTILS_LIBRARY"):
            signutils.Library(missing)

    def test_library_of_somebody_else_is_refused(self) -> None:
        with self.assertRaisesRegex(LoadError, "SignUtils"):
            signutils.Library("libc.so.6")

    def test_library_has_its_usual_name_on_each_system(self) -> None:
        self.set_environment("SIGNUTILS_LIBRARY", "")
        for platform, name in (("win32", "signutils.dll"), ("linux", "libsignutils.so.0")):
            with mock.patch("sys.platform", platform), mock.patch("ctypes.CDLL") as load:
                signutils.Library()
            load.assert_called_once_with(name)

    def test_library_is_named_by_the_environment(self) -> None:
        self.set_environment("SIGNUTILS_LIBRARY", str(self.folder / "elsewhere.so"))
        with self.assertRaisesRegex(LoadError, "elsewhere.so"):
            signutils.Library()
        os.environ["SIGNUTILS_LIBRARY"] = ""
        self.assertEqual(signutils.Library().version, LIBRARY.version)


if __name__ == "__main__":
    unittest.main()
