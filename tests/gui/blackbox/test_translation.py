#!/usr/bin/python3
"""Translations and the locale, with real catalogues and locales made for the test."""

import os
import shutil
import subprocess
import tempfile
import unittest

from stage import BUFFER_TOO_SMALL, CANCELLED, FAILED, OK, StageTestCase, make_locales

KEY = r"HKEY_LOCAL_MACHINE\SOFTWARE\Corvenna\Tessaly"
UTF8 = "DLG_GetTranslationUTF8"
UTF16 = "DLG_GetTranslationUTF16"
LOCALE = "DLG_GetLocale"

HEADER = 'msgid ""\nmsgstr "Content-Type: text/plain; charset=UTF-8\\n"\n'
GERMAN = {"Enter PIN": "PIN eingeben", "Enter PIN:": "PIN eingeben:", "Cancel": "Abbrechen",
          'To log in to "%s"': 'Anmelden bei "%s"',
          "Minimum PIN length %d bytes": "Mindestens %s Zeichen",
          "Maximum PIN length %d bytes": "Höchstens %d Zeichen"}
FRENCH = {"Enter PIN": "Saisir le code PIN", "Cancel": "Annuler"}


def quoted(text):
    return '"' + text.replace("\\", "\\\\").replace('"', '\\"').replace("\n", "\\n") + '"'


def wide(text):
    """A text as the host passes it in wide characters."""
    return None if text is None else text.encode("utf-32-le")


class TranslationCase(StageTestCase):
    @classmethod
    def setUpClass(cls):
        cls.directory = tempfile.mkdtemp(prefix="catalogues-")
        cls.addClassCleanup(shutil.rmtree, cls.directory)
        cls.locales = make_locales("de_DE", "fr_FR")
        cls.catalogues = os.path.join(cls.directory, "catalogues")
        cls.compile(cls.catalogues, "de", GERMAN)
        cls.compile(cls.catalogues, "fr", FRENCH)

    @staticmethod
    def compile(directory, language, texts):
        folder = os.path.join(directory, language, "LC_MESSAGES")
        os.makedirs(folder, exist_ok=True)
        path = os.path.join(folder, "tokenutils.mo")
        po = HEADER + "".join(f"\nmsgid {quoted(key)}\nmsgstr {quoted(text)}\n"
                              for key, text in texts.items())
        subprocess.run(["msgfmt", "-o", path, "-"], input=po.encode(), check=True)
        return path

    @staticmethod
    def registry(path, version="2.0"):
        return f'REGEDIT4\r\n\r\n[{KEY}\\{version}\\Locales]\r\n"Path"="{path}"\r\n\r\n'

    def host_in(self, language, registry=None, more=None, **options):
        if registry is None:
            registry = self.registry(self.catalogues)
        environment = {"LANG": language, "LC_ALL": None, "LANGUAGE": more,
                       "LOCPATH": self.locales}
        return self.start_host(registry=registry, environment=environment, **options)

    def translation(self, host, source):
        call = host.call(UTF8, source=source)
        self.assertEqual(OK, call.result())
        size = call.output("size")
        text = call.value("buffer", size)
        self.assertEqual(0, text[-1])
        return text[:-1].decode()

    def wide_translation(self, host, source):
        call = host.call(UTF16, source=wide(source))
        self.assertEqual(OK, call.result())
        return call.value("buffer", 4 * call.output("size")).decode("utf-32-le")

    def locale(self, host):
        call = host.call(LOCALE)
        self.assertEqual(OK, call.result())
        return call.value("buffer", 4 * call.output("size")).decode("utf-32-le")


class Exports(TranslationCase):
    def test_each_locale_has_its_translations(self):
        for language, name, cancel in (("de_DE.UTF-8", "de_DE", "Abbrechen"),
                                       ("fr_FR.UTF-8", "fr_FR", "Annuler"),
                                       ("C.UTF-8", "en_US", "Cancel")):
            with self.subTest(language=language):
                host = self.host_in(language)
                self.assertEqual(cancel, self.translation(host, "Cancel"))
                self.assertEqual(cancel + "\0", self.wide_translation(host, "Cancel"))
                self.assertEqual(name + "\0", self.locale(host))

    def test_more_languages_count_where_that_of_the_locale_has_no_catalogue(self):
        for language, more, cancel in (("de_DE.UTF-8", "fr", "Abbrechen"),
                                       ("pl_PL.UTF-8", "fr", "Annuler"),
                                       ("C.UTF-8", "it:fr:de", "Annuler"),
                                       ("en_US.UTF-8", "fr", "Cancel")):
            with self.subTest(language=language, more=more):
                host = self.host_in(language, more=more)
                self.assertEqual(cancel, self.translation(host, "Cancel"))

    def test_a_text_without_translation_is_returned_unchanged(self):
        host = self.host_in("de_DE.UTF-8")
        for text in ("Not in any catalogue", "Größe 10 €", ""):
            self.assertEqual(text, self.translation(host, text))
            self.assertEqual(text + "\0", self.wide_translation(host, text))

    def test_the_wide_form_takes_null_as_the_empty_text(self):
        host = self.host_in("de_DE.UTF-8")
        self.assertEqual("\0", self.wide_translation(host, None))

    def test_a_buffer_one_unit_too_short_gets_the_size_and_nothing_else(self):
        host = self.host_in("de_DE.UTF-8")
        for export, arguments, needed in ((UTF8, {"source": "Cancel"}, 10),
                                          (UTF16, {"source": wide("Cancel")}, 10), (LOCALE, {}, 6)):
            with self.subTest(export=export):
                for capacity in (0, 1, needed - 1):
                    call = host.call(export, bufferCapacity=capacity, **arguments)
                    self.assertEqual(BUFFER_TOO_SMALL, call.result())
                    self.assertEqual(needed, call.output("size"))
                    self.assertTrue(call.untouched("buffer"))
                call = host.call(export, bufferCapacity=needed, **arguments)
                self.assertEqual(OK, call.result())
                self.assertEqual(needed, call.output("size"))

    def test_sizes_are_bytes_in_the_utf8_form_and_characters_in_the_wide_form(self):
        host = self.host_in("de_DE.UTF-8")
        source = "Maximum PIN length %d bytes"
        for export, encoded, needed in ((UTF8, source, 22), (UTF16, wide(source), 21)):
            call = host.call(export, source=encoded, bufferCapacity=0)
            self.assertEqual(BUFFER_TOO_SMALL, call.result())
            self.assertEqual(needed, call.output("size"))

    def test_a_null_buffer_with_a_size_counts_as_too_small(self):
        host = self.host_in("de_DE.UTF-8")
        for export, arguments in ((UTF8, {"source": "Cancel"}), (UTF16, {"source": wide("Cancel")}),
                                  (LOCALE, {})):
            call = host.call(export, buffer=None, bufferCapacity=64, **arguments)
            self.assertEqual(BUFFER_TOO_SMALL, call.result())

    def test_a_null_source_or_size_fails(self):
        host = self.host_in("de_DE.UTF-8")
        self.assertEqual(FAILED, host.run(UTF8, source=None))
        for export in (UTF8, UTF16, LOCALE):
            self.assertEqual(FAILED, host.run(export, size=None))


