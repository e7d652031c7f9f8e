"""The desktops that the dialogs are tried on: window managers, and Wayland compositors in a window
of the stage's display. Each gives what a program there is started with.
"""

import contextlib
import os
import shutil
import subprocess
import tempfile

from stage import Stage, wait_until
from stage.servers import dying_with_parent
from stage.x11 import X11

I3_CONFIG = "font pango:monospace 8\n"
SWAY_CONFIG = "xwayland enable\noutput * scale {scale}\noutput * mode --custom {size}\nexec {tell}\n"
SIZE = "1000x700"


class Place:
    """A desktop while it runs: `environment` for programs, `x11` for keys, clicks and pixels."""

    def __init__(self, stage, environment, screen):
        self.stage = stage
        self.environment = environment
        self.x11 = screen
        self.compositor = None

    def type(self, text):
        self.x11.type_text(text)


@contextlib.contextmanager
def _x11(manager):
    with tempfile.TemporaryDirectory() as directory:
        config = os.path.join(directory, "i3.conf")
        with open(config, "w") as file:
            file.write(I3_CONFIG)
        stage = Stage(size=SIZE, manager=manager.format(i3=config), accessibility=False)
        with stage, contextlib.closing(_eyes(stage)) as x11:
            yield Place(stage, dict(stage.environment), x11)


def _eyes(stage):
    return X11(stage.environment["DISPLAY"])


@contextlib.contextmanager
def compositor(command, environment):
    """Runs `command(directory, program)`, a compositor that starts the program; gives its process
    and where programs find it.
    """
    with contextlib.ExitStack() as stack:
        directory = stack.enter_context(tempfile.TemporaryDirectory())
        told, tell = os.path.join(directory, "told"), os.path.join(directory, "tell")
        with open(tell, "w") as file:
            file.write(f"#!/bin/sh\nenv -0 >{told}.new\nmv {told}.new {told}\nexec sleep 1000000\n")
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


class Compositor:
    """One that runs in a window of a stage. Programs on it are Wayland's or, if asked, X's."""

    def __init__(self, name, for_x, scale=1):
        self._name, self._for_x, self._scale = name, for_x, scale

    def _command(self, directory, tell):
        width, height = SIZE.split("x")
        if self._name == "mutter":
            return ["mutter", "--wayland", "--nested", "--", tell]
        if self._name == "kwin":
            # A copy: the program's capability is not granted everywhere, and it does not start then.
            program = os.path.join(directory, "kwin_wayland")
            shutil.copyfile("/usr/bin/kwin_wayland", program)
            os.chmod(program, 0o755)
            return [program, "--xwayland", "--no-lockscreen", "--no-global-shortcuts",
                    "--width", width, "--height", height, tell]
        config = os.path.join(directory, "sway.conf")
        with open(config, "w") as file:
            file.write(SWAY_CONFIG.format(size=SIZE, tell=tell, scale=self._scale))
        # It refuses to be root's.
        other_user = ["unshare", "--user", "--map-user=1000", "--map-group=1000", "--"]
        return (other_user if os.getuid() == 0 else []) + ["sway", "--config", config]

    @contextlib.contextmanager
    def place(self):
        with contextlib.ExitStack() as stack:
            stage = stack.enter_context(Stage(size="1024x768", accessibility=False))
            x11 = stack.enter_context(contextlib.closing(_eyes(stage)))
            environment = {**stage.environment, "WLR_BACKENDS": "x11", "WLR_RENDERER": "pixman",
                           "MUTTER_DEBUG_DUMMY_MODE_SPECS": SIZE, "KWIN_COMPOSE": "Q"}
            process, inner = stack.enter_context(compositor(self._command, environment))
            place = Place(stage, {**stage.environment, **inner}, x11)
            if self._for_x:
                place.environment.pop("WAYLAND_DISPLAY")
                place.environment["GDK_BACKEND"] = "x11"
            else:
                place.environment["GDK_BACKEND"] = "wayland"
            place.compositor = process
            wait_until(lambda: any(x11.holds_focus(number) for number, _, _ in x11.windows()), 20,
                       "the compositor's window", seen=x11.windows)
            yield place


def _window_manager(command):
    return lambda: _x11(command)


PLACES = {
    "mutter (X11)": _window_manager("mutter --x11"),
    "metacity": _window_manager("metacity"),
    "kwin_x11": _window_manager("kwin_x11"),
    "xfwm4": _window_manager("xfwm4 --compositor=off"),
    "icewm": _window_manager("icewm"),
    "i3": _window_manager("i3 -c {i3}"),
    "openbox": _window_manager(Stage.MANAGER),
    "no window manager": _window_manager(""),
    "mutter (Wayland)": Compositor("mutter", False).place,
    "mutter (Xwayland)": Compositor("mutter", True).place,
    "KWin (Wayland)": Compositor("kwin", False).place,
    "KWin (Xwayland)": Compositor("kwin", True).place,
    "sway (Wayland)": Compositor("sway", False).place,
    "sway (Xwayland)": Compositor("sway", True).place,
}
