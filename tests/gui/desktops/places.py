"""The desktops that the dialogs are tried on: window managers, and Wayland compositors, in a window
of the stage's display or without any. Each gives what a program there is started with.
"""

import contextlib
import os
import shutil
import subprocess
import tempfile

from gi.repository import Gio, GLib

from stage import Stage, wait_until
from stage.servers import dying_with_parent
from stage.x11 import X11

WIDTH, HEIGHT = 1000, 700
SWAY_CONFIG = """
xwayland enable
output * mode --custom {size}
output * scale {scale}
exec {tell}
"""
REMOTE = "org.gnome.Mutter.RemoteDesktop"


class Place:
    """A desktop while it runs: `environment` for programs; `eyes`, the display to look at and to
    type on (None: nothing can be seen); `x11`, what its X programs are on (None: there are none).
    """

    def __init__(self, environment, eyes, x11, process=None):
        self.environment, self.eyes, self.x11, self.compositor = environment, eyes, x11, process
        self.type = eyes.type_text if eyes else None
        self.editor = None  # the other program, where it is open

    def monitors(self):
        """Where they are to be seen, from left to right: (x, y, width, height)."""
        windows = sorted(self.eyes.geometry(number) for number, _, _ in self.eyes.windows())
        if self.compositor is None or not windows:
            windows = [self.eyes.geometry(self.eyes.root)]
        # One window may show several.
        return [(x + part, y, WIDTH, height) for x, y, width, height in windows
                for part in range(0, max(width - WIDTH, 0) + 1, WIDTH)]


@contextlib.contextmanager
def compositor(command, environment):
    """Runs `command(directory, program)`, a compositor that starts the program; gives its process
    and where programs find it.
    """
    with contextlib.ExitStack() as stack:
        directory = stack.enter_context(tempfile.TemporaryDirectory())
        told, tell = os.path.join(directory, "told"), os.path.join(directory, "tell")
        with open(tell, "w") as file:
            file.write(f"#!/bin/sh\nenv -0 >{told}.new\nmv {told}.new {told}\n"
                       "exec setpriv --pdeathsig KILL -- sleep 1000000\n")
        os.chmod(tell, 0o755)
        log = stack.enter_context(open(os.path.join(directory, "log"), "w+"))
        process = subprocess.Popen(dying_with_parent(command(directory, tell), "TERM"),
                                   env=environment, stdout=log, stderr=log)
        stack.callback(process.wait)
        stack.callback(process.kill)

        def seen():
            log.seek(0)
            return log.read()[-3000:]
        wait_until(lambda: os.path.exists(told), 30, "the start of the compositor", seen=seen)
        with open(told) as file:
            inner = dict(pair.split("=", 1) for pair in file.read().split("\0") if pair)
        yield process, {name: inner[name] for name in ("DISPLAY", "WAYLAND_DISPLAY", "XAUTHORITY")
                        if name in inner}


class RemoteKeyboard:
    """Types into a compositor that has no display below it: mutter's interface for that."""

    def __init__(self, address):
        flags = (Gio.DBusConnectionFlags.AUTHENTICATION_CLIENT
                 | Gio.DBusConnectionFlags.MESSAGE_BUS_CONNECTION)
        self._bus = Gio.DBusConnection.new_for_address_sync(address, flags, None, None)
        path = "/org/gnome/Mutter/RemoteDesktop"
        self._session = self._call(path, REMOTE, "CreateSession").unpack()[0]
        self._notify("Start")
        self._press(0xffe1)  # Shift: the first key makes the keyboard, and may get lost by that

    def _call(self, path, interface, method, arguments=None):
        return self._bus.call_sync(REMOTE, path, interface, method, arguments, None, 0, 20000, None)

    def _notify(self, method, arguments=None):
        self._call(self._session, REMOTE + ".Session", method, arguments)

    def type(self, text):
        for character in text:
            self._press(0xff0d if character == "\n" else ord(character))

    def _press(self, symbol):
        for down in (True, False):
            self._notify("NotifyKeyboardKeysym", GLib.Variant("(ub)", (symbol, down)))


def _size(scale):
    return f"{WIDTH * scale}x{HEIGHT * scale}"


def _mutter(directory, tell, scale, monitors):
    return ["mutter", "--wayland", "--nested", "--", tell]


def _headless_mutter(directory, tell, scale, monitors):
    return ["mutter", "--wayland", "--headless",
            *["--virtual-monitor", _size(scale)] * monitors, "--", tell]


# It has its programs started by others, and begins with a view of all windows.
GNOME_SHELL = r"""
exec >"$0.log" 2>&1
setpriv --pdeathsig KILL -- gnome-shell --nested --wayland --wayland-display gnome-shell-0 &
until grep -q "GNOME Shell started" "$0.log"; do sleep 0.1; done
gdbus call --session -d org.gnome.Shell -o /org/gnome/Shell -m org.freedesktop.DBus.Properties.Set \
    org.gnome.Shell OverviewActive "<false>"
WAYLAND_DISPLAY=gnome-shell-0
DISPLAY=$(sed -n "s/.*public X11 display \(:[0-9]*\).*/\1/p" "$0.log")
XAUTHORITY=$(echo "$XDG_RUNTIME_DIR"/.mutter-Xwaylandauth.*)
export WAYLAND_DISPLAY DISPLAY XAUTHORITY
"$0" &
wait
"""


def _gnome_shell(directory, tell, scale, monitors):
    return ["sh", "-c", GNOME_SHELL, tell]


