#!/usr/bin/python3
"""Every dialog in every language: nothing is cut off, nothing overlaps, nothing stays English.

Besides the five languages there are two that nobody speaks: "eo" is English with accents, 60 %
longer; "he" the same in Hebrew letters, which the toolkit lays out from right to left. A new
dialog is one more line in DIALOGS.
"""

import gettext
import os
import re
import unittest
from typing import NamedTuple

from layout import Layout
from stage import (OK, StageTestCase, library_path, make_locales, policy, take_snapshot,
                   wait_until)

LOCALES = {"de": "de_DE", "es": "es_ES", "fr": "fr_FR", "it": "it_IT", "nl": "nl_NL", "eo": "eo",
           "he": "he_IL"}
PSEUDO = ("eo", "he")
# Where the toolkit learns that Hebrew is written from right to left.
RIGHT_TO_LEFT = "/usr/share/locale/he/LC_MESSAGES/gtk30.mo"

# Texts of the host: no plain letters, so that those that are shown come from the library.
LABEL = "Κάρτα № 7 & υἱοί"
LONG_LABEL = "Διακριτικό του προσωπικού, κτίριο 12, " * 3
CERTIFICATE = {"application": "Εφαρμογή", "label": LABEL, "issuedTo": "Ἀριστοτέλης",
               "issuedBy": "Ἀρχή πιστοποιήσεως", "validFrom": "2024-01-01",
               "validTo": "2034-01-01"}
EVERY_RULE = policy(b"0", enabled=15, p1_threshold=1, p2_classes=2, p2_population=1,
                    p2_min_length=6, p2_class_mask=31, p3_threshold=3, p3_history_size=5)


class Dialog(NamedTuple):
    export: str
    title: str
    arguments: dict = {}
    # What the title's conversions stand for.
    values: tuple = ()
    # The title of a modal window that the export shows, and that is closed, before this one.
    after: str = ""
    # A modal window is closed; another one stays until the exports that end it are called.
    modal: bool = True
    end: tuple = ()
    # Exports that are called once the window is there.
    then: tuple = ()


PAD = "DLG_PinPadShow{}Dialog"
NOT_MODAL_PAD = {"modal": False, "end": ("DLG_PinPadHideDialog",)}
PAD_INPUT = "DLG_PinPadKeyboardInput"
HINT = "Fingerprint enrolment information"
HIDE_NOTIFICATION = ("DLG_HideSupertokenDlg",)

