"""How a window is laid out: what is cut off, overlaps or is not the mirror image of another.

Boxes are (x, y, width, height) in pixels.
"""

import itertools
import math
import re

from stage.natural_size import natural_size

# Roles whose name is drawn into the control.
BUTTONS = ("push button", "check box", "radio button")
# Those that may take several lines.
WRAPPED = ("check box",)
# What holds others and is not drawn itself.
AROUND = ("frame", "dialog", "alert", "filler", "panel", "viewport")
COMBO_ARROW = 24
TITLE_BAR_BUTTONS = 75
RULE_STATES = ("Met: %s", "Not met: %s")
BUTTON_TEXTS = ("OK", "Cancel", "&Yes", "&No", "&Sign", "&Abort", "&Yes (%ds)", "%s (%ds)")
SCREEN = (0, 0, 1024, 768)


def inside(inner, outer):
    return (inner[0] >= outer[0] and inner[1] >= outer[1] and end(inner) <= end(outer)
            and inner[1] + inner[3] <= outer[1] + outer[3])


def overlap(one, other):
    return (one[0] < end(other) and other[0] < end(one)
            and one[1] < other[1] + other[3] and other[1] < one[1] + one[3])


def end(box):
    return box[0] + box[2]


def same_row(one, other):
    """Whether they stand side by side."""
    return one[1] < other[1] + other[3] / 2 < one[1] + one[3]


def controls(parent):
    """What is drawn below an object, in the order of the tree; what scrolls counts as one."""
    for child in parent.children:
        if child.role in AROUND:
            yield from controls(child)
        else:
            yield child


def roles(found):
    return [control.role for control in found]


LINES = ("label", "redundant object")  # the latter where a screen reader hears the text as a whole


def first_labels(found):
    """Without the labels that follow a label: the lines of one text may be one label each."""
    return [control for before, control in zip([None, *found], found)
            if before is None or control.role not in LINES or before.role not in LINES]


def text_gaps(control):
    """The room left and right of a label's text."""
    return control.text_box[0] - control.box[0], end(control.box) - end(control.text_box)


class Layout:
    """The complaints about one window."""

    def __init__(self, window, translate=str, from_right=False, screen=SCREEN):
        self.window = window
        self.screen = screen
        self.from_right = from_right
        self.controls = list(controls(window))
        # A ball is a button whose name is not drawn.
        self.balls = tuple(translate(state).split("%s")[0] for state in RULE_STATES)
        # What the host or the toolkit has no part in.
        self.button_texts = {translate(text).replace("%s", translate("OK")).replace("&", "")
                             for text in BUTTON_TEXTS}
        self.bold = {translate("&Sign").replace("&", "")}

    def complaints(self):
        if not inside(self.window.box, self.screen):
            yield f"the window is larger than the screen: {self.window}"
        area = self.window.children[0].box
        for control in self.controls:
            if not inside(control.box, area):
                yield f"{control} is cut off at the edge of {area}"
            yield from self.text_complaints(control)
        for one, other in itertools.combinations(self.controls, 2):
            if overlap(one.box, other.box):
                yield f"{one} overlaps {other}"

    def is_aligned(self, lines):
        """Whether lines start at one margin, or are centred."""
        starts = [end(line) if self.from_right else line[0] for line in lines]
        middles = [line[0] + end(line) for line in lines]
        return max(starts) - min(starts) <= 1 or max(middles) - min(middles) <= 2

    def differences_to_mirror_image(self, mirrored):
        """What stands in `mirrored` elsewhere than this layout in a mirror."""
        ours, theirs = self.controls, mirrored.controls
        if roles(ours) != roles(theirs):
            ours, theirs = first_labels(ours), first_labels(theirs)
        if roles(ours) != roles(theirs):
            yield f"other controls: {roles(ours)} and {roles(theirs)}"
            return
        pairs = list(zip(ours, theirs))
        for (one, one_mirrored), (other, other_mirrored) in itertools.permutations(pairs, 2):
            if (same_row(one.box, other.box) and end(one.box) <= other.box[0]
                    and end(other_mirrored.box) > one_mirrored.box[0]):
                yield f"{one_mirrored} is not right of {other_mirrored}"
        left = min(control.box[0] for control in self.controls)
        right = max(end(control.box) for control in mirrored.controls)
        for control, control_mirrored in pairs:
            if control.box[0] == left and abs(end(control_mirrored.box) - right) > 1:
                yield f"{control_mirrored} does not end at the right margin {right}"
            before, after = text_gaps(control_mirrored)
            is_centred = abs(before - after) <= 2
            if control.text and text_gaps(control)[0] <= 1 < after and not is_centred:
                yield f"the text of {control_mirrored} does not start at its right"

    def title_width(self):
        """The pixels that a window manager needs for the title and its buttons."""
        return natural_size("push button", self.window.name, bold=True)[0] + TITLE_BAR_BUTTONS

    def text_complaints(self, control):
        if control.role == "label" and control.text:
            if not inside(control.text_box, control.box):
                yield f"{control} has no room for its text, which takes {control.text_box}"
            if not self.is_aligned(control.line_boxes):
                yield f"{control} has ragged lines: {control.line_boxes}"
        elif control.role == "combo box":
            text = next(seen.text for seen in control.walk() if seen.text)
            if control.box[2] < natural_size("push button", text)[0] + COMBO_ARROW:
                yield f"{control} is narrower than its text {text!r}"
        elif control.role in BUTTONS and not control.name.startswith(self.balls):
            needed = natural_size(control.role, control.name, control.name in self.bold)
            text = re.sub(r"-?\d+", "%d", control.name)
            if control.role == "push button" and text not in self.button_texts:
                yield f"{control} is not from the catalogue"
            lines = math.ceil(control.box[3] / needed[1]) if control.role in WRAPPED else 1
            if lines * control.box[2] < needed[0] or control.box[3] < needed[1]:
                yield f"{control} is smaller than its text, which takes {needed}"
