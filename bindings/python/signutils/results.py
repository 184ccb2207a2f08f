"""What calls give: plain records whose texts are Python's own."""

from __future__ import annotations

import enum
from dataclasses import dataclass


class Verdict(enum.IntEnum):
    """What the rules engine says. REFUSED stands also for a check that could not be run."""

    NO_RULE = 0
    ACCEPTED = 1
    REFUSED = 2


class Decision(enum.Enum):
    """What a host may conclude from a check."""

    ACCEPTED = "accepted"
    REFUSED = "refused"
    NO_RULE = "no rule"
    """No rule of the contract concerns the signers."""
    AMOUNTS_UNKNOWN = "amounts unknown"
    """Accepted on amounts that nobody knows, which is no acceptance."""
    INCOMPLETE = "incomplete"
    """Not all rules or holders could be read: check again."""
    NOT_RUN = "not run"
    """The rules were not judged: repair the cause and check again."""


class JournalState(enum.IntEnum):
    """What became of the audit event of a check."""

    NOT_DUE = 0
    WRITTEN = 1
    SPOOLED = 2
    LOST = 3


class ReportState(enum.IntEnum):
    """What became of the status report of a check."""

    NOT_DUE = 0
    HANDED_ON = 1
    NOT_HANDED_ON = 2


class EventLevel(enum.IntEnum):
    """The level of an audit event."""

    INFORMATION = 0
    ERROR = 1
    REFUSAL = 2


class Apartment(enum.IntEnum):
    """The kinds of COM apartment: threads without a message loop are MULTITHREADED."""

    MULTITHREADED = 0
    SINGLE_THREADED = 1


@dataclass(frozen=True)
class Check:
    """The last check of a session. Amounts are in the currency's main unit."""

    ran: bool
    rules_complete: bool
    lookups_complete: bool
    amounts_known: bool
    verdict: Verdict
    total_amount: float
    max_order_amount: float
    order_count: int
    rows_due: int
    rows_written: int
    journal: JournalState
    report: ReportState
    report_file_id: int
    problem: str
    amounts_problem: str
    currency: str
    reason_code: str
    reason_text: str
    report_problem: str

    @property
    def decision(self) -> Decision:
        """The verdict together with what it rests on. Only Decision.ACCEPTED lets an order pass."""
        if not self.ran:
            return Decision.NOT_RUN
        if not (self.rules_complete and self.lookups_complete):
            return Decision.INCOMPLETE
        if self.verdict == Verdict.NO_RULE:
            return Decision.NO_RULE
        if self.verdict != Verdict.ACCEPTED:
            return Decision.REFUSED
        return Decision.ACCEPTED if self.amounts_known else Decision.AMOUNTS_UNKNOWN

    @property
    def accepted(self) -> bool:
        """Whether the order may pass."""
        return self.decision is Decision.ACCEPTED


@dataclass(frozen=True)
class RulesVerdict:
    """What the rules alone gave on given amounts."""

    verdict: Verdict
    reason_code: str
    reason_text: str


@dataclass(frozen=True)
class HolderNames:
    """Who holds a certificate."""

    first_name: str
    last_name: str


@dataclass(frozen=True)
class Holder:
    """What a look-up by holder identifier gave; the texts are those of the last row read."""

    found: bool
    not_opposition: bool
    certificate: str
    first_name: str
    last_name: str


@dataclass(frozen=True)
class Signer:
    """An entry of a list of signers; its names are empty until a look-up matched it."""

    certificate: str
    first_name: str
    last_name: str


@dataclass(frozen=True)
class Amounts:
    """The amounts of an order file, in the currency's main unit."""

    total_amount: float
    max_order_amount: float
    order_count: int
    currency: str
    errors: str
    """Errors that the conversion found in the file; empty: none."""