DIALOGS = [
    Dialog("DLG_ShowPinDialog", "Enter PIN", {"label": LONG_LABEL, "noFailure": 0}),
    Dialog("DLG_ShowPinDialogEx", "Enter PIN", {"label": LABEL, "triesLeft": 2}),
    Dialog("DLG_ShowLegalPinDialog", "Enter PIN",
           {"label": LABEL, "finalTry": 1, "failedEarlier": 1}),
    Dialog("DLG_ShowLegalPinDialogEx", "Enter PIN", {"label": LABEL, "triesLeft": 2}),
    Dialog("DLG_ShowUnblockThroughPUK", "Change PUK",
           {"label": LABEL, "changePuk": 1, "noFailure": 0}),
    Dialog("DLG_ShowChangeTransportPIN", "Unlock PIN", {"label": LABEL, "finalTry": 1}),
    Dialog("DLG_ShowChangePinDialog", "Change transport PIN", {"label": LONG_LABEL}),
    Dialog("DLG_ShowChangePolicedPinDialog_func", "Change transport PIN",
           {"label": LONG_LABEL * 3, "noFailure": 0, "triesLeft": 2, **EVERY_RULE}),
    Dialog(PAD.format("Modification"), "PinPad", {"allowAbort": 1}, **NOT_MODAL_PAD,
           then=(PAD_INPUT + "NextPin",)),
    Dialog(PAD.format("LegalVerification"), "PinPad", {"allowAbort": 1}, **NOT_MODAL_PAD,
           then=(PAD_INPUT + "NextPin",)),
    Dialog(PAD.format("NoPinVerification"), "PinPad", {"allowAbort": 1}, **NOT_MODAL_PAD),
    Dialog(PAD.format("LegalNoPinVerification"), "PinPad", **NOT_MODAL_PAD),
    Dialog(PAD.format("Verification"), "PinPad", **NOT_MODAL_PAD, then=(PAD_INPUT + "Cancel",)),
    Dialog(PAD.format("Verification"), "PinPad", **NOT_MODAL_PAD, then=(PAD_INPUT + "Timeout",)),
    Dialog(PAD.format("Verification"), "PinPad", **NOT_MODAL_PAD, then=(PAD_INPUT + "Accept",)),
    Dialog("DLG_ShowLockedDialog", "Token locked", {"label": LABEL}),
    Dialog("DLG_ShowConfirmDeleteCertificate", "Question", CERTIFICATE),
    Dialog("DLG_ShowUnlockTokenDialog", "Question"),
    Dialog("DLG_AskChangeTransportPIN", "Question"),
    Dialog("DLG_AskEarlyUnexpirePin", "Question", {"number": 3}),
    Dialog("DLG_ShowCRUnblockFailed", "Error"),
    Dialog("DLG_ShowPUKIsLocked", "Error"),
    Dialog("DLG_AuthFailRetryDialog", "Authentication failed"),
    Dialog("DLG_EnrolFailRetryDialog", "Enrolment failed"),
    Dialog("DLG_ShowSupertokenError", "Error", {"number": 0xA716}),
    Dialog("DLG_ShowSupertokenError", "Error", {"number": 0x63C5}),
    Dialog("DLG_ShowTokenSelectionDialog", "Select a token",
           {"entry": [(LABEL, "Ἀναγνώστης", 1), ("Κάρτα", "Ἀναγνώστης", 2)]}),
    Dialog("DLG_ShowDigitalIDSelection", "Select Digital ID",
           {"name": LABEL, "directory": "ΤΟΜΕΑΣ", "count": 2, "autoSelect": 1}),
    Dialog("DLG_ShowSelectUnblockMethod", "Unlock PIN", {"code": [1, 0]}),
    Dialog("DLG_ShowUnblockThroughCR", "Unlock PIN",
           {"label": LABEL, "serial": "12-34", "challenge": "0123456789012345", "askNewPin": 1}),
    Dialog("DLG_ShowUnblockThroughCR", "Unlock PIN",
           {"label": LONG_LABEL, "serial": "12-34", "challenge": "01" * 200}),
    Dialog("DLG_ShowSupertokenAuthDlg", "Lumora Bio Token", modal=False, end=HIDE_NOTIFICATION),
    Dialog("DLG_ShowSupertokenEnrolDlg", HINT, end=HIDE_NOTIFICATION),
    Dialog("DLG_ShowSupertokenEnrolDlg", "Lumora Bio Token - enrolling finger (scan %d)",
           values=(1,), after=HINT, modal=False, end=HIDE_NOTIFICATION),
    Dialog("DLG_ShowKeyGenerationProgressDialog", "Generating key-pair", modal=False,
           end=("DLG_HideKeyGenerationProgressDialog",)),
]

SETTINGS = r"""REGEDIT4

[HKEY_LOCAL_MACHINE\SOFTWARE\Corvenna\Tessaly\2.0\Locales]
"Path"="{}"

[HKEY_LOCAL_MACHINE\SOFTWARE\Corvenna\Tessaly\2.0\Biometrics]
"Automatic retry timeout"=dword:0000012c

[HKEY_LOCAL_MACHINE\SOFTWARE\Corvenna\Tessaly\2.0\CSP]
"Automatic default selection timeout"=dword:0000012c
"""

PLAIN_LETTER = re.compile("[A-Za-z]")


def english(window):
    """Texts with a letter that no catalogue and no host has given."""
    for seen in window.walk():
        for text in {seen.name, seen.description, seen.text}:
            if PLAIN_LETTER.search(text):
                yield f"{seen.role} {text!r}"


