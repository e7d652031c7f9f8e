#!/usr/bin/python3
"""What hosts are told before the first dialog, in C++ and in Python: the same."""

import contextlib
import os
import signal
import socket
import subprocess
import sys
import tempfile
import threading
import unittest


ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", ".."))
sys.path.insert(0, os.path.join(ROOT, "python"))

import zeldlg  # noqa: E402

DEMO = os.environ["ZELDLG_DEMO"]
LIBRARY = os.environ["ZELDLG_LIBRARY"]
GOOD = {"display": "good", "fonts": "good", "settings": "good"}


class Probing(unittest.TestCase):
    def setUp(self):
        scratch = tempfile.TemporaryDirectory()
        self.addCleanup(scratch.cleanup)
        self.folder = scratch.name

    def probe(self, **changes):
        """What the demonstration says, once Python's function has said the same."""
        environment = {**os.environ, "HOME": self.folder, **changes}
        environment = {name: value for name, value in environment.items() if value}
        done = subprocess.run([DEMO, "--library", LIBRARY, "probe"], stdout=subprocess.PIPE,
                              text=True, env=environment)
        said = dict(line.split(": ", 1) for line in done.stdout.splitlines())
        source = ("import zeldlg\nfound = zeldlg.probe()\nfor name, value in vars(found).items():\n"
                  "    print(f'{name}: {value or \"good\"}')\nraise SystemExit(not found)")
        python = subprocess.run([sys.executable, "-c", source], stdout=subprocess.PIPE, text=True,
                                env={**environment, "PYTHONPATH": os.path.join(ROOT, "python")})
        self.assertEqual(said, dict(line.split(": ", 1) for line in python.stdout.splitlines()))
        self.assertEqual(done.returncode, python.returncode)
        self.assertEqual(int(said["display"] != "good" or said["fonts"] != "good"),
                         done.returncode)
        self.assertEqual([], os.listdir(self.folder))
        return said

    def test_on_a_screen_all_is_good(self):
        self.assertEqual(GOOD, self.probe())

    def test_a_display_that_is_not_there_is_told(self):
        self.assertEqual("DISPLAY is not set", self.probe(DISPLAY="")["display"])
        self.assertEqual(":4711: Connection refused", self.probe(DISPLAY=":4711")["display"])
        self.assertEqual("GDK_BACKEND leaves neither wayland nor x11",
                         self.probe(GDK_BACKEND="broadway")["display"])

    def test_a_display_that_does_not_answer_is_told_in_time(self):
        with self.server("wayland-0", answer=None):
            said = self.probe(DISPLAY="", WAYLAND_DISPLAY="wayland-0",
                              XDG_RUNTIME_DIR=self.sockets)
        self.assertIn("Connection timed out", said["display"])

    def test_wayland_comes_first_and_x_may_take_its_place(self):
        with self.server("wayland-0", answer=b"\2\0\0\0\0\0\x0c\0\0\0\0\0"):
            there = {"WAYLAND_DISPLAY": "wayland-0", "XDG_RUNTIME_DIR": self.sockets}
            self.assertEqual(GOOD, self.probe(DISPLAY="", **there))
            self.assertEqual("DISPLAY is not set",
                             self.probe(DISPLAY="", GDK_BACKEND="x11", **there)["display"])
        gone = {"WAYLAND_DISPLAY": "wayland-1", "XDG_RUNTIME_DIR": self.sockets}
        self.assertEqual(GOOD, self.probe(**gone))
        self.assertIn("wayland-1: No such file or directory; DISPLAY is not set",
                      self.probe(DISPLAY="", **gone)["display"])

    def test_a_display_that_asks_for_a_cookie_gets_it(self):
        with tempfile.TemporaryDirectory() as folder:
            cookies = os.path.join(folder, "cookies")
            cookie = "0123456789abcdef0123456789abcdef"
            with open(cookies, "wb"):
                pass
            with self.x_server("-auth", cookies, cookies=cookies, cookie=cookie) as display:
                self.assertEqual(GOOD, self.probe(DISPLAY=display, XAUTHORITY=cookies))
                self.assertEqual(f"{display}: this user may not use it", self.probe(
                    DISPLAY=display, XAUTHORITY=os.path.join(folder, "none"))["display"])

    def test_a_system_without_fonts_is_told(self):
        with tempfile.TemporaryDirectory() as folder:
            configuration = os.path.join(folder, "fonts.conf")
            with open(configuration, "w") as file:
                file.write(f"<fontconfig><dir>{folder}</dir><cachedir>{folder}</cachedir>"
                           "</fontconfig>")
            self.assertEqual("there are no fonts",
                             self.probe(FONTCONFIG_FILE=configuration)["fonts"])

    def test_settings_without_a_place_are_told_and_keep_nothing_from_being_shown(self):
        self.assertEqual("neither ZEL_HOME nor HOME is set",
                         self.probe(HOME="", ZEL_HOME="")["settings"])
        said = self.probe(ZEL_HOME="/proc/none")
        self.assertTrue(said["settings"].startswith("/proc/none: "), said)
        self.assertEqual("good", said["display"])
        self.assertEqual("good", self.probe(ZEL_HOME=self.folder)["settings"])

    # ---- servers

    @contextlib.contextmanager
    def server(self, name, answer):
        """A socket of that name which answers everything so; with None, not at all."""
        with tempfile.TemporaryDirectory() as self.sockets, \
                socket.socket(socket.AF_UNIX) as listening:
            listening.bind(os.path.join(self.sockets, name))
            listening.listen()
            taken = []

            def serve():
                with contextlib.suppress(OSError):
                    while True:
                        connection, _ = listening.accept()
                        taken.append(connection)
                        if answer is not None and connection.recv(12):
                            connection.sendall(answer)
            thread = threading.Thread(target=serve, daemon=True)
            thread.start()
            yield
            listening.shutdown(socket.SHUT_RDWR)
            thread.join()
            for connection in taken:
                connection.close()

    @contextlib.contextmanager
    def x_server(self, *options, cookies, cookie):
        reading, writing = os.pipe()
        process = subprocess.Popen(["Xvfb", "-displayfd", str(writing), "-nolisten", "tcp",
                                    *options], pass_fds=[writing], stderr=subprocess.DEVNULL)
        os.close(writing)
        try:
            with open(reading) as number:
                display = ":" + number.readline().strip()
            entry = b"".join(len(part).to_bytes(2, "big") + part for part in (
                socket.gethostname().encode(), display[1:].encode(), b"MIT-MAGIC-COOKIE-1",
                bytes.fromhex(cookie)))
            with open(cookies, "wb") as file:
                file.write((256).to_bytes(2, "big") + entry)
            process.send_signal(signal.SIGHUP)  # it looks at its cookies again
            yield display
        finally:
            process.kill()
            process.wait()


if __name__ == "__main__":
    unittest.main()
