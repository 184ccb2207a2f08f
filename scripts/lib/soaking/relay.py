"""A relay before a server that cuts a connection whose server is silent for too long, as the proxies
do that a bank puts before servers whose driver has no time-out of its own."""

import selectors
import socket
import threading
import time


class Relay:
    def __init__(self, target, silence):
        """`silence`: seconds that an answer may take."""
        self._target = target
        self._silence = silence
        self._listener = socket.create_server(("127.0.0.1", 0), backlog=64)
        self.port = self._listener.getsockname()[1]
        threading.Thread(target=self._accept, daemon=True).start()

    def close(self):
        self._listener.close()

    def _accept(self):
        while True:
            try:
                client, _ = self._listener.accept()
            except OSError:
                return
            threading.Thread(target=self._serve, args=(client,), daemon=True).start()

    def _serve(self, client):
        try:
            with client, socket.create_connection(("127.0.0.1", self._target)) as server:
                self._pass_on(client, server)
        except OSError:
            pass  # the end of either side is the end of the other

    def _pass_on(self, client, server):
        other = {client: server, server: client}
        asked = None
        with selectors.DefaultSelector() as waiting:
            for each in other:
                waiting.register(each, selectors.EVENT_READ)
            while asked is None or time.monotonic() < asked + self._silence:
                for key, _ in waiting.select(timeout=0.1):
                    data = key.fileobj.recv(65536)
                    if not data:
                        return
                    other[key.fileobj].sendall(data)
                    asked = time.monotonic() if key.fileobj is client else None
