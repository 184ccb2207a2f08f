"""What stages came to, in words and as a table."""

import json

_SUMS = ("kills", "faults", "checks", "rows", "events", "reports", "spooled", "unfinished")


def line(record):
    told = [f"{record[name]} {name}" for name in _SUMS if name in record]
    if "what" in record:
        told.insert(0, record["what"])
    if "rate" in record:
        told += [f"{record['rate']} a second", f"{record['processorSeconds']} s of processor time",
                 f"at most {record['peakKib']} KiB", f"{record['recovered']} recovered",
                 f"{record['withoutEvent']} without event"]  # fmt: skip
    told.append(f"{record['seconds']} s")
    told += [f"PROBLEM: {problem}" for problem in record["problems"]]
    return ", ".join(told)


def _row(stage, records):
    seconds = sum(record["seconds"] for record in records)
    sums = [str(sum(record[name] for record in records if name in record))
            if any(name in record for record in records) else "" for name in _SUMS]  # fmt: skip
    problems = sum(len(record["problems"]) for record in records)
    state = "ok" if len(records) == stage.count else f"{len(records)} of {stage.count} rounds"
    return [stage.name, *sums, f"{seconds / 60:.1f}", f"{problems} PROBLEMS" if problems else state]


def table(folder, chosen):
    rows = [["STAGE", *(name.upper() for name in _SUMS), "MINUTES", "RESULT"]]
    figures = []
    for stage in chosen:
        file = folder / f"{stage.name}.jsonl"
        records = (
            [json.loads(each) for each in file.read_text().splitlines()] if file.exists() else []
        )
        rows.append(_row(stage, records))
        figures += _figures(stage, records)
    return "".join(_aligned(each) for each in (rows, *figures))


def _figures(stage, records):
    """Tables of what rounds measured: one for each set of columns."""
    tables = {}
    for record in records:
        columns = tuple(record.get("figures", ()))
        if columns:
            rows = tables.setdefault(columns, [[stage.name.upper(), *columns, ""]])
            rows.append([record["what"], *(str(each) for each in record["figures"].values()), ""])
    return tables.values()


def _aligned(rows):
    widths = [max(len(row[column]) for row in rows) for column in range(len(rows[0]))]
    lines = []
    for row in rows:
        cells = [row[0].ljust(widths[0])]
        cells += [cell.rjust(width) for cell, width in zip(row[1:-1], widths[1:-1])]
        lines.append("  ".join([*cells, row[-1]]))
    return "\n" + "\n".join(line.rstrip() for line in lines) + "\n"
