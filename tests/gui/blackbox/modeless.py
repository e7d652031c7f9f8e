"""What the tests of windows that only the host can remove have in common."""

import re

from stage import CANCELLED, StageTestCase, registry, wait_until
from stage.dialogs import NO_HINT

HINT = "Fingerprint enrolment information"

def plain(text):
    """A text without the line breaks that it got for want of room."""
    return re.sub(r"\s+", " ", text)


class ModelessCase(StageTestCase):
    def setUp(self):
        super().setUp()
        self.host = self.start_host(registry=registry(*NO_HINT))

    def expect_titles(self, *titles, host=None):
        host = host or self.host
        wait_until(lambda: sorted(self.screen.titles(host)) == sorted(titles), 20,
                   f"the windows {titles}", seen=lambda: self.screen.titles(host))

    def expect_on_top(self, window):
        number = self.screen.x11_window(window)
        wait_until(lambda: self.screen.x11.stacking()[-1:] == [number], 10,
                   f"the X window {number} on top", seen=self.screen.x11.stacking)

    def expect_stays_on_top(self, window):
        number = self.screen.x11_window(window)
        wait_until(lambda: self.screen.x11.has_state(number, "_NET_WM_STATE_ABOVE"))

    def pass_a_dialog(self):
        """Opens a dialog and ends it with a key, which comes after all keys before it."""
        call, window = self.show(self.host, "DLG_ShowPinDialog", "Enter PIN")
        self.expect_on_top(window)
        self.screen.key("Escape", window.find("password text"))
        self.assertEqual(CANCELLED, call.result())
        self.screen.wait_gone(window)

    def try_to_close(self, window):
        """Every attempt that a user or a window manager can make, and waits until it is served."""
        number = self.screen.x11_window(window)
        wait_until(lambda: self.screen.x11.holds_focus(number), what="the keyboard")
        self.screen.close_window(window)
        self.screen.x11.ask_manager_to_close(number)
        for key in ("Escape", "Return", "space", "alt+F4"):
            self.screen.x11.key(key)
        # The window manager moves it after it has taken its key, and the program hears of that
        # after all of these.
        before = window.extents
        self.screen.x11.move(number, 20, 30)
        wait_until(lambda: window.extents != before, what="a moved window")
        self.pass_a_dialog()

    def content(self, window):
        """The pixels of the window without its frame."""
        return self.screen.x11.pixels(self.screen.x11.geometry(self.screen.x11_window(window)))

    def painted(self, window):
        """The same once everything in it is there."""
        for node in window.in_reading_order():
            self.assertGreater(len(set(self.screen.pixels(node))), 1, node)
        return self.content(window)

    def expect_painted(self, window, pixels):
        wait_until(lambda: self.content(window) == pixels, what="the window as it was")
