"""One accessible object on a screen: what it is, what it holds, what can be done with it.

Objects are asked over the accessibility bus at every look, without any cache. An object, or a
program, that does not answer any more raises Gone, which `wait_until` takes as "not yet".
"""

from .wait import Gone, wait_until

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

# Roles that newer accessibility libraries (from 2.56 on) name anew, under the names that tests have.
ROLES = {"button": "push button"}

# Roles whose accessible name is the text that is drawn.
DRAWN = ("label", "push button", "check box", "radio button", "toggle button", "table cell",
         "list item", "menu item", "page tab")


def role_of(answer):
    """A role by the name that tests have for it, whatever the accessibility library calls it."""
    return ROLES.get(answer, answer)


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
        return role_of(self._call(ATSPI + "Accessible", "GetRoleName")[0])

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
        self._screen.x11.click(*self._middle())

    def double_click(self):
        self._screen.x11.double_click(*self._middle())

    def _middle(self):
        x, y, width, height = self.extents
        return x + width // 2, y + height // 2
