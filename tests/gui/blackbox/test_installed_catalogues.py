#!/usr/bin/python3
"""Installed catalogues are found: at the usual place without any setting, elsewhere with one."""

import glob
import os
import shutil
import subprocess
import tempfile
import unittest

from stage import (StageTestCase, library_path, make_locales, registry,
                   require_private_mounts)

BUILD = os.path.dirname(library_path())
SHIPPED_SETTINGS = os.path.join(os.path.dirname(__file__), "..", "..", "..", "packaging",
                                "registry")
NO_SETTINGS = "REGEDIT4\r\n\r\n"
USUAL_PLACE = "/usr/share/locale"
TITLES = {"de_DE": "PIN eingeben", "es_MX": "Introducir PIN", "fr_CA": "Saisie du code PIN",
          "it_CH": "Inserimento PIN", "nl_BE": "Pincode invoeren", "pt_BR": "Enter PIN"}


class InstalledCatalogues(StageTestCase):
    @classmethod
    def setUpClass(cls):
        cls.prefix = tempfile.mkdtemp(prefix="installed-")
        cls.addClassCleanup(shutil.rmtree, cls.prefix)
        subprocess.run(["cmake", "--install", BUILD, "--component", "runtime", "--prefix",
                        cls.prefix], stdout=subprocess.DEVNULL, check=True)
        cls.folder = os.path.join(cls.prefix, "share", "locale")
        cls.library, = glob.glob(cls.prefix + "/**/libzeldlglib.so.3", recursive=True)

    def expect_title(self, locale, title, registry, prefix=()):
        with self.subTest(locale=locale):
            host = self.start_host(
                library=self.library, registry=registry, prefix=prefix,
                environment={"LANG": locale + ".UTF-8", "LC_ALL": None, "LANGUAGE": None,
                             "LOCPATH": make_locales(locale)})
            call, window = self.show(host, "DLG_ShowPinDialog", title)
            self.screen.close_window(window)
            call.result()

    def test_elsewhere_each_language_is_found_with_the_setting(self):
        for locale, title in TITLES.items():
            self.expect_title(locale, title, registry(("Locales", "Path", f'"{self.folder}"')))

    @staticmethod
    def at_usual_place(folder):
        """The command with which a program finds the folder's catalogues there, and no others."""
        return ["bwrap", "--die-with-parent", "--dev-bind", "/", "/", "--ro-bind", folder,
                USUAL_PLACE]

    def test_at_the_usual_place_no_setting_is_needed_and_the_shipped_one_does_no_harm(self):
        require_private_mounts(*self.at_usual_place(self.folder))
        with open(SHIPPED_SETTINGS, newline="") as file:
            shipped = file.read()
        for registry in (NO_SETTINGS, shipped):
            self.expect_title("de_DE", TITLES["de_DE"], registry, self.at_usual_place(self.folder))
        with tempfile.TemporaryDirectory() as empty:
            self.expect_title("de_DE", "Enter PIN", shipped, self.at_usual_place(empty))


if __name__ == "__main__":
    unittest.main()
