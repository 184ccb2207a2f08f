"""Load: many sessions in many threads and processes on one database, and the books after it."""

import time

from . import hosts
from .books import Books
from .rounds import on_server

PROCESSES = 4
THREADS = 4
ROUNDS = 4

# The first quarter of a run fills caches, pools and heaps.
_WARM = 0.25
_GROWTH_KIB = 4096


def rounds(build, folder, product, checks, done):
    program = hosts.program(build, "signutils_soak_host")
    return on_server(build, folder, product, range(done, ROUNDS),
                     lambda server, place, number: _round(program, server, place, checks // ROUNDS,
                                                          f"r{number}"))  # fmt: skip


def _round(program, server, place, checks, name):
    each = -(-checks // (PROCESSES * THREADS))
    started = time.monotonic()
    running = [hosts.Host(program, place, server.connexion_of(index), f"{name}p{index}", THREADS, each)
               for index in range(PROCESSES)]  # fmt: skip
    ended = [host.end() for host in running]
    seconds = time.monotonic() - started
    told = [host.told() for host in running]
    return judge(server, place, told, ended, seconds, each * PROCESSES * THREADS)


def judge(server, place, told, ended, seconds, due):
    books = Books(server, place)
    made = [check for lines in told for check in hosts.checks_of(lines)]
    for status, errors in ended:
        if status != 0 or errors:
            books.problem(f"a host ended with {status}: {errors[:500]}")
    if len(made) != due:
        books.problem(f"{len(made)} checks were told instead of {due}")
    books.expect_acknowledged(made)
    books.expect_no_others(made)
    books.expect_rising(made)
    growth = max(_growth(books, lines) for lines in told)
    left = sorted(file.name for file in place.temporary.iterdir())
    if left:
        books.problem(f"{len(left)} temporary files stayed: {left[:3]}")
    return {"checks": len(made), "seconds": round(seconds, 1), **books.totals(),
            "growthKib": growth, "problems": books.problems[:20]}  # fmt: skip


def _growth(books, lines):
    """KiB that a host grew by after it was warm."""
    footprints = hosts.footprints_of(lines)
    if not footprints:
        return 0  # a trial with so few checks that nothing gets warm
    warm = [each for each in footprints if each["footprint"] >= _WARM * footprints[-1]["footprint"]]
    growth = warm[-1]["residentKib"] - warm[0]["residentKib"]
    if growth > _GROWTH_KIB:
        books.problem(f"a host grew by {growth} KiB: {[each['residentKib'] for each in warm]}")
    handles = [each["openFiles"] for each in warm]
    # Connections come and go between the pool and the threads at work.
    if max(handles[len(handles) // 2 :]) > max(handles[: len(handles) // 2]) + THREADS:
        books.problem(f"open files grew: {handles}")
    return growth
