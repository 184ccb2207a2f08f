"""The stages of scripts/soak by name."""

from . import batch, deaths, foresight, frozen, kills, load, scaling, watch

# What has to be built besides signcheck.
PROGRAMS = ["signutils_soak", "signutils_soak_host", "signutils_boundary_host",
            "signutils_tests_host"]  # fmt: skip


class Stage:
    def __init__(self, name, module, product, amount, told, count=None, network=False):
        """`network`: it makes machines of its own, see confinement.py."""
        self.name = name
        self.network = network
        self.count = count or module.ROUNDS
        self.amount = amount
        self.told = told
        self._module = module
        self._product = product

    def rounds(self, build, folder, amount, done):
        return self._module.rounds(build, folder, self._product, amount, done)


def _load(product, checks):
    return Stage(f"load-{product}", load, product, checks,
                 f"{checks:,} checks in {load.PROCESSES} processes of {load.THREADS} threads")  # fmt: skip


def _kills(product, count):
    return Stage(f"kills-{product}", kills, product, count,
                 f"{count:,} hosts killed at random moments")  # fmt: skip


def _deaths(product):
    faults = deaths.ROUNDS * len(deaths.PLACES)
    return Stage(f"deaths-{product}", deaths, product, faults,
                 f"{faults} deaths of the server between two statements")  # fmt: skip


def _frozen(product):
    count = frozen.count_of(product)
    return Stage(f"frozen-{product}", frozen, product, count,
                 f"which of {count} settings of its driver a frozen server meets", count)  # fmt: skip


def _scaling(checks):
    return Stage("scaling", scaling, "galera", checks,
                 f"a host and a node on each of up to three machines, {checks:,} checks each; one "
                 "machine is cut off", network=True)  # fmt: skip


def _batch(product, orders):
    return Stage(f"batch-{product}", batch, product, orders,
                 f"batch of {orders:,} small orders, left alone and killed over and over")  # fmt: skip


def _watch(product, seconds):
    return Stage(f"watch-{product}", watch, product, seconds,
                 f"a drop folder for {seconds // 60} minutes, orders slowly written among others")  # fmt: skip


ALL = [
    _load("sqlite", 100_000),
    _load("postgresql", 100_000),
    _load("mariadb", 10_000),
    _load("galera", 10_000),
    _kills("sqlite", 2000),
    _kills("postgresql", 2000),
    _deaths("postgresql"),
    _deaths("mariadb"),
    _deaths("galera"),
    _frozen("postgresql"),
    _frozen("mariadb"),
    Stage("foresight", foresight, "sqlite", 10_000,
          "10,000 forecasts, 10,000 refusals explained, 1,000 maps, 1,000 defects planted"),  # fmt: skip
    _scaling(3000),
    _batch("sqlite", 10_000),
    _batch("postgresql", 10_000),
    _watch("sqlite", 900),
]


def find(name):
    return next(stage for stage in ALL if stage.name == name)
