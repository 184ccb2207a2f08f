"""A session: one order file and what its contract's rules say of it."""

from __future__ import annotations

import ctypes
import os
from collections.abc import Iterable, Iterator

from . import _native
from ._arguments import (
    from_native,
    number_to_native,
    path_to_native,
    signers_to_native,
    to_native,
)
from ._handle import SessionHandle
from .errors import OperationFailed, ReportNotHandedOn
from .results import (
    Amounts,
    Check,
    EventLevel,
    Holder,
    HolderNames,
    JournalState,
    ReportState,
    RulesVerdict,
    Verdict,
)
from .signers import Signers


class Session(SessionHandle):
    """One order file. Usable as a context manager; closed by close() or at its end.

    Settings go in any order before the check. Every call raises a subclass of SignUtilsError when
    it does not succeed; one that refuses its arguments has changed nothing. `trace` and `log_file`
    (attached to audit events) are for the constructor.
    """

    # Settings

    def set_contract_info(
        self,
        *,
        contract_type: int,
        protocol: int,
        partner: str,
        service: str,
        client: str,
        server_mode: bool = True,
        hand_off_target: str | os.PathLike[str] = "",
    ) -> None:
        """The contract: partner, service and client in at most 8 characters each."""
        self._set(
            "SignUtilsSetContractInfo",
            number_to_native("contract_type", contract_type, "uint32"),
            number_to_native("protocol", protocol, "uint32"),
            to_native("partner", partner),
            to_native("service", service),
            to_native("client", client),
            int(server_mode),
            path_to_native("hand_off_target", hand_off_target),
        )

    def set_format_info(self, format1: str, format2: str, format3: str = "") -> None:
        """Amounts are worked out from the file, for example of "ISO20022", "pain.001"."""
        self._set(
            "SignUtilsSetFormatInfo",
            to_native("format1", format1),
            to_native("format2", format2),
            to_native("format3", format3),
        )

    def set_amount_info(self, total_amount: float, max_order_amount: float, currency: str) -> None:
        """Amounts are given, in the currency's main unit."""
        self._set(
            "SignUtilsSetAmountInfo",
            total_amount,
            max_order_amount,
            to_native("currency", currency),
        )

    def set_message_info(
        self, *, initiating_party: str, orgnl_msg_id: str, orgnl_msg_nm_id: str, msg_id: str
    ) -> None:
        """The message that the order came in, and the identifier of a report about it."""
        self._set(
            "SignUtilsSetMessageInfo",
            to_native("initiating_party", initiating_party),
            to_native("orgnl_msg_id", orgnl_msg_id),
            to_native("orgnl_msg_nm_id", orgnl_msg_nm_id),
            to_native("msg_id", msg_id),
        )

    def set_psr_warning(self, psr_service: str) -> None:
        """The service of status reports, at most 8 characters; "": no report is made."""
        self._set("SignUtilsSetPSRWarning", to_native("psr_service", psr_service))

    def set_connexion_string(self, connexion_string: str) -> None:
        """ODBC connection string of the rules' database and of the journal."""
        self._set("SignUtilsSetConnexionString", to_native("connexion_string", connexion_string))

    def set_id_file_vfs(self, id_file_vfs: int) -> None:
        """The host's number of the order file."""
        self._set("SignUtilsSetIdFileVfs", number_to_native("id_file_vfs", id_file_vfs, "uint32"))

    def set_mode_veu(self) -> None:
        """Distributed signatures; there is no way back."""
        self._set("SignUtilsSetModeVeu")

    def set_ref_request(self, ref_request: str) -> None:
        """Reference of the host's request, for the journal."""
        self._set("SignUtilsSetRefRequest", to_native("ref_request", ref_request))

    # Checks

    def check_sign_rules(
        self, file_name: str | os.PathLike[str], signers: str | Iterable[str]
    ) -> Check:
        """Judges the order file; `decision` of the result says what it comes to."""
        verdict = ctypes.c_uint32()
        with self._lock:
            self._call(
                "SignUtilsCheckSignRules",
                path_to_native("file_name", file_name),
                signers_to_native(signers),
                ctypes.byref(verdict),
            )
            return self.get_last_check()

    def check_sign_rules_for(
        self,
        file_name: str | os.PathLike[str],
        signers: str | Iterable[str],
        total_amount: float,
        max_order_amount: float,
        currency: str = "",
    ) -> RulesVerdict:
        """The rules alone; get_last_check tells whether they could be judged."""
        verdict = ctypes.c_uint32()
        code = ctypes.c_char_p()
        text = ctypes.c_char_p()
        with self._lock:
            self._call(
                "SignUtilsCheckSignRulesFor",
                signers_to_native(signers),
                path_to_native("file_name", file_name),
                total_amount,
                max_order_amount,
                to_native("currency", currency),
                ctypes.byref(verdict),
                ctypes.byref(code),
                ctypes.byref(text),
            )
            return RulesVerdict(
                Verdict(verdict.value), from_native(code.value), from_native(text.value)
            )

    def get_last_check(self) -> Check:
        """What became of the last check, however it ended."""
        record = _native.CheckRecord(size=ctypes.sizeof(_native.CheckRecord))
        with self._lock:
            self._call("SignUtilsGetLastCheck", ctypes.byref(record))
            return Check(
                ran=bool(record.ran),
                rules_complete=bool(record.rules_complete),
                lookups_complete=bool(record.lookups_complete),
                amounts_known=bool(record.amounts_known),
                verdict=Verdict(record.verdict),
                total_amount=record.total_amount,
                max_order_amount=record.max_order_amount,
                order_count=record.order_count,
                rows_due=record.rows_due,
                rows_written=record.rows_written,
                journal=JournalState(record.journal),
                report=ReportState(record.report),
                report_file_id=record.report_file_id,
                problem=from_native(record.problem),
                amounts_problem=from_native(record.amounts_problem),
                currency=from_native(record.currency),
                reason_code=from_native(record.reason_code),
                reason_text=from_native(record.reason_text),
                report_problem=from_native(record.report_problem),
            )

    def get_extra_info(self) -> str:
        """ "PSR Generated in <service>=<file identifier>" once a check handed a report on."""
        return self._text("SignUtilsGetExtraInfo")

    def get_psr_warning(self) -> str:
        """The status report that a check wrote last; "" before."""
        return self._text("SignUtilsGetPSRWarning")

    # Holders: nothing is found before a check has opened the connection.

    def get_signer_names(self, certificate_name: str) -> HolderNames | None:
        """Who holds a certificate; None when nobody does."""
        found = ctypes.c_int32()
        first = ctypes.c_char_p()
        last = ctypes.c_char_p()
        with self._lock:
            self._call(
                "SignUtilsGetSignerNames",
                to_native("certificate_name", certificate_name),
                ctypes.byref(found),
                ctypes.byref(first),
                ctypes.byref(last),
            )
            if not found.value:
                return None
            return HolderNames(from_native(first.value), from_native(last.value))

    def get_signer_infos(self, holder_id: str, signers: Signers) -> Holder:
        """Whether a holder has a certificate of the signers; completes the entries that match."""
        record = _native.HolderRecord(size=ctypes.sizeof(_native.HolderRecord))
        with self._lock, signers.lock:
            self._call(
                "SignUtilsGetSignerInfos",
                to_native("holder_id", holder_id),
                signers.handle,
                ctypes.byref(record),
            )
            return Holder(
                found=bool(record.found),
                not_opposition=bool(record.not_opposition),
                certificate=from_native(record.certificate),
                first_name=from_native(record.first_name),
                last_name=from_native(record.last_name),
            )

    # Amounts from the order file: inside a `with library.com():`, formats set.

    def exec_work_fmt(self, file_name: str | os.PathLike[str]) -> None:
        """Runs the format conversion, which leaves its work files beside the order file."""
        self._set("SignUtilsExecWorkFmt", path_to_native("file_name", file_name))

    def get_max_amount_file(self, file_name: str | os.PathLike[str]) -> Amounts:
        """Total, largest order and count of the order file."""
        record = _native.AmountsRecord(size=ctypes.sizeof(_native.AmountsRecord))
        with self._lock:
            self._call(
                "SignUtilsGetMaxAmountFile",
                path_to_native("file_name", file_name),
                ctypes.byref(record),
            )
            return Amounts(
                total_amount=record.total_amount,
                max_order_amount=record.max_order_amount,
                order_count=record.order_count,
                currency=from_native(record.currency),
                errors=from_native(record.errors),
            )

    # Reports, events, protocols

    def generate_psr(
        self,
        *,
        initiating_party: str,
        orgnl_msg_id: str,
        orgnl_msg_nm_id: str,
        msg_id: str,
        received: bool = False,
        reason_code: str = "",
        reason_info: str = "",
        nb_of_txs: int = 0,
        ctrl_sum: float = -1.0,
    ) -> str:
        """A pain.002.001.02 document. Texts enter as they stand: escape what XML reserves."""
        return self._text(
            "SignUtilsGeneratePSR",
            to_native("initiating_party", initiating_party),
            to_native("orgnl_msg_id", orgnl_msg_id),
            to_native("orgnl_msg_nm_id", orgnl_msg_nm_id),
            to_native("msg_id", msg_id),
            int(received),
            to_native("reason_code", reason_code),
            to_native("reason_info", reason_info),
            number_to_native("nb_of_txs", nb_of_txs, "int32"),
            ctrl_sum,
        )

    def add_payment_status_report(
        self,
        report: str,
        *,
        service: str,
        partner: str,
        extension: str = "psr",
        target: str | os.PathLike[str] = "",
    ) -> int:
        """Files a report for the partner; gives its file identifier. Raises ReportNotHandedOn."""
        record = _native.HandOffRecord(size=ctypes.sizeof(_native.HandOffRecord))
        arguments = (
            to_native("report", report),
            to_native("extension", extension),
            to_native("service", service),
            to_native("partner", partner),
            path_to_native("target", target),
        )
        with self._lock:
            try:
                self._call("SignUtilsAddPaymentStatusReport", *arguments, ctypes.byref(record))
            except OperationFailed as error:
                raise ReportNotHandedOn(
                    error.status, error.text, record.error_code, record.system_code
                ) from None
        return int(record.file_id)

    def log_event(self, level: EventLevel, message: str) -> None:
        """Journals one audit event."""
        self._set(
            "SignUtilsLogEvent",
            number_to_native("level", level, "uint16"),
            to_native("message", message),
        )

    def get_protocol_name(self, protocol: int) -> str:
        """The long name of a protocol; "" for a number that is not known."""
        return self._text(
            "SignUtilsGetProtocolName", number_to_native("protocol", protocol, "uint32")
        )

    def protocols(self) -> Iterator[tuple[int, str]]:
        """Number and name of the protocols known, in rising order."""
        index = 0
        while True:
            found = ctypes.c_int32()
            number = ctypes.c_uint32()
            name = self._text(
                "SignUtilsGetProtocolAt", index, ctypes.byref(found), ctypes.byref(number)
            )
            if not found.value:
                return
            yield number.value, name
            index += 1
