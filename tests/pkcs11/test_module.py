#!/usr/bin/python3
"""The module in front of SoftHSM's, in programs that know nothing of it: OpenSC's tool, GnuTLS's,
p11-kit, and a program with many threads. A person at the keyboard answers its dialogs.
"""

import os
import re
import select
import subprocess
import unittest

from soft_token import PIN, SO_PIN, SOFTHSM, TokenTestCase, run
from stage import require_private_mounts, scaled, wait_until

MODULE = os.environ["ZELDLG_P11_FRONT"]
CLIENT = os.environ["ZELDLG_MODULE_CLIENT"]
TEST_TOKEN = os.environ["ZELDLG_TEST_TOKEN"]
LIBRARIES = os.path.dirname(os.environ["ZELDLG_LIBRARY"])
ENTER, CHANGE, UNLOCK, LOCKED = "Enter PIN", "Change transport PIN", "Unlock PIN", "Token locked"

OK, ARGUMENTS_BAD, CANCELED, PIN_LOCKED = 0, 7, 0x50, 0xa4
USER_ALREADY_LOGGED_IN, USER_NOT_LOGGED_IN, ANOTHER_LOGGED_IN = 0x100, 0x101, 0x104
PROTECTED_AUTHENTICATION_PATH = 0x100


class Client:
    """A program that makes calls as it is told to. `pid` tells a screen which windows are its."""

    def __init__(self, case, reserved="", **environment):
        self.process = subprocess.Popen(
            [CLIENT, MODULE, reserved], stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True,
            env={**os.environ, **case.front(**environment)})
        self.pid = self.process.pid
        case.addCleanup(self._end)

    def _end(self):
        self.process.kill()
        self.process.wait()
        self.process.stdin.close()
        self.process.stdout.close()

    def ask(self, *words):
        self.process.stdin.write(" ".join(map(str, words)) + "\n")
        self.process.stdin.flush()

    def answered(self):
        return int(self.process.stdout.readline(), 16)

    def call(self, *words):
        self.ask(*words)
        return self.answered()

    def close(self):
        """Its exit code, once it has ended by itself."""
        self.process.stdin.close()
        return self.process.wait(scaled(20))


class FrontCase(TokenTestCase):
    def front(self, module=SOFTHSM, **environment):
        """The environment of a program that uses the module in front of another."""
        return {**self.environment, "ZELDLG_P11_MODULE": module,
                "ZELDLG_P11_CONFIG": self.path("none"), "LD_LIBRARY_PATH": LIBRARIES,
                **environment}

    def client(self, reserved="", **environment):
        client = Client(self, reserved, **environment)
        self.assertEqual(OK, client.call("initialise"))
        return client


@unittest.skipIf(os.environ.get("ZELDLG_INSTRUMENTED"), "these programs are not instrumented")
class InOtherPrograms(FrontCase):
    def test_opensc_s_tool_tests_the_token(self):
        process = self.start("pkcs11-tool", "--module", MODULE, "--login", "--test",
                             **self.front())
        self.answer(process, ENTER, "1357")
        self.answer(process, ENTER, PIN)
        self.ends(process, 0, "No errors")

    def test_opensc_s_tool_changes_the_pin(self):
        process = self.start("pkcs11-tool", "--module", MODULE, "--login", "--change-pin",
                             **self.front())
        self.answer(process, ENTER, PIN)
        self.answer(process, CHANGE, PIN, "97135", "97135")
        self.ends(process, 0)
        self.assert_pin("97135")

    def test_opensc_s_tool_sets_a_new_pin(self):
        process = self.start("pkcs11-tool", "--module", MODULE, "--login", "--login-type", "so",
                             "--init-pin", **self.front())
        self.assertIn('To log in to "Identity card (SO PIN)"',
                      self.answer(process, ENTER, SO_PIN))
        self.answer(process, UNLOCK, "12345678", "97135", "97135")
        self.answer(process, UNLOCK, SO_PIN, "97135", "97135")
        self.ends(process, 0)
        self.assert_pin("97135")

    def test_gnutls_s_tool_lists_what_is_private(self):
        self.tool("--keypairgen", "--key-type", "EC:prime256v1", "--label", "key")
        self.path("settings", b"--cache 1000")  # it logs in more than once
        process = self.start("p11tool", "--provider", MODULE, "--list-all", "--login",
                             "pkcs11:token=Identity%20card",
                             **self.front(ZELDLG_P11_CONFIG=self.path("settings")))
        self.answer(process, ENTER, PIN)
        self.ends(process, 0, "Type: Private key")

    def test_p11_kit_loads_it_from_its_configuration(self):
        modules = "/usr/share/p11-kit/modules"
        require_private_mounts("bwrap", "--dev-bind", "/", "/")
        ours = self.path("modules")
        os.mkdir(ours)
        with open(os.path.join(ours, "zeldlg-p11.module"), "w") as file:
            file.write(f"module: {MODULE}\nx-init-reserved: --module {SOFTHSM} --cache 1000\n")
        environment = self.front()
        del environment["ZELDLG_P11_MODULE"]
        process = self.start("bwrap", "--dev-bind", "/", "/", "--bind", ours, modules, "p11-kit",
                             "list-modules", **environment)
        self.ends(process, 0, "token: Identity card")


class AsAFile(unittest.TestCase):
    def test_no_library_that_it_needs_is_a_module_as_well(self):
        """Who looks for a newer function in it (C_GetInterface) would find that one's."""
        needed = re.findall(r"=> (\S+)", run("ldd", MODULE))
        self.assertTrue(needed)
        for path in (MODULE, *needed):
            self.assertEqual(path == MODULE,
                             "C_GetFunctionList" in run("nm", "-D", "--defined-only", path), path)


