"""The room that a control's text takes, with the stage's theme and font."""

import gi

gi.require_version("Gtk", "3.0")
from gi.repository import Gtk, Pango  # noqa: E402

WIDGETS = {"push button": Gtk.Label, "check box": Gtk.CheckButton, "radio button": Gtk.RadioButton}
# The least that the theme leaves on either side of a button's text; it depends on the button.
BUTTON_PADDING = 8


def natural_size(role, text, bold=False):
    """(width, height) in pixels that a button, check box or radio button needs at least."""
    widget = WIDGETS[role](label=text)
    if bold:
        attributes = Pango.AttrList()
        attributes.insert(Pango.attr_weight_new(Pango.Weight.BOLD))
        (widget if isinstance(widget, Gtk.Label) else widget.get_child()).set_attributes(attributes)
    window = Gtk.OffscreenWindow()
    window.add(widget)
    widget.show_all()
    size = widget.get_preferred_size()[1]
    window.destroy()
    padding = 2 * BUTTON_PADDING if role == "push button" else 0
    return size.width + padding, size.height
