"""What a screen reader is told while something happens: the events of the accessibility bus."""

import collections
import contextlib

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from .wait import wait_until  # noqa: E402

INTERFACE = "org.a11y.atspi.Event.Object"
KINDS = ("object:announcement", "object:property-change", "object:state-changed",
         "object:text-changed")

# `kind` is for example "PropertyChange", `detail` "accessible-name", `value` the new name.
Event = collections.namedtuple("Event", "kind detail value path")


class Events:
    """Collects the events from now on: `with Events(screen.bus) as events: ...`"""

    def __init__(self, bus):
        self._bus = bus
        self._seen = []

    def __enter__(self):
        match = f"type='signal',interface='{INTERFACE}'"
        with contextlib.ExitStack() as stack:
            subscription = self._bus.connection.signal_subscribe(
                None, INTERFACE, None, None, None, Gio.DBusSignalFlags.NO_MATCH_RULE,
                self._on_signal)
            stack.callback(self._bus.connection.signal_unsubscribe, subscription)
            # Programs send what somebody has registered for.
            self._call_bus("AddMatch", match)
            stack.callback(self._call_bus, "RemoveMatch", match)
            for kind in KINDS:
                self._call_registry("RegisterEvent", "(sass)", kind, [], "")
                stack.callback(self._call_registry, "DeregisterEvent", "(s)", kind)
            self._undo = stack.pop_all()
        return self

    def __exit__(self, *_):
        self._undo.close()

    def _call_bus(self, method, match):
        self._bus.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                       method, "(s)", match)

    def _call_registry(self, method, signature, *arguments):
        self._bus.call("org.a11y.atspi.Registry", "/org/a11y/atspi/registry",
                       "org.a11y.atspi.Registry", method, signature, *arguments)

    def _on_signal(self, _connection, _sender, path, _interface, kind, values, *_):
        detail, _, _, value, *_ = values.unpack()
        self._seen.append(Event(kind, detail, value, path))

    def seen(self, kind=None):
        """Everything that has come so far."""
        context = GLib.MainContext.default()
        while context.iteration(False):
            pass
        return [event for event in self._seen if kind in (None, event.kind)]

    def forget(self):
        """What has come so far counts no more."""
        self.seen()
        self._seen.clear()

    def names(self, beginning):
        """The names with that beginning that objects were given, one after the other."""
        return self._texts("accessible-name", beginning)

    def descriptions(self, beginning):
        """The same of their descriptions."""
        return self._texts("accessible-description", beginning)

    def _texts(self, detail, beginning):
        return [event.value for event in self.seen("PropertyChange")
                if event.detail == detail and event.value.startswith(beginning)]

    def wait_for(self, kind, value, node=None):
        """Waits for an event with that value, from that object if one is given."""
        def found():
            return next((event for event in self.seen(kind) if event.value == value
                         and (node is None or event.path == node.path)), None)
        return wait_until(found, 10, f"the event {kind} {value!r}", seen=self.seen)
