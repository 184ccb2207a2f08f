"""SignUtils for Python: judges the signatures of order files against their contracts' rules.

    import signutils

    library = signutils.Library()
    with signutils.Session(library) as session:
        session.set_connexion_string("Driver=SQLite3;Database=/var/lib/bank/bank.db")
        session.set_contract_info(contract_type=1, protocol=9, partner="PARTNER1",
                                  service="SERVICE1", client="CLIENT1")
        session.set_amount_info(950.00, 400.00, "EUR")
        check = session.check_sign_rules("/in/order.xml", ["Ana Ruiz"])
        if check.accepted: ...

Needs Python 3.9 or later, 64-bit, and nothing but its standard library.
"""

from .errors import (
    ArgumentRefused,
    LoadError,
    OperationFailed,
    OutOfMemory,
    ReportNotHandedOn,
    SignUtilsError,
    Status,
)
from .library import Library, Trace
from .results import (
    Amounts,
    Apartment,
    Check,
    Decision,
    EventLevel,
    Holder,
    HolderNames,
    JournalState,
    ReportState,
    RulesVerdict,
    Signer,
    Verdict,
)
from .session import Session
from .signers import Signers

__all__ = [
    "Amounts",
    "Apartment",
    "ArgumentRefused",
    "Check",
    "Decision",
    "EventLevel",
    "Holder",
    "HolderNames",
    "JournalState",
    "Library",
    "LoadError",
    "OperationFailed",
    "OutOfMemory",
    "ReportNotHandedOn",
    "ReportState",
    "RulesVerdict",
    "Session",
    "Signer",
    "Signers",
    "SignUtilsError",
    "Status",
    "Trace",
    "Verdict",
]
