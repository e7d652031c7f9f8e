#!/usr/bin/python3
"""A browser whose security module asks for PINs through the library: a page wants a certificate
that is on a token, the dialog comes up over the browser, and the browser goes on.
"""

import os
import unittest

import browser
from evidence import process_of, record
from soft_token import PIN, TokenTestCase, run
from stage import wait_until

MODULE = os.environ["ZELDLG_P11_FRONT"]
LIBRARIES = os.path.dirname(os.environ["ZELDLG_LIBRARY"])
PERSON = "Maria Santos"
TITLE = "Enter PIN"


class BrowserCase(TokenTestCase):
    def setUp(self):
        super().setUp()
        browser.make_certificates(self.folder, PERSON)
        self.tool("--write-object", self.path("person.key.der"), "--type", "privkey", "--id", "01")
        self.tool("--write-object", self.path("person.der"), "--type", "cert", "--id", "01",
                  "--label", PERSON)
        self.environment |= {"ZELDLG_P11_MODULE": "/usr/lib/softhsm/libsofthsm2.so",
                             "ZELDLG_P11_CONFIG": self.path("none"),
                             "LD_LIBRARY_PATH": LIBRARIES}


class Firefox(BrowserCase):
    def setUp(self):
        super().setUp()
        self.profile = browser.make_profile(self.folder, self.path("ca.pem"), MODULE)
        self.address = self.enterContext(browser.server(self.folder))

    def browse(self):
        return self.start("firefox-esr", "--no-remote", "--profile", self.profile, self.address,
                          **self.environment)

    def wait_title(self, text):
        return wait_until(lambda: next((title for title in self.screen.titles() if text in title),
                                       None), 60, f"a window {text!r}", seen=self.screen.dump)

    def test_a_page_that_wants_a_certificate_gets_it_once_the_pin_is_typed(self):
        process = self.browse()
        window = self.screen.find_window(TITLE, timeout=60)
        record("Firefox ESR, with a PKCS#11 module", process=process_of(window, process))
        self.screen.fill(window, (PIN,))
        self.screen.key("Return")
        self.screen.wait_gone(window)
        self.wait_title(f"Welcome {PERSON}")


if __name__ == "__main__":
    unittest.main()
