"""A display whose answers are held back until the test lets them through."""

import socket
import threading

from stage import wait_until

FIRST_PORT = 6000  # of display 0


class SlowDisplay:
    """A relay to another display: what a program asks goes on at once, what it is answered waits.

    `name` is what the program has to find in DISPLAY.
    """

    def __init__(self, display):
        self._target = f"/tmp/.X11-unix/X{display.removeprefix(':').split('.')[0]}"
        self._go = threading.Event()
        self._sockets = []
        self._listener, number = self._listen()
        self.name = f"127.0.0.1:{number}"
        threading.Thread(target=self._accept, daemon=True).start()

    @staticmethod
    def _listen():
        for number in range(4900, 5000):
            try:
                return socket.create_server(("127.0.0.1", FIRST_PORT + number)), number
            except OSError:
                continue
        raise AssertionError("no port for a display")

    def wait_connected(self):
        wait_until(lambda: self._sockets, what="a connection to the display")

    def let_through(self):
        self._go.set()

    def close(self):
        self._go.set()
        for each in (self._listener, *self._sockets):
            try:
                each.shutdown(socket.SHUT_RDWR)
            except OSError:
                pass  # the other side has gone already
            each.close()

    def _accept(self):
        while True:
            try:
                program = self._listener.accept()[0]
            except OSError:
                return
            server = socket.socket(socket.AF_UNIX)
            server.connect(self._target)
            self._sockets += [program, server]
            for source, sink, gate in ((program, server, None), (server, program, self._go)):
                threading.Thread(target=self._pump, args=(source, sink, gate), daemon=True).start()

    @staticmethod
    def _pump(source, sink, gate):
        try:
            while data := source.recv(65536):
                if gate is not None:
                    gate.wait()
                sink.sendall(data)
            sink.shutdown(socket.SHUT_WR)
        except OSError:
            pass  # the end of the test
