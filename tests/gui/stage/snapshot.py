"""A window as it is on the screen, taken at once: a few rounds of questions instead of hundreds.

The library answers at its pace of ten milliseconds, so what counts is how often it is waited for.
"""

import dataclasses

from .node import ATSPI, NULL, ON_SCREEN, STATES, role_of
from .wait import Gone, wait_until

PROPERTIES = "org.freedesktop.DBus.Properties"
NO_BOX = (0, 0, 0, 0)


@dataclasses.dataclass
class Seen:
    """An object on the screen. Boxes are (x, y, width, height) in pixels."""
    node: object
    role: str
    name: str
    description: str
    states: set
    box: tuple
    children: list = dataclasses.field(default_factory=list)
    # Of labels and texts: what is drawn, the place of all of it, and that of each line.
    text: str = ""
    text_box: tuple = NO_BOX
    line_boxes: list = dataclasses.field(default_factory=list)
    # Of buttons: the keys that press them from anywhere in the window, for example `<Alt>s`.
    access_keys: list = dataclasses.field(default_factory=list)

    def walk(self):
        yield self
        for child in self.children:
            yield from child.walk()

    def __str__(self):
        return f"{self.role} {self.name!r} at {self.box}"


def take_snapshot(window):
    """The window's showing objects as a tree of Seen."""
    def taken_at_rest():
        root = _take(window)
        return root if root.box == window.extents else None  # it was moved meanwhile
    return wait_until(taken_at_rest, what=f"a still picture of {window!r}")


def _take(window):
    root = _look([window])[0]
    if root is None:
        raise Gone(f"{window!r} is not on the screen")
    level = [root]
    while level:
        level = _add_children(level)
    objects = list(root.walk())
    _add_texts([seen for seen in objects if seen.role in ("label", "text")])
    _add_access_keys([seen for seen in objects if seen.role == "push button"])
    return root


def _ask(nodes, interface, method, signature="()", *arguments):
    return nodes[0].ask_all([(node.path, interface, method, signature, *arguments)
                             for node in nodes])


def _look(nodes):
    """For each node what it is, or None when it is not on the screen."""
    questions = [question for node in nodes for question in (
        (node.path, ATSPI + "Accessible", "GetRoleName", "()"),
        (node.path, PROPERTIES, "Get", "(ss)", ATSPI + "Accessible", "Name"),
        (node.path, PROPERTIES, "Get", "(ss)", ATSPI + "Accessible", "Description"),
        (node.path, ATSPI + "Accessible", "GetState", "()"),
        (node.path, ATSPI + "Component", "GetExtents", "(u)", ON_SCREEN))]
    answers = iter(nodes[0].ask_all(questions))
    found = []
    for node in nodes:
        role, name, description, state, box = (next(answers)[0] for _ in range(5))
        bits = state[0] | state[1] << 32
        states = {name for bit, name in STATES.items() if bits >> bit & 1}
        seen = Seen(node, role_of(role), name, description, states, tuple(box))
        found.append(seen if {"showing", "visible"} <= states else None)
    return found


def _add_children(parents):
    """Fills in the children of each; gives them all."""
    references = _ask([parent.node for parent in parents], ATSPI + "Accessible", "GetChildren")
    pairs = [(parent, parent.node.beside(owner, path))
             for parent, (children,) in zip(parents, references)
             for owner, path in children if path != NULL]
    if not pairs:
        return []
    added = []
    for (parent, _), seen in zip(pairs, _look([node for _, node in pairs])):
        if seen is not None:
            parent.children.append(seen)
            added.append(seen)
    return added


def _add_texts(objects):
    if not objects:
        return
    texts = _ask([seen.node for seen in objects], ATSPI + "Text", "GetText", "(ii)", 0, -1)
    for seen, (text,) in zip(objects, texts):
        seen.text = text
    ranges = [(seen, start, end) for seen in objects if seen.text and seen.role == "label"
              for start, end in [(0, len(seen.text)), *_lines(seen.text)]]
    if not ranges:
        return
    boxes = objects[0].node.ask_all([
        (seen.node.path, ATSPI + "Text", "GetRangeExtents", "(iiu)", start, end, ON_SCREEN)
        for seen, start, end in ranges])
    for (seen, _, _), box in zip(ranges, boxes):
        seen.line_boxes.append(tuple(box))
    for seen in objects:
        if seen.line_boxes:
            seen.text_box = seen.line_boxes.pop(0)


def _lines(text):
    """Where the lines that are not empty start and end."""
    start = 0
    for line in text.split("\n"):
        if line:
            yield start, start + len(line)
        start += len(line) + 1


def _add_access_keys(buttons):
    if not buttons:
        return
    answers = _ask([button.node for button in buttons], ATSPI + "Action", "GetActions")
    for button, (actions,) in zip(buttons, answers):
        button.access_keys = [key for _, _, key in actions if key]
