#!/usr/bin/python3
"""Every function of the table in one process, and the built-in demonstration."""

import unittest

from stage import CANCELLED, NOT_SUPPORTED, OK, StageTestCase, wait_until

BIOMETRIC = "Lumora Bio Token"
ENROLMENT_HINT = "Fingerprint enrolment information"
RETRY_SHOWN = 1
SHOWN = 1


class Walk(StageTestCase):
    """One process, in the order of the table."""

    def setUp(self):
        super().setUp()
        self.host = self.start_host()
        self.called = []

    # ---- the kinds of calls

    def call(self, export, **arguments):
        self.called.append(export)
        return self.host.call(export, via="table", **arguments)

    def plain(self, export, result, **arguments):
        """A call without a dialog."""
        call = self.call(export, **arguments)
        self.assertEqual(result, call.result(), export)
        return call

    def dialog(self, export, title, result, answer=None, **arguments):
        """A call whose dialog is answered, by pressing Return unless `answer` does otherwise."""
        call = self.call(export, **arguments)
        window = self.screen.find_window(title, self.host)
        self.screen.wait_focused()
        if answer is None:
            self.screen.key("Return")
        else:
            answer(window)
        self.assertEqual(result, call.result(), export)
        self.screen.wait_gone(window)
        return call

    def fill(self, *values):
        """An answer that types into the password fields and confirms."""
        def answer(window):
            self.screen.fill(window, values)
            wait_until(lambda: self.confirm_button(window).enabled, what="OK enabled",
                       seen=window.dump)
            self.screen.key("Return")
        return answer

    @staticmethod
    def confirm_button(window):
        return next(button for button in window.find_all("push button")
                    if button.name in ("OK", "Sign"))

    def respond(self, digits):
        def answer(window):
            field = window.find_all("text")[-1]
            field.focus()
            self.screen.type_text(digits, field)
            wait_until(lambda: self.confirm_button(window).enabled, what="OK enabled",
                       seen=window.dump)
            self.screen.key("Return", field)
        return answer

    def expect_window(self, title):
        return self.screen.find_window(title, self.host)

    # ---- the walk

    def pin(self, export):
        call = self.dialog(export, "Enter PIN", OK, self.fill("2468"))
        self.assertEqual(b"2468", call.value("pin"))

    def change(self, export, title):
        call = self.dialog(export, title, OK, self.fill("1234", "98765", "98765"))
        self.assertEqual((b"1234", b"98765"), (call.value("old"), call.value("new")))

    def part_1_selection_and_translation(self):
        self.pin("DLG_ShowPinDialog")
        self.dialog("DLG_ShowLockedDialog", "Token locked", OK)
        call = self.plain("DLG_GetTranslationUTF8", OK, source="Cancel", bufferCapacity=64)
        self.assertEqual(b"Cancel\0", call.value("buffer", 7))
        self.assertNotEqual(0, self.call("DLG_GetFunctionList").result())
        call = self.dialog("DLG_ShowTokenSelectionDialog", "Select a token", OK,
                           entry=[("Card", "Reader", 99)])
        self.assertEqual(99, call.number("identifier"))
        self.plain("DLG_GetTranslationUTF16", OK, source="Cancel".encode("utf-32-le"),
                   bufferCapacity=64)
        self.plain("DLG_GetLocale", OK, bufferCapacity=64)

    def part_2_biometric_token(self):
        self.assertEqual(1, self.plain("DLG_ShowSupertokenAuthDlg", OK).number("shown"))
        self.expect_window(BIOMETRIC)
        call = self.dialog("DLG_ShowSupertokenEnrolDlg", ENROLMENT_HINT, OK)
        self.assertEqual(1, call.number("shown"))
        window = self.expect_window(BIOMETRIC + " - enrolling finger (scan 1)")
        self.plain("DLG_HideSupertokenDlg", OK)
        self.screen.wait_gone(window)
        self.dialog("DLG_AuthFailRetryDialog", "Authentication failed", RETRY_SHOWN)
        self.dialog("DLG_EnrolFailRetryDialog", "Enrolment failed", RETRY_SHOWN)
        self.plain("DLG_UpdateSuperTokenEnrolDlg", OK)
        self.dialog("DLG_ShowSupertokenError", "Error", RETRY_SHOWN, number=0x6983)
        self.plain("DLG_ShowKeyGenerationProgressDialog", OK)
        window = self.expect_window("Generating key-pair")
        self.plain("DLG_HideKeyGenerationProgressDialog", OK)
        self.screen.wait_gone(window)

    def part_3_pins_and_unblocking(self):
        self.pin("DLG_ShowPinDialogEx")
        self.pin("DLG_ShowLegalPinDialog")
        self.pin("DLG_ShowLegalPinDialogEx")
        self.dialog("DLG_ShowConfirmDeleteCertificate", "Question", CANCELLED)
        call = self.dialog("DLG_ShowDigitalIDSelection", "Select Digital ID", OK, count=2, value=5)
        self.assertEqual(5, int.from_bytes(call.output("chosen")[:8], "little"))
        self.dialog("DLG_ShowUnlockTokenDialog", "Question", CANCELLED)
        self.dialog("DLG_AskChangeTransportPIN", "Question", CANCELLED)
        call = self.dialog("DLG_ShowSelectUnblockMethod", "Unlock PIN", OK, code=[0, 1])
        self.assertEqual((1, 0), (call.number("method"), call.number("algorithm")))
        self.change("DLG_ShowUnblockThroughPUK", "Change transport PIN")
        call = self.dialog("DLG_ShowUnblockThroughCR", "Unlock PIN", OK,
                           self.respond("0011 2233 4455 6677"))
        self.assertEqual(bytes.fromhex("0011223344556677"), call.value("response"))
        self.change("DLG_ShowChangeTransportPIN", "Unlock PIN")
        self.dialog("DLG_ShowCRUnblockFailed", "Error", CANCELLED)
        self.dialog("DLG_ShowPUKIsLocked", "Error", CANCELLED)

    def part_4_pin_pad(self):
        self.plain("DLG_PinPadShowVerificationDialog", SHOWN, pad="first")
        first = self.expect_window("PinPad")
        self.plain("DLG_PinPadShowModificationDialog", SHOWN, pad="second", allowAbort=1)
        wait_until(lambda: len(self.screen.titles(self.host)) == 2, what="two pads")
        self.plain("DLG_PinPadHideDialog", None, pad="first")
        self.screen.wait_gone(first)
        for order in ("NextPin", "Cancel", "Timeout", "Accept", "AddChar", "DelChar",
                      "ClearChars"):
            self.plain("DLG_PinPadKeyboardInput" + order, None, pad="second")
        second = self.expect_window("PinPad")
        second.find("push button", "Abort").press()
        self.called.append("DLG_PinPadKeyboardInputShouldAbort")
        wait_until(lambda: self.host.run("DLG_PinPadKeyboardInputShouldAbort", via="table",
                                         pad="second") == 1, what="the abort to be seen")
        self.plain("DLG_Finalize", None)
        self.screen.wait_gone(second)
        self.plain("DLG_SetParameter", NOT_SUPPORTED)
        self.plain("DLG_GetParameter", NOT_SUPPORTED)

    def part_5_after_a_new_start(self):
        for kind in ("Legal", "NoPin", "LegalNoPin"):
            self.plain(f"DLG_PinPadShow{kind}VerificationDialog", SHOWN, pad=kind)
        wait_until(lambda: len(self.screen.titles(self.host)) == 3, what="three pads")
        self.host.run("DLG_Finalize")
        wait_until(lambda: not self.screen.titles(self.host), what="no window")
        self.dialog("DLG_AskEarlyUnexpirePin", "Question", CANCELLED, number=3)
        self.change("DLG_ShowChangePinDialog", "Change transport PIN")
        self.change("DLG_ShowChangePolicedPinDialog_func", "Change transport PIN")

    def test_all_49_functions_of_the_table(self):
        self.part_1_selection_and_translation()
        self.part_2_biometric_token()
        self.part_3_pins_and_unblocking()
        self.part_4_pin_pad()
        self.part_5_after_a_new_start()
        self.assertEqual(49, len(self.called))
        self.assertEqual(49, len(set(self.called)))


