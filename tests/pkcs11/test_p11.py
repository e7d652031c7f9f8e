#!/usr/bin/python3
"""The host over PKCS#11, with a person at the keyboard, a real token behind it and OpenSC's tool
beside it. What SoftHSM cannot do (lock, fail, have a PIN pad) a token of the tests does.
"""

import os
import unittest

from soft_token import PIN, SO_PIN, SOFTHSM, TokenTestCase, run

HOST = os.environ["ZELDLG_P11"]
TEST_TOKEN = os.environ["ZELDLG_TEST_TOKEN"]
PAD = 0x100  # CKF_PROTECTED_AUTHENTICATION_PATH
TO_BE_CHANGED = 0x80000
ENTER, CHANGE, UNLOCK, SELECT = "Enter PIN", "Change transport PIN", "Unlock PIN", "Select a token"
LAST_TRY = "WARNING: You have only 1 attempt left!"


def der(signature):
    """An ECDSA signature as openssl has it, of one as PKCS#11 has it."""
    half = len(signature) // 2
    numbers = b""
    for part in (signature[:half], signature[half:]):
        value = part.lstrip(b"\0")
        value = b"\0" + value if value[:1] >= b"\x80" else value
        numbers += bytes([2, len(value)]) + value
    return bytes([0x30, len(numbers)]) + numbers


class HostCase(TokenTestCase):
    def host(self, *words, module=SOFTHSM, **environment):
        return self.start(HOST, "--module", module, *words, **self.environment, **environment)

    def host_of_test_token(self, *words, **told):
        return self.host(*words, module=TEST_TOKEN, **self.token_settings(**told))


class OnSoftHsm(HostCase):
    def test_it_lists_the_tokens(self):
        self.ends(self.host("list"), 0, "Identity card (SoftHSM project SoftHSM v2, ")

    def test_the_login_goes_on_until_the_pin_is_right(self):
        process = self.host("login")
        self.assertIn('To log in to "Identity card"', self.answer(process, ENTER, "1357"))
        self.assertIn("PIN incorrect", self.answer(process, ENTER, PIN))
        self.assertNotIn(PIN, self.ends(process, 0, "logged in to Identity card"))

    def test_every_dialog_can_be_cancelled(self):
        for command, title in (("login", ENTER), ("change-pin", CHANGE), ("unblock", UNLOCK)):
            process = self.host(command)
            self.answer(process, title, key="Escape")
            self.ends(process, 1, "cancelled")
        self.assert_pin(PIN)

    def test_without_a_display_it_says_so(self):
        self.ends(self.host("login", DISPLAY=""), 2, "DISPLAY is not set")

    def test_the_user_chooses_among_several_tokens(self):
        self.make_token("Badge")
        process = self.host("login")
        window = self.screen.find_window(SELECT, process)
        rows = [text for text in window.texts() if text.startswith(("Badge", "Identity"))]
        chosen = rows[1].split(" (")[0]
        self.screen.key("Down")
        self.screen.key("Return")
        self.assertIn(f'To log in to "{chosen}"', self.answer(process, ENTER, PIN))
        self.ends(process, 0, f"logged in to {chosen}")
        process = self.host("--token", "Badge", "login")
        self.answer(process, ENTER, PIN)
        self.ends(process, 0, "logged in to Badge")

    def test_the_pin_is_changed(self):
        process = self.host("change-pin")
        self.answer(process, CHANGE, "1357", "97135", "97135")
        self.assertIn("PIN incorrect", self.answer(process, CHANGE, PIN, "97135", "97135"))
        self.ends(process, 0, "PIN changed")
        self.assert_pin("97135")

    def test_the_policy_refuses_a_run(self):
        process = self.host("change-pin")
        window = self.screen.find_window(CHANGE, process)
        self.screen.fill(window, [PIN, "12345", "12345"])
        self.assertFalse(window.find("push button", "OK").enabled)
        self.screen.key("Escape")
        self.ends(process, 1)

    def test_the_so_pin_unblocks_the_pin(self):
        process = self.host("unblock")
        self.answer(process, UNLOCK, "12345678", "97135", "97135")
        self.answer(process, UNLOCK, SO_PIN, "97135", "97135")
        self.ends(process, 0, "PIN unblocked")
        self.assert_pin("97135")

    def test_keys_are_generated_and_sign(self):
        data = self.path("data", b"what is signed")
        signature, key = self.path("signature"), self.path("key")
        for kind in ("rsa", "ec"):
            process = self.host("keygen", "--label", kind, "--type", kind)
            self.answer(process, ENTER, PIN)
            self.ends(process, 0, f"generated the key pair {kind}")
            process = self.host("sign", "--label", kind, "--input", data, "--output", signature)
            self.assertIn("Sign", self.answer(process, ENTER, PIN))
            self.ends(process, 0)
            if kind == "ec":
                with open(signature, "rb") as file:
                    self.path("signature", der(file.read()))
            self.tool("--read-object", "--type", "pubkey", "--label", kind, "--output-file", key)
            self.assertIn("Verified OK", run("openssl", "dgst", "-sha256", "-verify", key,
                                             "-keyform", "DER", "-signature", signature, data))

    def test_a_certificate_is_deleted_after_a_yes_and_kept_after_a_no(self):
        certificate = self.path("certificate")
        run("openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:P-256",
            "-nodes", "-subj", "/CN=Maria Santos/O=Müller", "-utf8", "-days", "30", "-outform",
            "DER", "-keyout", self.path("private"), "-out", certificate)
        self.tool("--write-object", certificate, "--type", "cert", "--label", "Maria")
        for keys, code, said in (([], 1, "cancelled"), (["Down"], 0, "certificate deleted")):
            process = self.host("delete-certificate")
            self.answer(process, ENTER, PIN)
            texts = "\n".join(self.answer(process, "Question", key="Escape"))
            self.assertIn("Issued To: CN = Maria Santos, O = Müller", texts)
            self.assertIn('From the token with label "Identity card"', texts)
            window = self.screen.find_window(SELECT, process)
            self.screen.wait_focused()
            for key in [*keys, "Return"]:
                self.screen.key(key)
            self.screen.wait_gone(window)
            self.ends(process, code, said)
            self.assertEqual(code == 1, "Maria" in self.tool("--list-objects"))

    def test_a_token_that_is_removed_during_the_dialog_is_said_to_be_gone(self):
        process = self.host("login")
        self.screen.find_window(ENTER, process)
        os.rename(self.tokens, self.tokens + "-elsewhere")
        self.answer(process, ENTER, PIN)
        self.ends(process, 2, "(CKR_")

    def test_what_is_missing_is_said(self):
        for words, said in ((["--token", "Nobody's", "login"], "CKR_TOKEN_NOT_PRESENT"),
                            (["keygen"], "needs a --label"), (["unknown"], "unknown command"),
                            (["--type", "dsa", "list"], "unknown type"), ([], "one command")):
            self.ends(self.host(*words), 2, said)
        self.ends(self.host("list", module="/no/module.so"), 2, "/no/module.so")