class CatalogueFolder(TranslationCase):
    def test_the_older_key_is_used_when_the_newer_is_missing(self):
        host = self.host_in("de_DE.UTF-8", self.registry(self.catalogues, "1.0.9"))
        self.assertEqual("Abbrechen", self.translation(host, "Cancel"))

    def test_the_newer_key_wins_even_without_a_path(self):
        empty = f"REGEDIT4\r\n\r\n[{KEY}\\2.0\\Locales]\r\n\r\n"
        old = self.registry(self.catalogues, "1.0.9").removeprefix("REGEDIT4\r\n\r\n")
        self.assertEqual("Cancel",
                         self.translation(self.host_in("de_DE.UTF-8", empty + old), "Cancel"))

    def test_without_any_key_the_library_works(self):
        host = self.host_in("de_DE.UTF-8", "REGEDIT4\r\n\r\n")
        self.assertEqual("Cancel", self.translation(host, "Cancel"))
        self.assertEqual("de_DE\0", self.locale(host))

    def test_a_path_of_another_type_or_a_missing_folder_costs_only_the_translations(self):
        for value in ('"Path"=dword:00000001', '"Path"="/nonexistent"', '"Path"=""'):
            host = self.host_in("de_DE.UTF-8",
                                f"REGEDIT4\r\n\r\n[{KEY}\\2.0\\Locales]\r\n{value}\r\n\r\n")
            self.assertEqual("Cancel", self.translation(host, "Cancel"))

    def test_the_catalogue_is_loaded_anew_after_finalise(self):
        host = self.host_in("fr_FR.UTF-8")
        for _ in range(3):
            self.assertEqual("Annuler", self.translation(host, "Cancel"))
            host.run("DLG_Finalize")


class BadCatalogues(TranslationCase):
    def damaged(self, change):
        directory = tempfile.mkdtemp(dir=self.directory)
        path = self.compile(directory, "de", GERMAN)
        with open(path, "rb") as file:
            data = change(file.read())
        with open(path, "wb") as file:
            file.write(data)
        return self.registry(directory)

    def test_a_damaged_file_counts_as_missing(self):
        for name, change in (("empty", lambda data: b""),
                             ("cut in the header", lambda data: data[:20]),
                             ("cut in a text", lambda data: data[:-3]),
                             ("huge count", lambda data: data[:8] + b"\xff" * 4 + data[12:]),
                             ("table outside", lambda data: data[:12] + b"\xf0" * 4 + data[16:]),
                             ("not a catalogue", lambda data: b"x" * 5000)):
            with self.subTest(name):
                host = self.host_in("de_DE.UTF-8", self.damaged(change))
                self.assertEqual("Cancel", self.translation(host, "Cancel"))
                self.assertEqual("de_DE\0", self.locale(host))

    def test_a_translation_with_other_conversions_is_not_used_for_formatting(self):
        host = self.host_in("de_DE.UTF-8")
        call, window = self.show(host, "DLG_ShowPinDialog", "PIN eingeben", label="Karte")
        self.assertEqual(['Anmelden bei "Karte"', "PIN eingeben:", "OK", "Abbrechen",
                          "Minimum PIN length 4 bytes", "Höchstens 8 Zeichen"], window.texts())
        self.screen.close_window(window)
        self.assertEqual(CANCELLED, call.result())


class Locales(TranslationCase):
    def test_a_locale_that_is_not_installed_or_not_known_costs_only_translations(self):
        for language in ("nl_NL.UTF-8", "xx_YY.UTF-8", "nonsense", "", "/", "de_DE.UTF-8" * 50):
            with self.subTest(language=language):
                host = self.host_in(language)
                # The toolkit may still find the language in a name that the system rejects.
                titles = {"Cancel": "Enter PIN", "Abbrechen": "PIN eingeben"}
                title = titles[self.translation(host, "Cancel")]
                self.locale(host)
                call, window = self.show(host, "DLG_ShowPinDialog", title)
                self.screen.close_window(window)
                self.assertEqual(CANCELLED, call.result())


if __name__ == "__main__":
    unittest.main()
