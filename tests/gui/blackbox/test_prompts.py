#!/usr/bin/python3
"""The questions and notices about a token: their texts, and what the host hears."""

import os
import subprocess
import unittest

from stage import CANCELLED, FAILED, OK, StageTestCase, make_locales, scaled

CERTIFICATE = "DLG_ShowConfirmDeleteCertificate"

QUESTIONS = {
    "DLG_ShowUnlockTokenDialog": "This token is locked, would you like to unlock it?",
    "DLG_AskChangeTransportPIN":
        "This token still has a transport PIN.\nWould you like to change it?",
    "DLG_AskEarlyUnexpirePin":
        "The PIN on this token is about to expire in 0 days.\nWould you like to change it now ?",
    CERTIFICATE:
        "The application Application is trying to delete a certificate:\n\n"
        "Issued To: Subject\nIssued By: Issuer\n\nValid From: 2024-01-01\nValid To: 2034-01-01\n\n"
        'From the token with label "Token"\n\nDo you wish to allow this?',
}
NOTICES = {
    "DLG_ShowPUKIsLocked": "PUK locked!",
    "DLG_ShowCRUnblockFailed":
        "Off-line PIN unlock of your token failed!\n"
        "The response to the presented challenge was incorrect!\n\n"
        "Repeated unlock failures may permanently lock your token!",
}


class PromptCase(StageTestCase):
    def setUp(self):
        super().setUp()
        self.host = self.start_host()

    def open(self, export, title="Question", **arguments):
        self.call, self.window = self.show(self.host, export, title, **arguments)
        self.screen.wait_focused()

    def text(self):
        return self.window.find("label").name

    def buttons(self):
        return [node.name for node in self.window.in_reading_order()
                if node.role == "push button"]

    def end(self, button, result=CANCELLED):
        self.window.find("push button", button).press()
        self.assertEqual(result, self.call.result())
        self.screen.wait_gone(self.window)


class Questions(PromptCase):
    def test_every_question_answers_cancelled_whether_yes_or_no_was_pressed(self):
        for export, text in QUESTIONS.items():
            for answer in ("Yes", "No"):
                with self.subTest(export=export, answer=answer):
                    self.open(export)
                    self.assertEqual(text, self.text())
                    self.assertEqual(["Yes", "No"], self.buttons())
                    self.assertEqual("Yes", self.screen.focused().name)
                    self.assertEqual("Question", self.window.find("icon").name)
                    self.end(answer)

    def test_the_expiry_question_with_0_days(self):
        self.open("DLG_AskEarlyUnexpirePin", number=0)
        self.assertIn("about to expire in 0 days.", self.text())
        self.end("No")

    def test_the_expiry_question_names_the_days(self):
        for days, shown in ((1, "1"), (14, "14"), (2**31 - 1, "2147483647")):
            self.open("DLG_AskEarlyUnexpirePin", number=days)
            self.assertIn(f"in {shown} days.", self.text())
            self.end("No")


class Notices(PromptCase):
    def test_every_notice_answers_cancelled(self):
        for export, text in NOTICES.items():
            with self.subTest(export=export):
                self.open(export, "Error")
                self.assertEqual(text, self.text())
                self.assertEqual(["OK"], self.buttons())
                self.assertEqual("Error", self.window.find("icon").name)
                self.end("OK")

    def test_the_locked_notice_answers_ok(self):
        self.open("DLG_ShowLockedDialog", "Token locked", label="K\u00e4rtchen \u6f22")
        self.assertIn('The token "K\u00e4rtchen \u6f22" is locked.', self.text())
        self.end("OK", OK)


