"""Rounds on one server, each with folders of its own and empty books."""

import shutil

from . import hosts, servers


def on_server(build, folder, product, numbers, run):
    """Yields what `run(server, place, number)` comes to for each number."""
    server = servers.make(product, folder / "server")
    server.start()
    try:
        for number in numbers:
            own = folder / f"round{number}"
            place = hosts.Place(own)
            hosts.install(hosts.program(build, "signcheck"), server.connexion, place)
            for table in ("HST_SIGNRULES", "EVT_JOURNAL"):
                server.query(f"DELETE FROM {table}")
            yield run(server, place, number)
            shutil.rmtree(own)
    finally:
        server.stop()
