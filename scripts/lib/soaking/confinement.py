"""Runs a command where a stray signal reaches nothing else: as an ordinary user, in a process
namespace of its own, which ends with the command."""

import os
import pwd


def confined(command, user="nobody", network=False):
    """The command line. Whatever it starts ends with the process that runs it, however that ends.
    `network`: in a network namespace too, which it may divide into machines (machines.py)."""
    prefix = ["setpriv", "--pdeathsig", "KILL"]
    if os.geteuid() == 0:
        account = pwd.getpwnam(user)
        prefix += [f"--reuid={account.pw_uid}", f"--regid={account.pw_gid}", "--clear-groups"]
    own_network = ["--net", "--keep-caps"] if network else []
    return [*prefix, "--", "unshare", "--user", "--map-current-user", *own_network, "--pid",
            "--fork", "--kill-child", "--mount-proc", *command]  # fmt: skip