def _kwin(directory, tell, scale, monitors):
    # A copy: the program's capability is not granted everywhere, and it does not start then.
    program = os.path.join(directory, "kwin_wayland")
    shutil.copyfile("/usr/bin/kwin_wayland", program)
    os.chmod(program, 0o755)
    return [program, "--xwayland", "--no-lockscreen", "--no-global-shortcuts",
            "--width", str(WIDTH * scale), "--height", str(HEIGHT * scale), "--scale", str(scale),
            "--output-count", str(monitors), tell]


def _sway(directory, tell, scale, monitors):
    config = os.path.join(directory, "sway.conf")
    with open(config, "w") as file:
        file.write(SWAY_CONFIG.format(tell=tell, scale=scale, size=_size(scale)))
    # It refuses to be root's.
    other_user = ["unshare", "--user", "--map-user=1000", "--map-group=1000", "--"]
    return (other_user if os.getuid() == 0 else []) + ["sway", "--config", config]


@contextlib.contextmanager
def _manager(name, scale, monitors):
    with contextlib.ExitStack() as stack:
        if name.startswith("i3"):
            config = stack.enter_context(tempfile.NamedTemporaryFile("w"))
            config.write("font pango:monospace 8\n")
            config.flush()
            name += " -c " + config.name
        stage = stack.enter_context(Stage(_size(scale), manager=name, accessibility=False))
        eyes = stack.enter_context(contextlib.closing(X11(stage.environment["DISPLAY"])))
        yield Place({**stage.environment, "GDK_SCALE": str(scale)}, eyes, eyes)


@contextlib.contextmanager
def _compositor(command, for_x, scale, monitors):
    with contextlib.ExitStack() as stack:
        room = f"{WIDTH * scale * monitors + 60}x{HEIGHT * scale + 60}"
        stage = stack.enter_context(Stage(room, accessibility=False))
        environment = {**stage.environment, "WLR_BACKENDS": "x11", "WLR_RENDERER": "pixman",
                       "WLR_X11_OUTPUTS": str(monitors), "KWIN_COMPOSE": "Q",
                       "MUTTER_DEBUG_DUMMY_MODE_SPECS": _size(scale),
                       "MUTTER_DEBUG_NUM_DUMMY_MONITORS": str(monitors),
                       "MUTTER_DEBUG_DUMMY_MONITOR_SCALES": ",".join([str(scale)] * monitors)}
        # gnome-shell asks it for much that it can do without.
        environment["DBUS_SYSTEM_BUS_ADDRESS"] = environment["DBUS_SESSION_BUS_ADDRESS"]
        headless = command is _headless_mutter
        if headless:
            del environment["DISPLAY"]
        process, inner = stack.enter_context(
            compositor(lambda *files: command(*files, scale, monitors), environment))
        inner["GDK_BACKEND"] = "x11" if for_x else "wayland"
        x11 = eyes = None
        if for_x:
            stack.enter_context(_authority(inner.get("XAUTHORITY")))
            x11 = stack.enter_context(contextlib.closing(X11(inner["DISPLAY"])))
            del inner["WAYLAND_DISPLAY"]
        if not headless:
            eyes = stack.enter_context(contextlib.closing(X11(stage.environment["DISPLAY"])))
            wait_until(lambda: any(eyes.holds_focus(number) for number, _, _ in eyes.windows()), 20,
                       "the compositor's window", seen=eyes.windows)
        place = Place({**stage.environment, **inner}, eyes, x11, process)
        if monitors > 1 and eyes:
            wait_until(lambda: _stand_apart(place, monitors), 10, "the monitors", eyes.windows)
        if headless:
            place.type = RemoteKeyboard(stage.environment["DBUS_SESSION_BUS_ADDRESS"]).type
        yield place


def _stand_apart(place, monitors):
    """Whether as many monitors can be seen beside each other; puts those in windows there."""
    for step, (number, _, _) in enumerate(place.eyes.windows()):
        place.eyes.move(number, step * (WIDTH + 20), 0)
    places = place.monitors()
    return len(places) == monitors and places[1][0] >= places[0][0] + WIDTH


@contextlib.contextmanager
def _authority(path):
    """Lets this process open the display; Xlib asks the environment."""
    before = os.environ.get("XAUTHORITY")
    if path:
        os.environ["XAUTHORITY"] = path
    try:
        yield
    finally:
        os.environ.pop("XAUTHORITY", None)
        if before:
            os.environ["XAUTHORITY"] = before


# Each is called with a scale and a number of monitors. (On Xvfb toolkits see one monitor only.)
PLACES = {
    **{name: (lambda scale, monitors, command=command: _manager(command, scale, monitors))
       for name, command in {
           "mutter (X11)": "mutter --x11", "metacity": "metacity", "kwin_x11": "kwin_x11",
           "xfwm4": "xfwm4 --compositor=off", "icewm": "icewm", "i3": "i3",
           "openbox": Stage.MANAGER, "no window manager": ""}.items()},
    **{f"{name} ({kind})": (lambda scale, monitors, command=command, for_x=for_x:
                            _compositor(command, for_x, scale, monitors))
       for name, command in {"mutter": _mutter, "mutter, headless": _headless_mutter,
                             "gnome-shell": _gnome_shell, "KWin": _kwin, "sway": _sway}.items()
       for kind, for_x in {"Wayland": False, "Xwayland": True}.items()},
}
# It brings a whole desktop with it, so it is not installed for this.
UNUSED = {name for name in PLACES if "gnome-shell" in name and not shutil.which("gnome-shell")}
