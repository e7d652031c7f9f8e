#!/usr/bin/python3
"""Nothing of a PIN stays in the memory of a host over PKCS#11 that uses a library which wipes its
own copies: what is found was left by the wrapper or the host.
"""

import os
import tempfile
import unittest

from soft_token import PIN, SO_PIN
from stage import own_process_only, wait_until
from stage.memory import PIECE, PIN_LENGTH, new_pin, places_of
from test_module import ENTER, OK, FrontCase
from test_p11 import CHANGE, UNLOCK, HostCase


@unittest.skipIf(os.environ.get("ZELDLG_INSTRUMENTED"),
                 "terabytes of shadow memory cannot be searched")
@unittest.skipIf(os.getuid() != 0, "the host lets nobody look into its memory, but root")
@own_process_only("what is typed is in the helper's memory, which is looked at elsewhere")
class Wiped(HostCase, FrontCase):
    def setUp(self):
        super().setUp()
        libraries = tempfile.TemporaryDirectory()
        self.addCleanup(libraries.cleanup)
        os.symlink(os.environ["ZELDLG_WIPING_LIBRARY"],
                   os.path.join(libraries.name, "libzeldlglib.so.3"))
        self.environment["LD_LIBRARY_PATH"] = libraries.name

    def answer_and_search(self, process, title, *values):
        """Types the values. While they stand there they are found, which shows that they can be."""
        window = self.screen.find_window(title, process)
        self.screen.fill(window, values)
        secrets = {value for value in values if len(value) == PIN_LENGTH}
        self.assertGreaterEqual(places_of(process.pid, *secrets),
                                len(secrets) * (PIN_LENGTH - PIECE) // PIECE)
        self.screen.key("Return")
        self.screen.wait_gone(window)
        return secrets

    def test_after_every_command_of_the_host(self):
        first, second, third = new_pin(), new_pin(), new_pin()
        for command, title, values in (("change-pin", CHANGE, (PIN, first, first)),
                                       ("login", ENTER, (first,)),
                                       ("unblock", UNLOCK, (SO_PIN, second, second)),
                                       ("change-pin", CHANGE, (second, third, third))):
            process = self.host_of_test_token(command, HOLD="C_CloseSession")
            secrets = self.answer_and_search(process, title, *values)
            wait_until(lambda: os.path.exists(self.path("held")), what="the end of the command")
            self.assertEqual(0, places_of(process.pid, *secrets), command)
            self.let_go()
            self.ends(process, 0)
            os.unlink(self.path("held"))
            os.unlink(self.path("go"))

    def test_in_the_module_once_it_need_not_be_kept(self):
        pin = new_pin()
        self.tool("--change-pin", "--new-pin", pin)
        client = self.client("--cache 3", **self.environment)
        client.ask("login", 1)
        self.answer_and_search(client, ENTER, pin)
        self.assertEqual(OK, client.answered())
        wait_until(lambda: places_of(client.pid, pin) == 0, 20, "the PIN overwritten in time")
        self.assertEqual(OK, client.call("finalise"))


if __name__ == "__main__":
    unittest.main()
