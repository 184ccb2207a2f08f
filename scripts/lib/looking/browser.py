"""A headless Chromium, driven over a pair of pipes by its debugging protocol."""

import base64
import json
import os
import pwd
import select
import shutil
import subprocess
import tempfile
import time
from pathlib import Path

_PROGRAM = "chromium"
_SECONDS = 300


class BrowserFailed(Exception):
    pass


class Browser:
    """One page at a time. Never runs as root: a run as root gives it to `user`."""

    def __init__(self, user="nobody"):
        program = shutil.which(_PROGRAM)
        if program is None:
            raise BrowserFailed("Chromium is not installed; run scripts/setup check")
        self._folder = Path(tempfile.mkdtemp(prefix="signutils-looks."))
        self._log = open(self._folder / "log", "wb")
        prefix = []
        if os.geteuid() == 0:
            account = pwd.getpwnam(user)
            os.chown(self._folder, account.pw_uid, account.pw_gid)
            prefix = ["setpriv", f"--reuid={account.pw_uid}", f"--regid={account.pw_gid}",
                      "--clear-groups", "--"]  # fmt: skip
        # The browser reads its descriptor 3 and writes its descriptor 4.
        its_input, self._input = os.pipe()
        self._output, its_output = os.pipe()
        command = ["bash", "-c", f'exec "$@" 3<&{its_input} 4>&{its_output}', "bash", *prefix,
                   program, "--headless", "--remote-debugging-pipe", "--no-first-run",
                   "--disable-gpu", "--disable-dev-shm-usage", "--disable-background-networking",
                   "--hide-scrollbars", f"--user-data-dir={self._folder}/profile"]  # fmt: skip
        self._process = subprocess.Popen(
            command, stdin=subprocess.DEVNULL, stdout=self._log, stderr=self._log, cwd="/",
            pass_fds=(its_input, its_output), start_new_session=True,
            env={"PATH": os.environ["PATH"], "HOME": str(self._folder), "LANG": "C.UTF-8",
                 "TMPDIR": str(self._folder)})  # fmt: skip
        os.close(its_input)
        os.close(its_output)
        self._buffer = b""
        self._number = 0
        self._session = None
        self.requests = []
        self.messages = []
        target = self._ask("Target.createTarget", url="about:blank")["targetId"]
        self._session = self._ask("Target.attachToTarget", targetId=target, flatten=True)[
            "sessionId"
        ]
        for domain in ("Page", "Network", "Runtime", "Log"):
            self._ask(f"{domain}.enable")

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        try:
            self._session = None
            self._ask("Browser.close")
            self._process.wait(timeout=30)
        except (BrowserFailed, OSError, subprocess.TimeoutExpired):
            self._process.kill()
            self._process.wait()
        os.close(self._input)
        os.close(self._output)
        self._log.close()
        shutil.rmtree(self._folder, ignore_errors=True)

    def open(self, file, width, height=800):
        """Loads a page from a file into a window of this width and waits until it is there."""
        # A page that signcheck wrote is for its owner only.
        page = self._folder / "page.html"
        page.write_bytes(Path(file).read_bytes())
        page.chmod(0o644)
        self._ask("Emulation.setDeviceMetricsOverride", width=width, height=height,
                  deviceScaleFactor=1, mobile=width < 600)  # fmt: skip
        self.requests, self.messages = [], []
        self._loaded = False
        answer = self._ask("Page.navigate", url=page.as_uri())
        if answer.get("errorText"):
            raise BrowserFailed(f"{file}: {answer['errorText']}")
        end = time.monotonic() + _SECONDS
        while not self._loaded:
            self._take(end)

    def on_paper(self, is_printed):
        """Lays the page out as for a printer."""
        self._ask("Emulation.setEmulatedMedia", media="print" if is_printed else "")

    def value_of(self, script):
        """What a script comes to inside the page."""
        answer = self._ask("Runtime.evaluate", expression=script, returnByValue=True)
        if "exceptionDetails" in answer:
            raise BrowserFailed(f"script: {answer['exceptionDetails']}")
        return answer["result"].get("value")

    def picture(self, file):
        """The whole page as it would be scrolled through."""
        data = self._ask("Page.captureScreenshot", captureBeyondViewport=True)["data"]
        Path(file).write_bytes(base64.b64decode(data))

    def printed(self, file):
        """The page on A4 sheets, with its colours."""
        data = self._ask("Page.printToPDF", paperWidth=8.27, paperHeight=11.69,
                         printBackground=True)["data"]  # fmt: skip
        Path(file).write_bytes(base64.b64decode(data))

    def _ask(self, method, **parameters):
        self._number += 1
        message = {"id": self._number, "method": method, "params": parameters}
        if self._session is not None:
            message["sessionId"] = self._session
        os.write(self._input, json.dumps(message).encode() + b"\0")
        end = time.monotonic() + _SECONDS
        while True:
            answer = self._take(end)
            if answer.get("id") == self._number:
                if "error" in answer:
                    raise BrowserFailed(f"{method}: {answer['error']}")
                return answer["result"]

    def _take(self, end):
        """The next message; events are noted."""
        while b"\0" not in self._buffer:
            if not select.select([self._output], [], [], max(0, end - time.monotonic()))[0]:
                raise BrowserFailed("Chromium does not answer:\n" + self._told())
            read = os.read(self._output, 1 << 20)
            if not read:
                raise BrowserFailed("Chromium ended:\n" + self._told())
            self._buffer += read
        line, _, self._buffer = self._buffer.partition(b"\0")
        message = json.loads(line)
        self._note(message.get("method"), message.get("params"))
        return message

    def _note(self, event, told):
        if event == "Network.requestWillBeSent":
            self.requests.append(told["request"]["url"])
        elif event == "Page.loadEventFired":
            self._loaded = True
        elif event == "Runtime.exceptionThrown":
            self.messages.append(told["exceptionDetails"]["text"])
        elif event == "Log.entryAdded":
            self.messages.append(told["entry"]["text"])

    def _told(self):
        self._log.flush()
        return (self._folder / "log").read_text(errors="replace")[-3000:]
