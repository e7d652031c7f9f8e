"""What a user of the stage's screen sees and does: windows, texts, buttons, keys.

Accessible objects are asked over the accessibility bus at every look, without any cache. An
object, or a program, that does not answer any more raises Gone, which `wait_until` takes as
"not yet".
"""

import os
import subprocess
import tempfile
import time

from .bus import Bus
from .servers import dying_with_parent
from .wait import Gone, StageError, scaled, wait_until
from .x11 import X11

ATSPI = "org.a11y.atspi."
ROOT = "/org/a11y/atspi/accessible/root"
NULL = "/org/a11y/atspi/null"

# The bits of an accessible state set that the tests look at.
STATES = {1: "active", 4: "checked", 6: "defunct", 7: "editable", 8: "enabled", 11: "focusable",
          12: "focused", 16: "modal", 17: "multi-line", 20: "pressed", 22: "selectable",
          23: "selected", 24: "sensitive", 25: "showing", 26: "single-line", 30: "visible",
          32: "has-popup", 39: "default", 41: "checkable"}
RELATIONS = {1: "label-for", 2: "labelled-by", 16: "description-for", 17: "described-by"}
ON_SCREEN = 0
# A window is painted in pieces: it counts as painted when it has stayed the same for so long.
STILL_SECONDS = 0.15

# Roles whose accessible name is the text that is drawn.
DRAWN = ("label", "push button", "check box", "radio button", "toggle button", "table cell",
         "list item", "menu item", "page tab")