class Certificate(PromptCase):
    def test_an_empty_issuer_still_has_its_line(self):
        self.open(CERTIFICATE, issuedBy="")
        self.assertIn("Issued To: Subject\nIssued By: \n\nValid From", self.text())
        self.end("No")

    def test_every_name_stands_in_its_place_as_it_is(self):
        self.open(CERTIFICATE, application="a & b", label="l_&x", issuedTo="<to>", issuedBy="%s",
                  validFrom="from &", validTo="to %d")
        self.assertEqual("The application a & b is trying to delete a certificate:\n\n"
                         "Issued To: <to>\nIssued By: %s\n\nValid From: from &\nValid To: to %d\n\n"
                         'From the token with label "l_&x"\n\nDo you wish to allow this?',
                         self.text())
        self.end("Yes")

    def test_bad_bytes(self):
        # The stage's locale is UTF-8: the first two have no other reading, and nothing is shown.
        for name in ("application", "label"):
            self.assertEqual(FAILED, self.host.run(CERTIFICATE, **{name: b"M\xfcller"}))
        self.open(CERTIFICATE, issuedTo=b"M\xfcller")
        self.assertIn("Issued To: M\ufffdller\n", self.text())
        self.end("No")

    def test_bytes_of_the_locale_are_read_where_they_are_not_utf_8(self):
        locale = "de_DE.ISO-8859-1"
        self.host = self.start_host(environment={"LC_ALL": locale,
                                                 "LOCPATH": make_locales(locale)})
        self.host.run("DLG_GetLocale")  # the toolkit sets the locale when it starts
        self.open(CERTIFICATE, application=b"M\xfcller", label="K\u00e4rtchen",
                  issuedTo=b"M\xfcller")
        self.assertIn("The application M\u00fcller is", self.text())
        self.assertIn('label "K\u00e4rtchen"', self.text())
        self.assertIn("Issued To: M\ufffdller\n", self.text())
        self.end("No")

    def test_a_null_text_shows_nothing(self):
        for name in ("application", "label", "issuedTo", "issuedBy", "validFrom", "validTo"):
            with self.subTest(name=name):
                self.assertEqual(FAILED, self.host.run(CERTIFICATE, **{name: None}))
        self.assertEqual(FAILED, self.host.run("DLG_ShowLockedDialog", label=None))
        self.assertEqual([], self.screen.titles(self.host))


class Demo(StageTestCase):
    """The demo program's commands for these boxes."""

    def test_every_command_shows_its_box_and_prints_the_result(self):
        for words, title, result in (
                (["locked", "My card"], "Token locked", OK),
                (["confirm-delete", "--label", "My card"], "Question", CANCELLED),
                (["ask-unlock"], "Question", CANCELLED),
                (["ask-transport-pin"], "Question", CANCELLED),
                (["ask-expiry", "3"], "Question", CANCELLED),
                (["cr-failed"], "Error", CANCELLED), (["puk-locked"], "Error", CANCELLED),
                (["biometric-error", "0xA712"], "Error", 1),
                (["retry", "auth"], "Authentication failed", 1),
                (["retry", "enrol"], "Enrolment failed", 1)):
            with self.subTest(words=words):
                process = self.start(*words)
                self.screen.find_window(title, process)
                self.screen.key("Return")
                out, _ = process.communicate(timeout=scaled(60))
                self.assertEqual((0, f"result 0x{result:08x} (shown)\n"),
                                 (process.returncode, out))

    def test_mistakes_are_refused(self):
        for words in (["locked"], ["ask-expiry"], ["ask-expiry", "x"], ["retry"],
                      ["retry", "other"], ["ask-unlock", "x"], ["confirm-delete", "--bogus"],
                      ["confirm-delete", "x"], ["biometric-error", "-1"]):
            with self.subTest(words=words):
                process = self.start(*words)
                out, err = process.communicate(timeout=scaled(60))
                self.assertEqual((2, ""), (process.returncode, out))
                self.assertNotEqual("", err)

    def start(self, *words):
        # Instrumented programs do not find a library by their own search path.
        process = subprocess.Popen(
            [os.environ["ZELDLG_DEMO"], "--library", os.environ["ZELDLG_LIBRARY"], *words],
            stdout=subprocess.PIPE, stderr=subprocess.PIPE, text=True)
        self.addCleanup(process.kill)
        return process


if __name__ == "__main__":
    unittest.main()