class Demonstration(StageTestCase):
    def test_it_runs_its_sequence(self):
        host = self.start_host()
        call = host.call("TestApp")
        window = self.screen.find_window("Enter PIN", host, timeout=60)
        # 500 s after the first pad, 300 s after each digit that comes or goes.
        self.assertEqual([500] + [300] * 60, host.sleeps())
        labels = window.labels()
        self.assertEqual('To log in to "fake token"', labels[0])
        self.assertIn("Minimum PIN length 4 bytes", labels)
        self.assertIn("Maximum PIN length 8 bytes", labels)
        self.assertIn("WARNING: You have only 1 attempt left!", labels)
        # Its pads are never hidden: it passes no handle.
        self.assertEqual(["Enter PIN", "PinPad", "PinPad"], sorted(self.screen.titles(host)))
        for pad in self.screen.accessible_windows(host, "PinPad"):
            self.assertTrue(pad.find("push button", "Abort").enabled)
        field = window.find("password text")
        self.screen.type_text("12345678", field)
        wait_until(lambda: field.length == 8, what="the typed PIN")
        self.screen.key("Return", field)
        self.assertIsNone(call.result())
        self.screen.wait_gone(window)
        self.assertEqual(["PinPad", "PinPad"], self.screen.titles(host))
        host.run("QuitApp")
        wait_until(lambda: not self.screen.titles(host), what="no window")


if __name__ == "__main__":
    unittest.main()