class Node:
    """One accessible object. Two nodes are equal when they stand for the same object."""

    def __init__(self, screen, owner, path):
        self._screen = screen
        self.owner = owner
        self.path = path
        self.x11_number = None  # of a window, once it has been looked up

    def __eq__(self, other):
        return isinstance(other, Node) and (self.owner, self.path) == (other.owner, other.path)

    def __hash__(self):
        return hash((self.owner, self.path))

    def __repr__(self):
        try:
            return f"<{self.role} {self.name!r} {' '.join(sorted(self.states))}>"
        except Gone:
            return f"<gone {self.path}>"

    def _call(self, interface, method, signature="()", *arguments):
        return self._screen.bus.call(self.owner, self.path, interface, method, signature,
                                     *arguments)

    def ask_all(self, questions):
        """The answers to questions to this object's program, (path, interface, method, signature,
        arguments...) each, for one wait.
        """
        return self._screen.bus.call_all(self.owner, questions)

    def beside(self, owner, path):
        """Another object on the same screen."""
        return Node(self._screen, owner, path)

    def _get(self, interface, name):
        return self._call("org.freedesktop.DBus.Properties", "Get", "(ss)", ATSPI + interface,
                          name)[0]

    def _nodes(self, references):
        return [Node(self._screen, owner, path) for owner, path in references if path != NULL]

    # ---- what it is

    @property
    def name(self):
        return self._get("Accessible", "Name")

    @property
    def description(self):
        return self._get("Accessible", "Description")

    @property
    def role(self):
        """For example `push button`, `label`, `password text`, `check box`, `dialog`."""
        return self._call(ATSPI + "Accessible", "GetRoleName")[0]

    @property
    def attributes(self):
        return self._call(ATSPI + "Accessible", "GetAttributes")[0]

    @property
    def states(self):
        low, high = self._call(ATSPI + "Accessible", "GetState")[0]
        bits = low | high << 32
        return {name for bit, name in STATES.items() if bits >> bit & 1}

    @property
    def enabled(self):
        return {"enabled", "sensitive"} <= self.states

    @property
    def focused(self):
        return "focused" in self.states

    @property
    def showing(self):
        return {"showing", "visible"} <= self.states

    @property
    def checked(self):
        return "checked" in self.states

    @property
    def active(self):
        """Of a window: whether it has the keyboard."""
        return "active" in self.states

    @property
    def exists(self):
        try:
            return "defunct" not in self.states
        except Gone:
            return False

    @property
    def text(self):
        """The text of an entry or a label; a password entry answers its mask characters."""
        return self._call(ATSPI + "Text", "GetText", "(ii)", 0, -1)[0]

    @property
    def text_attributes(self):
        """Attributes of the first character, for example `fg-color`, `weight`, `size`."""
        return self.text_attributes_at(0)

    def text_attributes_at(self, place):
        return self._call(ATSPI + "Text", "GetAttributes", "(i)", place)[0]

    @property
    def default_text_attributes(self):
        """Those that hold where nothing else is said: a label's font, for example."""
        return self._call(ATSPI + "Text", "GetDefaultAttributes")[0]

    @property
    def length(self):
        """Number of characters of an entry."""
        return self._get("Text", "CharacterCount")

    @property
    def caret(self):
        """Where the caret of an entry is, in characters."""
        return self._get("Text", "CaretOffset")

    @property
    def extents(self):
        """(x, y, width, height) on the screen, in pixels; a window's with its frame."""
        return tuple(self._call(ATSPI + "Component", "GetExtents", "(u)", ON_SCREEN)[0])

    def character_extents(self, place):
        """(x, y, width, height) of a character of a text on the screen, in pixels."""
        return self._call(ATSPI + "Text", "GetCharacterExtents", "(iu)", place, ON_SCREEN)

    @property
    def process_id(self):
        return self._screen.bus.process_id(self.owner)

    @property
    def relations(self):
        """Relation names with their targets, for example {"labelled-by": [node]}."""
        return {RELATIONS.get(kind, str(kind)): self._nodes(targets)
                for kind, targets in self._call(ATSPI + "Accessible", "GetRelationSet")[0]}

    # ---- what it holds

    @property
    def children(self):
        return self._nodes(self._call(ATSPI + "Accessible", "GetChildren")[0])

    def walk(self):
        """The object and everything below it that is on the screen, parents first."""
        try:
            if not self.showing:
                return
            children = self.children
        except Gone:
            return
        yield self
        for child in children:
            yield from child.walk()

    def find_all(self, role=None, name=None):
        """Everything on the screen below this with that role and that name, now."""
        return [node for node in self.walk()
                if (role is None or node.role == role) and (name is None or node.name == name)]

    def find(self, role=None, name=None, timeout=10):
        """The only such object, as soon as there is one; several are an error."""
        found = wait_until(lambda: self.find_all(role, name), timeout,
                           f"role {role!r}, name {name!r}", seen=self.dump)
        if len(found) > 1:
            raise AssertionError(f"{len(found)} objects with role {role!r} and name {name!r} in\n"
                                 + self.dump())
        return found[0]

    def in_reading_order(self):
        """Everything below it that holds nothing, row by row from the top, from the left."""
        placed = []
        for node in self.walk():
            try:
                if not node.children:
                    x, y, _, height = node.extents
                    placed.append((y, y + height, x, node))
            except Gone:
                continue
        placed.sort(key=lambda entry: (entry[0] + entry[1], entry[2]))
        rows, bottom = [], None
        for top, low, x, node in placed:
            if bottom is None or (top + low) / 2 >= bottom:
                rows.append([])
                bottom = low
            rows[-1].append((x, node))
        return [node for row in rows for _, node in sorted(row, key=lambda entry: entry[0])]

    def labels(self):
        """The texts of the labels, in reading order."""
        return self.texts(("label",))

    def texts(self, roles=DRAWN):
        """Every text that is drawn, in reading order: labels, buttons, boxes, list rows."""
        return [node.name for node in self.in_reading_order() if node.name and node.role in roles]

    def dump(self, indent=0):
        """The tree below the object, for messages."""
        lines = [" " * indent + repr(self)]
        try:
            lines += [child.dump(indent + 2) for child in self.children]
        except Gone as gone:
            lines.append(" " * indent + f"  gone: {gone}")
        return "\n".join(lines)

    # ---- what can be done with it

    @property
    def actions(self):
        return [action[0] for action in self._call(ATSPI + "Action", "GetActions")[0]]

    @property
    def key_bindings(self):
        """The keys of its actions, for example `<Alt>s`; what has no actions has none."""
        if ATSPI + "Action" not in self._call(ATSPI + "Accessible", "GetInterfaces")[0]:
            return []
        return [action[2] for action in self._call(ATSPI + "Action", "GetActions")[0]
                if action[2]]

    def press(self):
        """Does what a click on it does (its first action), as a screen reader would."""
        if not self.enabled:
            raise AssertionError(f"{self!r} cannot be pressed")
        # A button that opens a modal window answers only when that is closed again.
        self._screen.bus.send(self.owner, self.path, ATSPI + "Action", "DoAction", "(i)", 0)

    def focus(self):
        self._call(ATSPI + "Component", "GrabFocus")
        wait_until(lambda: self.focused, 10, f"the keyboard focus on {self!r}",
                   seen=self._screen.dump)

    def select(self, index):
        """Selects a child of a list, by its place."""
        self._call(ATSPI + "Selection", "SelectChild", "(i)", index)

    def set_text(self, text):
        """Replaces an entry's text at once, as pasting over it does."""
        self._call(ATSPI + "EditableText", "SetTextContents", "(s)", text)

    def click(self):
        """Presses the mouse button in its middle."""
        x, y, width, height = self.extents
        self._screen.x11.click(x + width // 2, y + height // 2)


class Screen:
    """The screen of a stage; without arguments, of the stage that this process runs on.

    A "host" below is anything with a `pid`, or a process id; None means every program.
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
        return [window for program in self._programs(_process_id(host))
                for window in self._windows_of(program)]

    def _programs(self, process_id):
        # Programs without a window are not asked: one that has ended its user interface stays on
        # the bus and does not answer.
        owners = {owner for _, owner, _ in self.x11.windows()}
        registry = Node(self, "org.a11y.atspi.Registry", ROOT)
        for program in registry.children:
            try:
                owner = program.process_id
            except Gone:
                continue
            if owner in owners and process_id in (None, owner):
                yield program

    @staticmethod
    def _windows_of(program):
        try:
            return [window for window in program.children if window.showing]
        except Gone:
            return []

    def titles(self, host=None):
        """The titles of the windows, from the window manager: the program need not answer."""
        process_id = _process_id(host)
        return [title for _, owner, title in self.x11.windows() if process_id in (None, owner)]

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

    def screenshot(self, path, window=None, margin=0):
        """Writes a PNG file of the screen, or of the window with its frame and some pixels."""
        area = None
        if window is not None:
            x, y, width, height = self.x11.geometry(self.x11_window(window), frame=True)
            area = x - margin, y - margin, width + 2 * margin, height + 2 * margin
        self.x11.screenshot(path, area)

    def photograph(self, path, window, margin=0):
        """The same of the window once it has the keyboard, is painted and changes no more."""
        number = self.x11_window(window)
        wait_until(lambda: self.x11.holds_focus(number), what="the keyboard")
        seen, since = None, time.monotonic()

        def still():
            nonlocal seen, since
            pixels = self.x11.pixels(self.x11.geometry(number, frame=True))
            if pixels != seen:
                seen, since = pixels, time.monotonic()
            return len(set(seen)) > 1 and time.monotonic() - since > STILL_SECONDS
        wait_until(still, what="a picture that stays the same")
        self.screenshot(path, window, margin)


def _process_id(host):
    return getattr(host, "pid", host)
