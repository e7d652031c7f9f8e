#!/usr/bin/python3
"""Every dialog in every language: nothing is cut off, nothing overlaps, nothing stays English.

Besides the five languages there are two that nobody speaks: "eo" is English with accents, 60 %
longer; "he" the same in Hebrew letters, which the toolkit lays out from right to left. A new
dialog is one more line in the catalogue of all dialogs.
"""

import dataclasses
import gettext
import os
import re
import unittest

from layout import Layout
from stage import (OK, StageTestCase, library_path, make_locales, policy, registry, take_snapshot,
                   wait_until)
from stage.dialogs import DIALOGS, find_dialog, remove_dialog, show_dialog

LOCALES = {"de": "de_DE", "es": "es_ES", "fr": "fr_FR", "it": "it_IT", "nl": "nl_NL", "eo": "eo",
           "he": "he_IL"}
PSEUDO = ("eo", "he")
# Where the toolkit learns that Hebrew is written from right to left.
RIGHT_TO_LEFT = "/usr/share/locale/he/LC_MESSAGES/gtk30.mo"

# Texts of the host: no plain letters, so that those that are shown come from the library.
LABEL = "Κάρτα № 7 & υἱοί"
LONG_LABEL = "Διακριτικό του προσωπικού, κτίριο 12, " * 3
HOST_TEXTS = {"label": LABEL, "application": "Εφαρμογή", "issuedTo": "Ἀριστοτέλης",
              "issuedBy": "Ἀρχή πιστοποιήσεως", "name": LABEL, "directory": "ΤΟΜΕΑΣ",
              "serial": "12-34", "challenge": "0123456789012345",
              "entry": [(LABEL, "Ἀναγνώστης", 1), ("Κάρτα", "Ἀναγνώστης", 2)]}
EVERY_RULE = policy(b"0", enabled=15, p1_threshold=1, p2_classes=2, p2_population=1,
                    p2_min_length=6, p2_class_mask=31, p3_threshold=3, p3_history_size=5)
# What makes a dialog show other or longer texts than it does in the catalogue.
VARIANTS = {
    "pin": [{"label": LONG_LABEL}],
    "legal-pin": [{"noFailure": 1, "finalTry": 1, "failedEarlier": 1}],
    "change-pin": [{"label": LONG_LABEL}],
    "change-transport-pin": [{"noFailure": 1, "finalTry": 1}],
    "change-policed-pin": [{"label": LONG_LABEL * 3, **EVERY_RULE}],
    "unblock-cr": [{"label": LONG_LABEL, "challenge": "01" * 200}],
    "select-id": [{"autoSelect": 1}],
    "biometric-error": [{"number": 0xA716}, {"number": 0x63C5}],
}
# What a host tells a PIN pad, and each of its words.
STEPS = {"pad Modification": ["NextPin"], "pad LegalVerification": ["NextPin"],
         "pad Verification": ["Cancel", "Timeout", "Accept"]}
COUNT_DOWNS = (("Biometrics", "Automatic retry timeout", 300),
               ("CSP", "Automatic default selection timeout", 300))

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
        self.settings = (*COUNT_DOWNS, ("Locales", "Path", f'"{folder}"'))
        return self.start_host(
            registry=registry(*self.settings),
            environment={"LANG": LOCALES[language] + ".UTF-8", "LC_ALL": None, "LANGUAGE": None,
                         "LOCPATH": make_locales(LOCALES[language])})

    def each_window(self, host):
        """Every dialog in turn, in all its variants and steps, with its window."""
        number = 0
        for dialog in DIALOGS:
            for variant in VARIANTS.get(dialog.name, [{}]):
                call, window = self.show_dialog(host, dialog, variant)
                for step in STEPS.get(dialog.name, [""]):
                    if step:
                        host.run("DLG_PinPadKeyboardInput" + step)
                    yield dialog, window
                    self.keep_picture(window, f"{number:02}-{dialog.name}")
                    number += 1
                remove_dialog(self.screen, host, dialog, call, window)

    def show_dialog(self, host, dialog, variant):
        host_texts = {key: HOST_TEXTS[key] for key in dialog.arguments if key in HOST_TEXTS}
        shown = dataclasses.replace(dialog, arguments=dialog.arguments | host_texts | variant)
        # Numbers in a title stand for conversions.
        title = self.translate(re.sub(r"\d+", "%d", dialog.title))
        title %= tuple(map(int, re.findall(r"\d+", dialog.title)))
        return show_dialog(self.screen, host, shown, title,
                           registry(*dialog.settings, *self.settings))

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
        with self.subTest(language=self.language, dialog=dialog.name):
            self.assertGreater(len(layout.controls), 1)
            self.assertEqual([], list(layout.complaints()))
            self.assertEqual(sorted(set(keys)), sorted(keys), "one key for two buttons")
        return layout


