#!/usr/bin/python3
"""A browser whose security module asks for PINs through the library: a page wants a certificate
that is on a token, the dialog comes up over the browser, and the browser goes on.
"""

import os
import time
import unittest

import browser
from evidence import photograph, process_of, record
from soft_token import PIN, SOFTHSM, TokenTestCase
from stage import wait_until

MODULE = os.environ["ZELDLG_P11_FRONT"]
LIBRARIES = os.path.dirname(os.environ["ZELDLG_LIBRARY"])
PERSON = "Maria Santos"
TITLE = "Enter PIN"
COUNT = 10
# In the page's box, below what the browser has above it, and beside any dialog.
BOX = 40, 200


class BrowserCase(TokenTestCase):
    def setUp(self):
        super().setUp()
        browser.make_certificates(self.folder, PERSON)
        self.tool("--write-object", self.path("person.key.der"), "--type", "privkey", "--id", "01")
        self.tool("--write-object", self.path("person.der"), "--type", "cert", "--id", "01",
                  "--label", PERSON)
        self.environment |= {"ZELDLG_P11_MODULE": SOFTHSM,
                             "ZELDLG_P11_CONFIG": self.path("none"),
                             "LD_LIBRARY_PATH": LIBRARIES}
        self.profile = browser.make_profile(self.folder, self.path("ca.pem"), MODULE)


class NssTools(BrowserCase):
    """The browser's own tool, which has no window."""

    def test_keys_of_the_token_are_listed_once_the_pin_is_typed(self):
        self.path("return", b"\n")  # "Press Enter, then enter PIN ..."
        process = self.start("sh", "-c", f"exec certutil -K -d sql:{self.profile} -h 'Identity card'"
                             f" < {self.path('return')}", **self.environment)
        self.answer(process, TITLE, PIN)
        self.ends(process, 0, "rsa")


class Firefox(BrowserCase):
    def setUp(self):
        super().setUp()
        address = self.enterContext(browser.site(self.folder))
        self.process = self.start("firefox-esr", "--no-remote", "--profile", self.profile, address,
                                  **self.environment, MOZ_CRASHREPORTER_DISABLE="1")

    def find_own(self, text):
        """The browser's window with that text in its title, in X."""
        def find():
            self.assertIsNone(self.process.poll(), "the browser has ended")
            return next((number for number, _, title in self.screen.x11.windows()
                         if text in title), None)
        return wait_until(find, 60, f"a window {text!r}", seen=self.screen.x11.windows)

    def see_changes(self, count):
        """How long it takes until the box of the page has changed its colour so often."""
        x, y, _, _ = self.screen.x11.geometry(self.own)
        place = x + BOX[0], y + BOX[1], 2, 2
        began, seen = time.monotonic(), self.screen.x11.bytes(place)
        for _ in range(count):
            seen = wait_until(lambda: next(filter(lambda now: now != seen,
                                                  [self.screen.x11.bytes(place)]), None),
                              60, "another colour in the page")
        return time.monotonic() - began

    def test_a_page_that_wants_a_certificate_gets_it_once_the_pin_is_typed(self):
        self.own = self.find_own("Who are you?")
        window = self.screen.find_window(TITLE, self.process, timeout=60)
        number = self.screen.x11_window(window)
        field = self.screen.wait_focused(window.find("password text"))
        self.assertTrue(self.screen.x11.holds_focus(number))
        changes = COUNT / self.see_changes(COUNT)
        photograph(self.screen, "firefox", self.own, number)
        self.screen.type_text("1357", field)
        self.screen.key("Return")
        self.screen.wait_gone(window)
        again = self.screen.find_window(TITLE, self.process)
        process = process_of(self.screen, again, self.process)
        self.assertEqual("helper", process)
        self.screen.fill(again, (PIN,))
        self.screen.key("Return")
        self.screen.wait_gone(again)
        self.find_own(f"Welcome {PERSON}")
        record("Firefox ESR, whose PKCS#11 module asks for a PIN", process, frames=changes,
               before=COUNT / self.see_changes(COUNT))

    def test_when_the_person_cancels_the_browser_goes_on_without(self):
        self.own = self.find_own("Who are you?")
        window = self.screen.find_window(TITLE, self.process, timeout=60)
        self.screen.key("Escape", window.find("password text"))
        self.screen.wait_gone(window)
        self.see_changes(COUNT)
        self.find_own("Who are you?")

    def test_a_browser_that_is_killed_takes_its_dialog_along(self):
        window = self.screen.find_window(TITLE, self.process, timeout=60)
        self.process.kill()
        self.screen.wait_gone(window)


if __name__ == "__main__":
    unittest.main()
