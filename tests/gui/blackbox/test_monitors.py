#!/usr/bin/python3
"""Two monitors side by side: every window opens on the one that the user's pointer is on.

Those of a compositor without a display below it: toolkits do not see more than one of Xvfb's.
"""

import os
import unittest
import unittest.mock

from desktops.places import compositor
from stage import Host, wait_until
from stage.dialogs import find_dialog
from stage.x11 import X11

WIDTH = 1000
LEFT, RIGHT = 0, WIDTH
# One of each kind that finds its place in a way of its own.
KINDS = ("pin", "pad Modification", "select-token", "select-id", "locked", "keygen")


def mutter(_directory, program):
    monitor = ["--virtual-monitor", f"{WIDTH}x700"]
    return ["mutter", "--wayland", "--headless", *monitor, *monitor, "--", program]


class Monitors(unittest.TestCase):
    def setUp(self):
        self.environment = self.enterContext(compositor(mutter, dict(os.environ)))[1]
        del self.environment["WAYLAND_DISPLAY"]
        self.enterContext(unittest.mock.patch.dict(os.environ, self.environment, GDK_BACKEND="x11"))
        self.x11 = X11(os.environ["DISPLAY"])
        self.addCleanup(self.x11.close)

    def windows(self, title):
        return [number for number, _, name in self.x11.windows() if name == title]

    def expect_on(self, monitor, host, dialog):
        self.x11.point(monitor + WIDTH // 2, 600)
        call = host.call(dialog.export, **dialog.arguments)
        [number] = wait_until(lambda: self.windows(dialog.title), 20, f"{dialog.title!r}",
                              seen=self.x11.windows)

        def is_there():
            x, _, width, _ = self.x11.geometry(number, frame=True)
            return monitor <= x and x + width <= monitor + WIDTH
        # Windows are in the list before they have their place.
        wait_until(is_there, what=f"its place on the monitor that begins at {monitor}",
                   seen=lambda: self.x11.geometry(number, frame=True))
        if dialog.modal:
            self.x11.send_delete(number)
        call.result()
        if dialog.hide:
            host.run(dialog.hide)
        wait_until(lambda: not self.windows(dialog.title), what="the end of the window")

    def test_every_window_opens_on_the_pointers_monitor(self):
        with Host() as host:
            for kind in KINDS:
                with self.subTest(kind):
                    self.expect_on(RIGHT, host, find_dialog(kind))
            self.expect_on(LEFT, host, find_dialog(KINDS[0]))


if __name__ == "__main__":
    unittest.main()
