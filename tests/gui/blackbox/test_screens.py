#!/usr/bin/python3
"""Every dialog on small screens and with large texts: what can be used lies inside its window and
the screen, or scrolls into view when it gets the keyboard; the buttons that end a dialog never
scroll. The toolkit has nothing to say on standard error.

Three screens with the longest texts; all of them in all languages with ZELDLG_SCREENS=all, see
script/screens.
"""

import os
import re
import unittest
from typing import NamedTuple

from layout import Layout, inside
from stage import Screen, Stage, take_snapshot, wait_until
from test_languages import LOCALES, LanguageCase

ALL = os.environ.get("ZELDLG_SCREENS") == "all"
LANGUAGES = tuple(LOCALES) if ALL else ("eo",)
NORMAL_DPI = 96
# Of all dialogs; the host's texts are what this is for as well.
USED = ("push button", "check box", "radio button", "combo box", "password text", "text",
        "toggle button", "list box", "tree table", "table")
PANE = "scroll pane"
# A control that is larger than what it scrolls in need not be seen to the last pixel.
ROOM_IN_VIEW = 0.9
GTK_MESSAGE = re.compile(r"(Gtk|Gdk|GLib|Pango|Atk)\S*(WARNING|CRITICAL)")


class Monitor(NamedTuple):
    """A screen: pixels, text size in per cent, how many pixels a toolkit's pixel has."""
    width: int
    height: int
    text: int = 100
    scale: int = 1

    def __str__(self):
        return f"{self.width}x{self.height}, text {self.text} %, scale {self.scale}"


def seen_in(view, box):
    """Whether all of it is in view, or as much of it as there is room for."""
    visible = [min(box[axis] + box[axis + 2], view[axis] + view[axis + 2])
               - max(box[axis], view[axis]) for axis in (0, 1)]
    return all(length >= min(box[axis + 2], ROOM_IN_VIEW * view[axis + 2])
               for axis, length in enumerate(visible))


def boxes_around(seen, around=()):
    """Every control below an object with the scroll panes that it is in, the outermost first."""
    for child in seen.children:
        yield child, around
        yield from boxes_around(child, (*around, child) if child.role == PANE else around)


class Screens(LanguageCase):
    def check_all(self, monitor, languages=LANGUAGES):
        size = f"{monitor.width}x{monitor.height}"
        dpi = NORMAL_DPI * monitor.text // 100
        extra = {"GDK_SCALE": str(monitor.scale)} if monitor.scale != 1 else {}
        self.monitor = (0, 0, monitor.width // monitor.scale, monitor.height // monitor.scale)
        stage = self.enterContext(Stage(size, dpi, extra=extra))
        self.addCleanup(os.environ.update, dict(os.environ))
        os.environ.update(stage.environment)
        self.screen = Screen()
        self.addCleanup(self.screen.close)
        for language in languages:
            host = self.host_in(language)
            self.monitor_name = str(monitor).replace("/", "_")
            for dialog, window in self.each_window(host):
                with self.subTest(str(monitor), language=language, dialog=dialog.name):
                    self.assertEqual([], list(self.complaints(window)))
            self.assertEqual([], GTK_MESSAGE.findall(host.stderr()), host.stderr())
            host.close(False)

    def complaints(self, window):
        snapshot = take_snapshot(window)
        client = snapshot.children[0].box
        yield from Layout(snapshot, self.translate, self.language == "he",
                          self.monitor).complaints()
        ends = self.ending_buttons()
        for seen, panes in boxes_around(snapshot):
            if seen.role not in USED:
                continue
            if seen.name in ends and (panes or not inside(seen.box, client)):
                yield f"{seen} is not always to be seen"
            elif "sensitive" in seen.states and panes:
                yield from self.scrolling_complaints(seen, panes, client)

    def ending_buttons(self):
        """Names of the buttons that are there whatever scrolls."""
        return {self.translate(text).replace("&", "")
                for text in ("OK", "Cancel", "&Sign", "&Yes", "&No", "&Abort")}

    def scrolling_complaints(self, seen, panes, client):
        """What scrolls by itself, a list or a long text, is as large as its own pane."""
        *around, own = panes
        scrolls_itself = any(child.node == seen.node for child in own.children)
        target = own if scrolls_itself else seen
        if scrolls_itself and not around:
            return
        outer = around[0] if scrolls_itself else panes[0]
        view = outer.box
        if not inside(view, client):
            yield f"{outer} is not in the window"
        if seen_in(view, target.box):
            return
        taker = next((each for each in seen.walk() if "focusable" in each.states), None)
        stop = min((each for each in outer.walk()
                    if each.role == seen.role and "focusable" in each.node.states),
                   key=lambda each: abs(each.box[1] - seen.box[1]), default=None)
        if taker is None and stop is None:
            yield f"{seen} is out of view, and cannot have the keyboard"
            return
        (taker or stop).node.focus()
        # Several that are one stop for Tab: arrow keys lead on.
        for _ in range(6):
            if taker is not None or seen.node.focused:
                break
            before = self.screen.focused()
            self.screen.key("Down")
            wait_until(lambda: self.screen.focused() not in (None, before), what="the next")
        try:
            wait_until(lambda: seen_in(view, target.node.extents), what="the scrolling")
        except AssertionError:
            yield f"{seen} is at {target.node.extents} with the keyboard, outside of {view}"

    def test_800_by_480(self):
        self.check_all(Monitor(800, 480))

    def test_1366_by_768_with_text_of_150_per_cent(self):
        self.check_all(Monitor(1366, 768, text=150))

    def test_800_by_480_at_twice_the_scale(self):
        self.check_all(Monitor(1600, 960, scale=2))

    # As small as 512 by 384: smaller than what dialogs are made for. (From right to left the
    # toolkit scrolls to the wrong place sideways, as the policed dialog must there.)
    @unittest.skipUnless(ALL, "script/screens")
    def test_1024_by_768_at_twice_the_scale(self):
        self.check_all(Monitor(1024, 768, scale=2), [each for each in LANGUAGES if each != "he"])

    @unittest.skipUnless(ALL, "script/screens")
    def test_1024_by_600(self):
        self.check_all(Monitor(1024, 600))

    @unittest.skipUnless(ALL, "script/screens")
    def test_1366_by_768_with_text_of_125_per_cent(self):
        self.check_all(Monitor(1366, 768, text=125))

    @unittest.skipUnless(ALL, "script/screens")
    def test_1024_by_768_with_text_of_150_per_cent(self):
        self.check_all(Monitor(1024, 768, text=150))


if __name__ == "__main__":
    unittest.main()
