"""One stage of scripts/soak, inside its confinement. Tells a JSON record a round on standard output."""

import json
import os
import shutil
import sys
import tempfile
from pathlib import Path


def main(name, build, amount, done):
    from . import stages

    if os.geteuid() == 0:
        raise SystemExit("a stage never runs as root")
    folder = Path(tempfile.mkdtemp(prefix="signutils-soak."))
    try:
        for record in stages.find(name).rounds(build, folder, amount, done):
            print(json.dumps(record), flush=True)
            if record["problems"]:
                return 1
        return 0
    finally:
        shutil.rmtree(folder, ignore_errors=True)


if __name__ == "__main__":
    sys.path.insert(0, str(Path(__file__).resolve().parents[1]))
    from soaking import stage_main

    sys.exit(stage_main.main(sys.argv[1], sys.argv[2], int(sys.argv[3]), int(sys.argv[4])))
