#!/usr/bin/python3
"""Takes the pictures of docs/pkcs11.md, on the stage that this process runs on: zeldlg-p11 on
tokens of the tests. Started by script/gallery --pkcs11.
"""

import os
import subprocess
import unittest

from gallery.__main__ import BACKGROUND, MARGIN, shrink
from soft_token import PIN, SO_PIN
from test_p11 import CHANGE, ENTER, PAD, SELECT, UNLOCK, HostCase, run

PICTURES = os.path.join(os.path.dirname(__file__), "..", "..", "docs", "pictures", "pkcs11")


class Pictures(HostCase):
    def setUp(self):
        super().setUp()
        os.makedirs(PICTURES, exist_ok=True)
        subprocess.run(["xsetroot", "-solid", BACKGROUND], check=True)
        self.screen.x11.point(0, 0)  # a pointer over a window would show its tool tips

    def take(self, name, process, title, *values):
        window = self.screen.find_window(title, process)
        self.screen.fill(window, values)
        draft = self.path(name + ".png")
        self.screen.photograph(draft, window, MARGIN)
        shrink(draft)
        with open(draft, "rb") as picture, \
                open(os.path.join(PICTURES, name + ".png"), "wb") as kept:
            kept.write(picture.read())
        return window

    def take_one(self, name, title, *words, values=(), **told):
        process = self.host_of_test_token(*words, **told)
        self.take(name, process, title, *values)
        process.kill()

    def test_choose(self):
        self.make_token("Company badge")
        self.take_one("select", SELECT, "login")

    def test_log_in_until_it_locks(self):
        process = self.host_of_test_token("login", TRIES=3)
        self.take("login", process, ENTER, PIN)
        self.screen.key("Escape")
        self.path("tries", b"1")
        process = self.host_of_test_token("login", TRIES=3)
        self.take("final-try", process, ENTER)
        self.answer(process, ENTER, "1111")
        self.take("locked", process, "Token locked")

    def test_unblock_and_change(self):
        self.take_one("unblock", UNLOCK, "unblock", values=(SO_PIN, "97135", "97135"))
        self.take_one("change", CHANGE, "change-pin", values=(PIN, "12345", "12345"))

    def test_enter_on_a_pin_pad(self):
        self.take_one("pin-pad", "PinPad", "login", FLAGS=PAD, HOLD="C_Login")

    def test_keys(self):
        process = self.host_of_test_token("keygen", "--label", "key", HOLD="C_GenerateKeyPair")
        self.answer(process, ENTER, PIN)
        window = self.take("keygen", process, "Generating key-pair")
        process.kill()
        self.screen.wait_gone(window)
        self.take_one("sign", ENTER, "sign", "--input", self.path("data", b"data"), values=(PIN,))

    def test_delete(self):
        certificate = self.path("certificate")
        run("openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256",
            "-nodes", "-subj", "/CN=Maria Santos/O=Example", "-days", "3650", "-outform", "DER",
            "-keyout", self.path("private"), "-out", certificate)
        self.tool("--write-object", certificate, "--type", "cert", "--label", "Maria")
        process = self.host("delete-certificate")
        self.answer(process, ENTER, PIN)
        self.take("delete", process, "Question")


if __name__ == "__main__":
    unittest.main(verbosity=2)
