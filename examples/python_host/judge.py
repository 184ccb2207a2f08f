"""A host in Python that judges one order file, its amounts worked out from the file.

    judge.py <connection string> <order file> <signer>...

The package `signutils` must be found (PYTHONPATH), and the library: SIGNUTILS_LIBRARY names its
file, or the system finds libsignutils.so.0.
"""

import sys

import signutils
from signutils import Decision

EXIT_STATUSES = {
    Decision.ACCEPTED: 0,
    Decision.REFUSED: 1,
    Decision.NO_RULE: 2,
    Decision.NOT_RUN: 3,
    Decision.INCOMPLETE: 3,
    Decision.AMOUNTS_UNKNOWN: 4,
}


def judge(connexion_string: str, order: str, signers: list[str]) -> signutils.Check:
    library = signutils.Library()
    with library.com(), signutils.Session(library) as session:
        session.set_connexion_string(connexion_string)
        session.set_contract_info(
            contract_type=1, protocol=9, partner="PARTNER1", service="SERVICE1", client="CLIENT1"
        )
        session.set_message_info(
            initiating_party="BANKFRPP",
            orgnl_msg_id="ORDER0001",
            orgnl_msg_nm_id="pain.001.001.03",
            msg_id="STATUS-0001",
        )
        session.set_format_info("ISO20022", "pain.001")
        return session.check_sign_rules(order, signers)


def main(arguments: list[str]) -> int:
    if len(arguments) < 3:
        print("usage: judge.py <connection string> <order file> <signer>...", file=sys.stderr)
        return 64
    try:
        check = judge(arguments[0], arguments[1], arguments[2:])
    except (signutils.SignUtilsError, signutils.LoadError) as error:
        print(f"not judged: {error}", file=sys.stderr)
        return 3
    why = check.problem or check.amounts_problem or check.reason_text
    print(f"{arguments[1]}: {check.decision.value}, {check.total_amount:.2f} {check.currency}")
    if why:
        print(why, file=sys.stderr)
    return EXIT_STATUSES[check.decision]


if __name__ == "__main__":
    sys.exit(main(sys.argv[1:]))
