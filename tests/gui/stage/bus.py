"""The message buses of a stage, as far as the stage and the accessibility client need them."""

import contextlib

import gi

gi.require_version("Gio", "2.0")
from gi.repository import Gio, GLib  # noqa: E402

from .wait import Gone, StageError, scaled  # noqa: E402


def timeout_ms():
    return int(scaled(3000))


class Bus:
    """One connection; every call has a time limit, and a failed one raises Gone."""

    def __init__(self, address):
        flags = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
                 | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
        try:
            self.connection = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
        except GLib.Error as error:
            raise StageError(f"cannot connect to the bus {address}: {error.message}") from error

    def call(self, owner, path, interface, method, signature="()", *arguments):
        """The reply's values as a tuple."""
        try:
            reply = self.connection.call_sync(
                owner, path, interface, method, GLib.Variant(signature, arguments), None,
                Gio.DBusCallFlags.NO_AUTO_START, timeout_ms(), None)
        except GLib.Error as error:
            raise Gone(f"{owner} {path} {method}: {error.message}") from error
        return reply.unpack()

    def call_all(self, owner, calls):
        """Makes calls (path, interface, method, signature, arguments...) together; their replies
        in order.
        """
        replies = [None] * len(calls)
        left = len(calls)

        def on_reply(connection, result, place):
            nonlocal left
            left -= 1
            try:
                replies[place] = connection.call_finish(result).unpack()
            except GLib.Error as error:
                replies[place] = Gone(f"{owner} {calls[place]}: {error.message}")

        for place, (path, interface, method, signature, *arguments) in enumerate(calls):
            self.connection.call(owner, path, interface, method,
                                 GLib.Variant(signature, tuple(arguments)), None,
                                 Gio.DBusCallFlags.NO_AUTO_START, timeout_ms(), None, on_reply,
                                 place)
        while left:
            GLib.MainContext.default().iteration(True)
        for reply in replies:
            if isinstance(reply, Gone):
                raise reply
        return replies

    def send(self, owner, path, interface, method, signature, *arguments):
        """Calls without waiting for the reply."""
        self.connection.call(owner, path, interface, method, GLib.Variant(signature, arguments),
                             None, Gio.DBusCallFlags.NO_AUTO_START, -1, None, None)
        self.connection.flush_sync(None)

    def close(self):
        with contextlib.suppress(GLib.Error):
            self.connection.close_sync(None)

    def _bus_call(self, method, signature, *arguments):
        return self.call("org.freedesktop.DBus", "/org/freedesktop/DBus", "org.freedesktop.DBus",
                         method, signature, *arguments)

    def has_owner(self, name):
        return self._bus_call("NameHasOwner", "(s)", name)[0]

    def process_id(self, name):
        return self._bus_call("GetConnectionUnixProcessID", "(s)", name)[0]

    def start_service(self, name):
        self._bus_call("StartServiceByName", "(su)", name, 0)

    def enable_accessibility(self):
        self.call("org.a11y.Bus", "/org/a11y/bus", "org.freedesktop.DBus.Properties", "Set",
                  "(ssv)", "org.a11y.Status", "IsEnabled", GLib.Variant("b", True))

    def accessibility_address(self):
        return self.call("org.a11y.Bus", "/org/a11y/bus", "org.a11y.Bus", "GetAddress")[0]
