#!/usr/bin/python3
"""The other program of a desktop: a window with one field. Tells each key that it gets, one a line.

    editor.py [--fullscreen | --maximized] TITLE
"""

import sys

import gi

gi.require_version("Gdk", "3.0")
gi.require_version("GdkX11", "3.0")
gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, GdkX11, Gtk  # noqa: E402


def tell(*words):
    print(*words, flush=True)


def on_key(_window, event):
    tell("key", Gdk.keyval_name(event.keyval))


def on_active(window, _property):
    tell("active" if window.is_active() else "inactive")


def on_mapped(window, _event):
    # Without a window manager nobody else gives it the keyboard.
    if isinstance(window.get_window(), GdkX11.X11Window):
        window.present_with_time(GdkX11.x11_get_server_time(window.get_window()))


def darken():
    """Told from a dialog above it, whether it has the keyboard or not."""
    style = Gtk.CssProvider()
    style.load_from_data(b"entry, entry:backdrop { background: #203020; color: white; }")
    Gtk.StyleContext.add_provider_for_screen(Gdk.Screen.get_default(), style, 800)


def main():
    darken()
    window = Gtk.Window(title=sys.argv[-1])
    window.add(Gtk.Entry())
    window.set_default_size(300, 200)
    if "--fullscreen" in sys.argv:
        window.fullscreen()
    if "--maximized" in sys.argv:
        window.maximize()
    window.connect("key-press-event", on_key)
    window.connect("notify::is-active", on_active)
    window.connect("map-event", on_mapped)
    window.connect("destroy", Gtk.main_quit)
    window.show_all()
    Gtk.main()


main()