class OnATokenOfTheTests(HostCase):
    def test_three_wrong_pins_lock_and_the_so_pin_unlocks(self):
        process = self.host_of_test_token("login", TRIES=3)
        self.assertNotIn(LAST_TRY, self.answer(process, ENTER, "1111"))
        self.assertNotIn(LAST_TRY, self.answer(process, ENTER, "1111"))
        self.assertIn(LAST_TRY, self.answer(process, ENTER, "1111"))
        self.answer(process, "Token locked")
        self.ends(process, 2, "(CKR_PIN_LOCKED)")

        process = self.host_of_test_token("login", TRIES=3)
        self.answer(process, "Token locked")
        self.ends(process, 2, "(CKR_PIN_LOCKED)")

        process = self.host_of_test_token("unblock", TRIES=3)
        self.answer(process, UNLOCK, SO_PIN, "97135", "97135")
        self.ends(process, 0)
        process = self.host_of_test_token("login", TRIES=3)
        self.assertEqual([], [text for text in self.answer(process, ENTER, "97135")
                              if "incorrect" in text or "WARNING" in text])
        self.ends(process, 0)

    def test_an_earlier_wrong_pin_and_the_last_try_are_told_at_once(self):
        for left, warning in ((2, "WARNING: Repeated login failures may lock the token!"),
                              (1, LAST_TRY)):
            self.path("tries", str(left).encode())
            process = self.host_of_test_token("login", TRIES=3)
            texts = self.answer(process, ENTER, key="Escape")
            self.assertIn("The PIN has previously been entered incorrectly", texts)
            self.assertIn(warning, texts)
            self.ends(process, 1)

    def test_a_pin_of_too_many_bytes_costs_no_try(self):
        process = self.host_of_test_token("login", TRIES=3, MAX_PIN=8)
        self.answer(process, ENTER, "éééééééé")
        texts = self.answer(process, ENTER, PIN)
        self.assertIn("PIN incorrect", texts)
        self.ends(process, 0)
        with open(self.path("tries")) as file:
            self.assertEqual("3", file.read())

    def test_a_pin_that_has_to_be_changed_is_changed_after_the_login(self):
        process = self.host_of_test_token("login", FLAGS=TO_BE_CHANGED)
        self.answer(process, ENTER, PIN)
        self.answer(process, "Question", key="Escape")
        self.answer(process, CHANGE, PIN, "97135", "97135")
        self.ends(process, 0, "logged in", "PIN changed")
        self.assert_pin("97135")

    def test_a_module_that_fails_in_the_middle_is_quoted(self):
        process = self.host_of_test_token("login", FAIL="C_Login=0x30")
        self.answer(process, ENTER, PIN)
        self.ends(process, 2, "(CKR_DEVICE_ERROR)")
        process = self.host_of_test_token("change-pin", FAIL="C_SetPIN=0xa2")
        self.answer(process, CHANGE, PIN, "97135", "97135")
        self.ends(process, 2, "(CKR_PIN_LEN_RANGE)")
        self.assert_pin(PIN)
        process = self.host_of_test_token("keygen", "--label", "key", FAIL="C_GenerateKeyPair=0x70")
        self.answer(process, ENTER, PIN)
        self.ends(process, 2, "(CKR_MECHANISM_INVALID)")

    def test_the_progress_is_shown_while_a_key_is_generated(self):
        process = self.host_of_test_token("keygen", "--label", "key", HOLD="C_GenerateKeyPair")
        self.answer(process, ENTER, PIN)
        window = self.screen.find_window("Generating key-pair", process)
        self.let_go()
        self.screen.wait_gone(window)
        self.ends(process, 0)

    def test_on_a_pin_pad_the_pin_is_entered_there(self):
        process = self.host_of_test_token("login", FLAGS=PAD, PAD=f"1111 {PIN}", HOLD="C_Login")
        window = self.screen.find_window("PinPad", process)
        self.assertIn("Enter your PIN", window.texts())
        self.let_go()
        self.ends(process, 0, "logged in")

    def test_on_a_pin_pad_the_pin_is_changed_there(self):
        process = self.host_of_test_token("change-pin", FLAGS=PAD, PAD=f"{PIN} 97135",
                                          HOLD="C_SetPIN")
        window = self.screen.find_window("PinPad", process)
        self.assertIn("Enter the new PIN", window.texts())
        self.let_go()
        self.ends(process, 0, "PIN changed")
        self.assert_pin("97135")


if __name__ == "__main__":
    unittest.main()
