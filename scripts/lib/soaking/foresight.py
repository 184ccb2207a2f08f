"""Maps, findings, forecasts and remedies of many random contracts, a part of them a round."""

import json
import os
import subprocess
import time
from concurrent.futures import ThreadPoolExecutor

from . import hosts

ROUNDS = 100
# The codes of lint, each planted as often as any other.
_CODES = 10
_POINTS_OF_A_MAP = 100
_FILTER = "RandomMaps.*:*PlantedDefects*:Forecasts.*:Remedies.*"


def rounds(build, folder, _product, amount, done):
    """Of `amount` orders to be forecast and as many refusals to be explained, and a tenth of maps
    and of contracts with a defect."""
    program = hosts.program(build, "signutils_tests_host")
    seed = int(os.environ.get("SIGNUTILS_MAP_SEED", "20261122"))
    at_once = os.cpu_count() or 1
    with ThreadPoolExecutor(at_once) as pool:
        for first in range(done, ROUNDS, at_once):
            yield from pool.map(
                lambda number: _round(program, folder / f"report-{number}.json", amount // ROUNDS,
                                      seed + 1000 * number),
                range(first, min(first + at_once, ROUNDS)))  # fmt: skip


def _round(program, report, orders, seed):
    contracts = max(1, orders // 10)
    settings = {
        "SIGNUTILS_MAP_SEED": seed,
        "SIGNUTILS_MAPS": contracts,
        "SIGNUTILS_MAP_POINTS": _POINTS_OF_A_MAP,
        "SIGNUTILS_LINTS": max(1, contracts // _CODES),
        "SIGNUTILS_FORECASTS": orders,
        "SIGNUTILS_REMEDIES": orders,
    }
    started = time.monotonic()
    done = subprocess.run(
        [program, "--gtest_brief=1", f"--gtest_filter={_FILTER}", f"--gtest_output=json:{report}"],
        capture_output=True, text=True,
        env=dict(os.environ, **{name: str(value) for name, value in settings.items()}))  # fmt: skip
    told = json.loads(report.read_text()) if report.exists() else {"testsuites": []}
    counts = _counts(told)
    problems = [] if done.returncode == 0 else [(done.stdout + done.stderr)[-3000:]]
    if not problems and counts.get("points", 0) < contracts * _POINTS_OF_A_MAP:
        problems = [f"fewer points than asked for: {counts}"]
    return {"what": f"seed {seed}: " + ", ".join(f"{counts[name]} {name}" for name in sorted(counts)),
            "counts": counts, "seconds": round(time.monotonic() - started, 1),
            "problems": problems}  # fmt: skip


def _counts(told):
    """The numbers that the tests have left in their report, added up."""
    known = {"name", "file", "line", "status", "result", "timestamp", "time", "classname",
             "value_param", "type_param", "failures"}  # fmt: skip
    sums = {}
    for suite in told["testsuites"]:
        for test in suite["testsuite"]:
            for name, value in test.items():
                if name not in known:
                    sums[name] = sums.get(name, 0) + int(value)
    return sums
