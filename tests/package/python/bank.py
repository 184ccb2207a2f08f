"""A bank in an embedded database, made and read without the library under test."""

from __future__ import annotations

import os
import sqlite3
import tempfile
import unittest
from pathlib import Path
from typing import Any

import signutils

SOURCES = Path(os.environ["SIGNUTILS_SOURCES"])
LIBRARY = signutils.Library()


class BankTest(unittest.TestCase):
    """The contract of tests/package/bank.sql: Ana Ruiz signs alone, up to 1000.00."""

    def setUp(self) -> None:
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = Path(folder.name)
        self.database = self.folder / "bank.db"
        scripts = sorted((SOURCES / "schema" / "sqlite").glob("[0-9]*.sql"))
        assert scripts
        for script in [*scripts, SOURCES / "tests" / "package" / "bank.sql"]:
            self.execute(script.read_text(encoding="utf-8"))
        for variable in ("SPOOL", "HANDOFF"):
            self.set_environment(f"SIGNUTILS_{variable}", str(self.folder / variable.lower()))

    def set_environment(self, name: str, value: str) -> None:
        before = os.environ.get(name)
        os.environ[name] = value
        if before is None:
            self.addCleanup(os.environ.pop, name)
        else:
            self.addCleanup(os.environ.__setitem__, name, before)

    def execute(self, script: str) -> None:
        connection = sqlite3.connect(self.database)
        try:
            connection.executescript(script)
        finally:
            connection.close()

    def query(self, statement: str) -> list[Any]:
        connection = sqlite3.connect(self.database)
        try:
            return connection.execute(statement).fetchall()
        finally:
            connection.close()

    @property
    def connexion_string(self) -> str:
        return f"Driver=SQLite3;Database={self.database}"

    def session(self, trace: signutils.Trace | None = None) -> signutils.Session:
        """A session on the contract, amounts 100.00 / 100.00 EUR; closed at the test's end."""
        session = signutils.Session(LIBRARY, trace)
        self.addCleanup(session.close)
        session.set_connexion_string(self.connexion_string)
        session.set_contract_info(
            contract_type=1, protocol=9, partner="PARTNER1", service="SERVICE1", client="CLIENT1"
        )
        session.set_message_info(
            initiating_party="BANKFRPP",
            orgnl_msg_id="ORDER0001",
            orgnl_msg_nm_id="pain.001.001.03",
            msg_id="MSG-1",
        )
        session.set_amount_info(100.00, 100.00, "EUR")
        return session

    def order(self, content: str | None = None) -> Path:
        """An order file of two orders, 100.00 and 250.50 EUR, unless its content is given."""
        order = self.folder / "order.xml"
        corpus = SOURCES / "tests" / "engine" / "corpus" / "pain001_v03.xml"
        order.write_text(content or corpus.read_text(encoding="utf-8"), encoding="utf-8")
        return order
