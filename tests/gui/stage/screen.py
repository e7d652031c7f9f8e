"""What a user of the stage's screen sees and does: windows, texts, buttons, keys."""

import contextlib
import os
import signal
import subprocess
import tempfile
import time

from .bus import Bus
from .host import helpers
from .node import ROOT, Node
from .servers import dying_with_parent
from .wait import Gone, StageError, scaled, wait_until
from .x11 import X11

# A window is painted in pieces: it counts as painted when it has stayed the same for so long.
STILL_SECONDS = 0.15


class Screen:
    """The screen of a stage; without arguments, of the stage that this process runs on.

    A "host" below is anything with a `pid`, or a process id: its windows are also those of the
    process that the library shows them in. None means every program.
    """

    def __init__(self, environment=None):
        environment = os.environ if environment is None else environment
        for name in ("ZELDLG_STAGE", "DISPLAY", "AT_SPI_BUS_ADDRESS"):
            if name not in environment:
                raise StageError(f"not on a stage: {name} is not set (use run_on_stage)")
        self.x11 = X11(environment["DISPLAY"])
        self.bus = Bus(environment["AT_SPI_BUS_ADDRESS"])
        self._clipboard = None

    def close(self):
        self._drop_clipboard()
        self.bus.close()
        self.x11.close()

    # ---- windows

    def windows(self, host=None):
        """The accessible windows on the screen."""
        return [window for program in self._programs(_process_ids(host))
                for window in self._windows_of(program)]

    def _programs(self, wanted):
        # Programs without a window are not asked: one that has ended its user interface stays on
        # the bus and does not answer.
        owners = {owner for _, owner, _ in self.x11.windows()}
        registry = Node(self, "org.a11y.atspi.Registry", ROOT)
        for program in registry.children:
            try:
                owner = program.process_id
            except Gone:
                continue
            if owner in owners and (wanted is None or owner in wanted):
                yield program

    @staticmethod
    def _windows_of(program):
        try:
            return [window for window in program.children if window.showing]
        except Gone:
            return []

    def accessible_windows(self, host, title):
        """The program's windows with that title, also where X knows none of them (Wayland)."""
        registry = Node(self, "org.a11y.atspi.Registry", ROOT)
        wanted = _process_ids(host)
        return [window for program in registry.children if program.process_id in wanted
                for window in program.children if window.showing and window.name == title]

    def titles(self, host=None):
        """The titles of the windows, from the window manager: the program need not answer."""
        wanted = _process_ids(host)
        return [title for _, owner, title in self.x11.windows()
                if wanted is None or owner in wanted]

    def find_window(self, title, host=None, timeout=20):
        """The only window with that title, once it is on the screen and managed."""
        def managed():
            found = [window for window in self.windows(host) if window.name == title]
            if len(found) != 1:
                return None  # several: one of them may be on its way out
            found[0].x11_number = self._match_x11(found[0])
            return found[0] if found[0].x11_number else None

        return wait_until(managed, timeout, f"the one window {title!r}",
                          seen=lambda: self.dump(host))

    def wait_gone(self, window, timeout=10):
        """Waits until the window has left the screen."""
        number = window.x11_number
        wait_until(lambda: number not in [entry[0] for entry in self.x11.windows()]
                   and not (window.exists and window.showing),
                   timeout, f"the end of the X window {number}", seen=self.dump)

    def x11_window(self, window, timeout=10):
        """The number that X knows the window by."""
        if window.x11_number is None:
            window.x11_number = wait_until(
                lambda: self._match_x11(window), timeout, f"the X window of {window!r}",
                seen=self.x11.windows)
        return window.x11_number

    def _match_x11(self, window):
        """Matches by program and title. Of several with these, one may be on its way out and
        stand where the other does: the keyboard tells them apart, for the others their place.
        """
        wanted = (window.process_id, window.name)
        numbers = [entry[0] for entry in self.x11.windows() if entry[1:] == wanted]
        if window.active:
            return next(filter(self.x11.holds_focus, numbers), None)
        namesakes = [other for other in self.windows(wanted[0]) if other.name == wanted[1]]
        if len(numbers) != len(namesakes):
            return None  # the window manager has not caught up
        if len(numbers) > 1:
            place = window.extents
            numbers = [number for number in numbers
                       if self.x11.geometry(number, frame=True) == place]
        return numbers[0] if len(numbers) == 1 else None

    def close_window(self, window):
        """Sends what the window manager sends for the close button, close box or not."""
        self.x11.send_delete(self.x11_window(window))

    def dump(self, host=None):
        """Everything on the screen, for messages."""
        return "\n".join([f"X: {self.x11.windows()}"]
                         + [window.dump() for window in self.windows(host)])

    # ---- keys

    def focused(self, host=None):
        """The object that has the keyboard, or None."""
        for window in self.windows(host):
            try:
                if window.active:
                    return next((node for node in window.walk() if node.focused), None)
            except Gone:
                continue
        return None

    def wait_focused(self, node=None, timeout=10):
        """Waits until that object, or any, has the keyboard, and gives it."""
        def has_keyboard():
            focused = self.focused()
            return focused if focused is not None and node in (None, focused) else None
        return wait_until(has_keyboard, timeout, f"the keyboard focus on {node or 'anything'!r}",
                          seen=self.dump)

    def type_text(self, text, into=None):
        """Types into the object that has the keyboard; with `into`, waits until that is it."""
        self.wait_focused(into)
        self.x11.type_text(text)

    def key(self, combination, into=None):
        """Presses for example `Tab`, `Return`, `Escape`, `shift+Tab`, `alt+s`, `ctrl+v`."""
        self.wait_focused(into)
        self.x11.key(combination)

    def fill(self, window, values):
        """Types the values into the window's fields, in their order; an empty one into none."""
        if not values:
            return

        def editable():
            found = [node for node in window.walk() if "editable" in node.states]
            return found if len(found) >= len(values) else None
        fields = wait_until(editable, what=f"{len(values)} fields", seen=window.dump)
        for field, value in zip(fields, values):
            if value:
                field.focus()
                self.type_text(value, field)
                wait_until(lambda: field.length == len(value), what="the typed characters")

    # ---- clipboard

    def paste(self, text, into=None):
        """Pastes from the clipboard; gives as soon as the program has been sent the text."""
        self.set_clipboard(text)
        asked = self._clipboard_asked()
        self.key("ctrl+v", into)
        wait_until(lambda: self._clipboard_asked() > asked, 30, "somebody to ask for the text")

    def set_clipboard(self, text):
        """Offers the text for pasting, until the next one."""
        self._drop_clipboard()
        self._clipboard_log = tempfile.TemporaryFile()
        self._clipboard = subprocess.Popen(self._xclip("-verbose"), stdin=subprocess.PIPE,
                                           stderr=self._clipboard_log)
        with self._clipboard.stdin as pipe:
            pipe.write(text.encode())
        wait_until(lambda: self.clipboard() == text, 10, "the text in the clipboard")

    @contextlib.contextmanager
    def held_clipboard(self):
        """While it lasts, whoever wants to paste gets no answer."""
        asked = self._clipboard_asked()
        self._clipboard.send_signal(signal.SIGSTOP)
        try:
            yield
        finally:
            self._clipboard.send_signal(signal.SIGCONT)
        wait_until(lambda: self._clipboard_asked() > asked, 30, "somebody to ask for the text")

    def clipboard(self):
        """What can be pasted; None when nothing can."""
        read = subprocess.run(self._xclip("-out"), stdout=subprocess.PIPE,
                              stderr=subprocess.DEVNULL)
        return read.stdout.decode() if read.returncode == 0 else None

    def _clipboard_asked(self):
        return os.pread(self._clipboard_log.fileno(), 1 << 20, 0).count(b"request number")

    def _xclip(self, *words):
        return dying_with_parent(["xclip", "-display", self.x11.name, "-selection", "clipboard",
                                  *words])

    def _drop_clipboard(self):
        if self._clipboard is not None:
            self._clipboard.terminate()
            self._clipboard.wait()
            self._clipboard_log.close()
            self._clipboard = None

    def go_to(self, window):
        """As a user does who wants to type there: a PIN pad opens without the keyboard."""
        number = self.x11_window(window)
        self.x11.ask_manager_to_activate(number)
        wait_until(lambda: self.x11.holds_focus(number) and window.active, what="the keyboard",
                   seen=self.dump)
        return number

    # ---- pictures

    def pixels(self, node):
        """The (red, green, blue) of every pixel where the object stands, once it is painted:
        a window is there before its content is, and shows one colour until then.
        """
        deadline = time.monotonic() + scaled(1)
        while True:
            found = self.x11.pixels(node.extents)
            if len(set(found)) > 1 or time.monotonic() > deadline:
                return found

    def screenshot(self, path, window=None):
        """Writes a PNG file of the screen, or of the window with its frame."""
        self.x11.screenshot(path, window and self.x11.geometry(self.x11_window(window), frame=True))

    def photograph(self, path, window, margin=0):
        """The same with some pixels around it, once the window has the keyboard, is painted and
        changes no more.
        """
        self.photograph_frame(path, self.go_to(window), margin)

    def photograph_frame(self, path, number, margin=0, still_seconds=STILL_SECONDS):
        """The same of the window that X knows by this number, wherever the keyboard is."""
        seen, since = None, time.monotonic()

        def still():
            nonlocal seen, since
            now = self.x11.bytes(self.x11.geometry(number, frame=True))
            if now != seen:
                seen, since = now, time.monotonic()
            return len(set(seen)) > 3 and time.monotonic() - since > still_seconds
        wait_until(still, what="a picture that stays the same")
        x, y, width, height = self.x11.geometry(number, frame=True)
        self.x11.screenshot(path, (x - margin, y - margin, width + 2 * margin, height + 2 * margin))


def _process_ids(host):
    """The processes whose windows are the host's; None for all."""
    if host is None:
        return None
    process_id = getattr(host, "pid", host)
    return {process_id, *helpers(process_id)}
