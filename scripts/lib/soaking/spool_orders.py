"""Small order files for many checks: transfers of contract C-1001 of the sample bank."""

from pathlib import Path

# Whoever signs alone may release so much; every tenth order is above.
LIMIT = 50_000
TERMS = ["--partner", "DUPONTSA", "--service", "CCT", "--client", "TRESOR", "--protocol", "9",
         "--type", "1", "--signers", "Élodie Lefèvre", "--format", "ISO20022/pain.001"]  # fmt: skip

_HEAD = """<?xml version="1.0" encoding="UTF-8"?>
<Document xmlns="urn:iso:std:iso:20022:tech:xsd:pain.001.001.03"><CstmrCdtTrfInitn><GrpHdr>
<MsgId>{name}</MsgId><CreDtTm>2026-03-03T08:00:00</CreDtTm><NbOfTxs>{count}</NbOfTxs>
<CtrlSum>{sum}.00</CtrlSum><InitgPty><Nm>Dupont SA</Nm></InitgPty></GrpHdr><PmtInf>
<PmtInfId>{name}-P</PmtInfId><PmtMtd>TRF</PmtMtd><ReqdExctnDt>2026-03-05</ReqdExctnDt>
<Dbtr><Nm>Dupont SA</Nm></Dbtr><DbtrAcct><Id><IBAN>FR7630006000011234567890189</IBAN></Id></DbtrAcct>
<DbtrAgt><FinInstnId><BIC>QZBKFRPP</BIC></FinInstnId></DbtrAgt>
"""
_ORDER = """<CdtTrfTxInf><PmtId><EndToEndId>{name}-{index}</EndToEndId></PmtId>
<Amt><InstdAmt Ccy="EUR">{amount}.00</InstdAmt></Amt>
<CdtrAgt><FinInstnId><BIC>QZBKDEFF</BIC></FinInstnId></CdtrAgt><Cdtr><Nm>Lieferant {index}</Nm></Cdtr>
<CdtrAcct><Id><IBAN>DE89370400440532013000</IBAN></Id></CdtrAcct></CdtTrfTxInf>
"""
_TAIL = "</PmtInf></CstmrCdtTrfInitn></Document>\n"


def amount_of(number):
    """The total of order `number`: none is like its neighbours, every tenth is above the limit."""
    return (LIMIT if number % 10 == 0 else 0) + 2 * (number % 5000 + 1)


def is_refused(number):
    return amount_of(number) > LIMIT


def name_of(number):
    return f"order-{number:06}.xml"


def text_of(number):
    """An order file of two transfers."""
    name, each = f"ORD{number:06}", amount_of(number) // 2
    orders = "".join(_ORDER.format(name=name, index=index, amount=each) for index in (1, 2))
    return _HEAD.format(name=name, count=2, sum=2 * each) + orders + _TAIL


def write(folder, count):
    folder = Path(folder)
    folder.mkdir(parents=True)
    for number in range(count):
        (folder / name_of(number)).write_text(text_of(number))