class ByCalls(FrontCase):
    def test_the_token_has_a_protected_authentication_path(self):
        self.assertTrue(self.client().call("flags") & PROTECTED_AUTHENTICATION_PATH)

    def test_a_pin_that_is_given_goes_through(self):
        client = self.client(DISPLAY="")
        self.assertEqual(OK, client.call("login", 1, PIN))
        self.assertEqual(OK, client.call("logout"))
        self.assertEqual(OK, client.call("login", 0, SO_PIN))
        self.assertEqual(OK, client.call("initpin", "97135"))
        self.assertEqual(OK, client.call("finalise"))
        self.assertEqual(0, client.close())
        self.assert_pin("97135")

    def test_cancel_is_told_as_such(self):
        client = self.client()
        for call, title in (("login 1", ENTER), ("setpin", CHANGE)):
            client.ask(call)
            self.answer(client, title, key="Escape")
            self.assertEqual(CANCELED, client.answered())

    def test_without_a_display_a_login_fails_at_once(self):
        self.assertEqual(6, self.client(DISPLAY="").call("login", 1))

    def test_nobody_is_asked_who_is_logged_in(self):
        client = self.client()
        client.call("login", 1, PIN)
        self.assertEqual(USER_ALREADY_LOGGED_IN, client.call("login", 1))
        self.assertEqual(ANOTHER_LOGGED_IN, client.call("login", 0))
        self.assertEqual(USER_NOT_LOGGED_IN, client.call("initpin"))

    def test_of_many_threads_one_asks(self):
        client = self.client()
        client.ask("threads", 8)
        self.answer(client, ENTER, PIN)
        self.assertEqual(8, client.answered())
        self.assertEqual(OK, client.call("finalise"))
        self.assertEqual(0, client.close())

    def test_a_token_that_locks_is_said_to_be_locked(self):
        client = self.client(module=TEST_TOKEN, **self.token_settings(TRIES=2))
        client.ask("login", 1)
        self.answer(client, ENTER, "1111")
        self.assertIn("WARNING: You have only 1 attempt left!", self.answer(client, ENTER, "1111"))
        self.answer(client, LOCKED)
        self.assertEqual(PIN_LOCKED, client.answered())

    def test_it_can_be_used_again_after_its_end(self):
        client = self.client()
        for _ in range(2):
            client.ask("login", 1)
            self.answer(client, ENTER, PIN)
            self.assertEqual(OK, client.answered())
            self.assertEqual(OK, client.call("finalise"))
            self.assertEqual(0x190, client.call("login", 1))  # CKR_CRYPTOKI_NOT_INITIALIZED
            self.assertEqual(OK, client.call("initialise"))

    def test_with_no_module_behind_there_is_no_token(self):
        client = Client(self, module="")
        self.assertEqual(3, client.call("initialise"))  # CKR_SLOT_ID_INVALID: there is no slot

    def test_words_that_it_does_not_know_are_refused(self):
        for words in ("--cash 5", "--cache", "--cache -1"):
            self.assertEqual(6, Client(self, words).call("initialise"), words)


class Caching(FrontCase):
    def log_in(self, client, pin=None):
        """Logs in and out; with the PIN where it is asked for."""
        client.ask("login", 1)
        if pin:
            self.answer(client, ENTER, pin)
        self.assertEqual(OK, client.answered())
        self.assertEqual(OK, client.call("logout"))

    def test_nothing_is_cached_unless_told(self):
        client = self.client()
        self.log_in(client, PIN)
        self.log_in(client, PIN)

    def test_what_is_told_to_be_cached_is_asked_once(self):
        client = self.client("--cache 1000")
        self.log_in(client, PIN)
        self.log_in(client)
        self.assertEqual(OK, client.call("finalise"))
        self.assertEqual(OK, client.call("initialise"))
        self.log_in(client, PIN)

    def test_the_file_says_it_as_well(self):
        self.path("settings", b"# of the tests\n--cache 1000\n--module " + SOFTHSM.encode())
        client = self.client(module="", ZELDLG_P11_CONFIG=self.path("settings"))
        self.log_in(client, PIN)
        self.log_in(client)

    def test_a_cached_pin_is_asked_for_again_when_its_time_has_passed(self):
        client = self.client("--cache 1")
        self.log_in(client, PIN)
        wait_until(lambda: not self.is_logged_in_at_once(client), 20, "the PIN asked for again")

    def is_logged_in_at_once(self, client):
        client.ask("login", 1)
        shown = wait_until(lambda: ENTER in self.screen.titles(client) and "asked"
                           or self.has_answered(client) and "at once", what="an answer")
        if shown == "asked":
            self.answer(client, ENTER, PIN)
        self.assertEqual(OK, client.answered())
        self.assertEqual(OK, client.call("logout"))
        return shown == "at once"

    @staticmethod
    def has_answered(client):
        return bool(select.select([client.process.stdout], [], [], 0)[0])

    def test_a_pin_that_was_changed_is_asked_for(self):
        client = self.client("--cache 1000")
        self.log_in(client, PIN)
        client.ask("setpin")
        self.answer(client, CHANGE, PIN, "97135", "97135")
        self.assertEqual(OK, client.answered())
        self.log_in(client, "97135")
        self.log_in(client)

    def test_a_cached_pin_that_is_wrong_by_now_is_tried_once(self):
        client = self.client("--cache 1000", module=TEST_TOKEN, **self.token_settings(TRIES=3))
        self.log_in(client, PIN)
        self.path("refuse", b"")
        self.log_in(client, PIN)
        self.log_in(client)


if __name__ == "__main__":
    unittest.main()