class LanguageCase(StageTestCase):
    def host_in(self, language):
        folder = os.path.join(os.path.dirname(library_path()), "po",
                              "pseudo" if language in PSEUDO else "locale")
        with open(os.path.join(folder, language, "LC_MESSAGES", "tokenutils.mo"), "rb") as file:
            self.translate = gettext.GNUTranslations(file).gettext
        self.language = language
        return self.start_host(
            registry=SETTINGS.format(folder),
            environment={"LANG": LOCALES[language] + ".UTF-8", "LC_ALL": None, "LANGUAGE": None,
                         "LOCPATH": make_locales(LOCALES[language])})

    def each_window(self, host):
        """Every dialog in turn, with its window."""
        for number, dialog in enumerate(DIALOGS):
            call, window = self.show_dialog(host, dialog)
            yield dialog, window
            self.keep_picture(window, f"{number:02}-{dialog.export}")
            self.remove(host, dialog, call, window)

    def show_dialog(self, host, dialog):
        call = host.call(dialog.export, **dialog.arguments)
        if dialog.after:
            self.close(self.screen.find_window(self.translate(dialog.after), host))
        title = self.translate(dialog.title)
        window = self.screen.find_window(title % dialog.values if dialog.values else title, host)
        for export in dialog.then:
            host.run(export)
        return call, window

    def remove(self, host, dialog, call, window):
        if dialog.modal:
            self.close(window)
        call.result()
        for export in dialog.end:
            host.run(export)
        self.screen.wait_gone(window)

    def close(self, window):
        self.screen.close_window(window)
        self.screen.wait_gone(window)

    def keep_picture(self, window, name):
        directory = os.environ.get("ZELDLG_PICTURES")
        if directory:
            folder = os.path.join(directory, self.language)
            os.makedirs(folder, exist_ok=True)
            self.screen.screenshot(os.path.join(folder, name + ".png"), window)

    def check(self, dialog, window):
        """What holds in every language. Gives the layout."""
        layout = Layout(take_snapshot(window), self.translate, self.language == "he")
        keys = [key for control in layout.controls for key in control.access_keys]
        with self.subTest(language=self.language, dialog=dialog.export):
            self.assertGreater(len(layout.controls), 1)
            self.assertEqual([], list(layout.complaints()))
            self.assertEqual(sorted(set(keys)), sorted(keys), "one key for two buttons")
        return layout


class Languages(LanguageCase):
    def check_all(self, language):
        for dialog, window in self.each_window(self.host_in(language)):
            layout = self.check(dialog, window)
            with self.subTest(language=language, dialog=dialog.export):
                self.assertLess(layout.title_width(), layout.window.box[2])

    def test_german(self):
        self.check_all("de")

    def test_spanish(self):
        self.check_all("es")

    def test_french(self):
        self.check_all("fr")

    def test_italian(self):
        self.check_all("it")

    def test_dutch(self):
        self.check_all("nl")


class NobodysLanguages(LanguageCase):
    def survey(self, language):
        """The layout of every dialog, after its checks."""
        layouts = []
        for dialog, window in self.each_window(self.host_in(language)):
            layouts.append(self.check(dialog, window))
            with self.subTest(language=language, dialog=dialog.export):
                self.assertEqual([], list(english(layouts[-1].window)))
        return layouts

    def test_nothing_is_english_and_the_other_direction_is_the_mirror_image(self):
        layouts = self.survey("eo")
        with self.subTest("the other direction"):
            self.check_mirrored(layouts)

    def check_mirrored(self, layouts):
        if not os.path.exists(RIGHT_TO_LEFT):
            self.skipTest(f"the toolkit has no {RIGHT_TO_LEFT}")
        for dialog, layout, mirrored in zip(DIALOGS, layouts, self.survey("he")):
            with self.subTest(dialog=dialog.export):
                self.assertEqual([], list(layout.differences_to_mirror_image(mirrored)))

    def test_every_explanation_of_a_rule_is_translated(self):
        host = self.host_in("eo")
        dialog = next(each for each in DIALOGS if "Policed" in each.export)
        call, window = self.show_dialog(host, dialog)
        explanation = window.find("text")
        seen = [explanation.text]
        layout = Layout(take_snapshot(window), self.translate)
        for control in layout.controls:
            if control.role == "push button" and control.name.startswith(layout.balls):
                control.node.press()
                wait_until(lambda: explanation.text != seen[-1], what="another explanation",
                           seen=lambda: explanation.text)
                seen.append(explanation.text)
                self.assertNotRegex(explanation.text, PLAIN_LETTER)
        self.assertEqual(11, len(seen))
        self.remove(host, dialog, call, window)

    def test_a_latin_label_is_enclosed_in_a_sentence_from_right_to_left(self):
        for language, shown in (("he", "\u2068Card 1\u2069"), ("eo", "Card 1")):
            host = self.host_in(language)
            call, window = self.show(host, "DLG_ShowPinDialog", self.translate("Enter PIN"),
                                     label="Card 1")
            self.assertIn(self.translate('To log in to "%s"') % shown, window.labels())
            self.close(window)
            call.result()

    def test_a_pin_is_typed_in_either_direction(self):
        for language in PSEUDO:
            host = self.host_in(language)
            call, window = self.show(host, "DLG_ShowPinDialog", self.translate("Enter PIN"))
            self.screen.type_text("2468", window.find("password text"))
            self.screen.key("Return")
            self.assertEqual((OK, b"2468"), (call.result(), call.value("pin")))


if __name__ == "__main__":
    unittest.main()