class Languages(LanguageCase):
    def check_all(self, language):
        for dialog, window in self.each_window(self.host_in(language)):
            layout = self.check(dialog, window)
            with self.subTest(language=language, dialog=dialog.name):
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
        """Every dialog with its layout, after its checks."""
        layouts = []
        for dialog, window in self.each_window(self.host_in(language)):
            layouts.append((dialog, self.check(dialog, window)))
            with self.subTest(language=language, dialog=dialog.name):
                self.assertEqual([], list(english(layouts[-1][1].window)))
        return layouts

    def test_nothing_is_english_and_the_other_direction_is_the_mirror_image(self):
        layouts = self.survey("eo")
        with self.subTest("the other direction"):
            self.check_mirrored(layouts)

    def check_mirrored(self, layouts):
        if not os.path.exists(RIGHT_TO_LEFT):
            self.skipTest(f"the toolkit has no {RIGHT_TO_LEFT}")
        for (dialog, layout), (_, mirrored) in zip(layouts, self.survey("he"), strict=True):
            with self.subTest(dialog=dialog.name):
                self.assertEqual([], list(layout.differences_to_mirror_image(mirrored)))

    def test_every_explanation_of_a_rule_is_translated(self):
        host = self.host_in("eo")
        dialog = find_dialog("change-policed-pin")
        call, window = self.show_dialog(host, dialog, *VARIANTS[dialog.name])
        explanation = window.find("text")
        seen = [explanation.text]
        snapshot = take_snapshot(window)
        layout = Layout(snapshot, self.translate)
        for control in snapshot.walk():
            if control.role == "push button" and control.name.startswith(layout.balls):
                control.node.press()
                wait_until(lambda: explanation.text != seen[-1], what="another explanation",
                           seen=lambda: explanation.text)
                seen.append(explanation.text)
                self.assertNotRegex(explanation.text, PLAIN_LETTER)
        self.assertEqual(11, len(seen))
        remove_dialog(self.screen, host, dialog, call, window)

    def test_a_latin_label_is_enclosed_in_a_sentence_from_right_to_left(self):
        for language, shown in (("he", "\u2068Card 1\u2069"), ("eo", "Card 1")):
            host = self.host_in(language)
            call, window = self.show(host, "DLG_ShowPinDialog", self.translate("Enter PIN"),
                                     label="Card 1")
            self.assertIn(self.translate('To log in to "%s"') % shown, window.labels())
            self.screen.close_window(window)
            call.result()

    def test_mask_characters_and_digits_stay_where_they_are_when_the_keyboard_goes(self):
        for dialog, role, text in (("pin", "password text", "24"), ("unblock-cr", "text", "01")):
            host = self.host_in("he")
            call, window = self.show_dialog(host, find_dialog(dialog), {})
            field = next(node for node in window.find_all(role) if "editable" in node.states)
            self.screen.type_text(text, field)
            wait_until(lambda: field.length == 2, what="the text")
            places = [field.character_extents(place) for place in range(2)]
            self.assertLess(places[0][0], places[1][0])
            self.screen.key("Tab", field)
            wait_until(lambda: not field.focused, what="the keyboard elsewhere")
            self.assertEqual(places, [field.character_extents(place) for place in range(2)])
            remove_dialog(self.screen, host, find_dialog(dialog), call, window)

    def test_a_pin_is_typed_in_either_direction(self):
        for language in PSEUDO:
            host = self.host_in(language)
            call, window = self.show(host, "DLG_ShowPinDialog", self.translate("Enter PIN"))
            self.screen.type_text("2468", window.find("password text"))
            self.screen.key("Return")
            self.assertEqual((OK, b"2468"), (call.result(), call.value("pin")))


if __name__ == "__main__":
    unittest.main()
