"""The stage's servers: a private display, window manager, session bus and accessibility bus.

Everything a stage starts is ended by its process id, and everything it writes lies in one
directory that is removed again, also when the process that made the stage is killed.
"""

import contextlib
import ctypes
import json
import os
import select
import shutil
import signal
import subprocess
import tempfile
import time

from .bus import Bus
from .wait import StageError, scaled, wait_until
from .x11 import X11

BUS_CONFIG = """<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:dir={directory}</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
"""

# Animations and blinking cursors would make two screenshots of one state differ.
GTK_SETTINGS = """[Settings]
gtk-enable-animations=0
gtk-cursor-blink=0
gtk-im-module=gtk-im-context-simple
"""

# The only variables of the caller that reach a stage; the rest of a desktop session (locale,
# theme, input method, scaling) would change what the tests see.
KEPT_NAMES = ("PATH", "TMPDIR", "LD_LIBRARY_PATH", "LD_PRELOAD", "PYTHONPATH", "TERM", "USER")
KEPT_PREFIXES = ("ZELDLG_", "ASAN_", "UBSAN_", "TSAN_", "LSAN_", "GTEST_", "CTEST_", "GCOV_")

LAUNCHERS = ("/usr/libexec/at-spi-bus-launcher", "/usr/lib/at-spi2-core/at-spi-bus-launcher")

# Removes the directory once the pipe's other end is closed, however the stage's process ended.
# It is no descendant of that process, so that a test runner which kills a whole tree spares it.
# (The shell gives a background command /dev/null as input, hence descriptor 3.)
JANITOR = ("exec 3<&0; trap '' HUP INT TERM; "
           "(read -r _; exec rm -rf -- \"$0\") <&3 >/dev/null 2>&1 &")


def dying_with_parent(command, number="KILL"):
    """The command, sent a signal by the kernel when the process that started it dies."""
    return ["setpriv", "--pdeathsig", number, "--"] + list(command)


def adopt_orphans():
    """Makes this process the parent of what its children leave behind, so that it can end it."""
    set_child_subreaper = 36
    ctypes.CDLL(None, use_errno=True).prctl(set_child_subreaper, 1, 0, 0, 0)


def _children():
    """Process id to name, of this process's children; those that have ended are reaped."""
    running = {}
    for entry in os.listdir("/proc"):
        with contextlib.suppress(OSError, ValueError):
            with open(f"/proc/{int(entry)}/stat") as file:
                name, rest = file.read().split("(", 1)[1].rsplit(")", 1)
            if int(rest.split()[1]) == os.getpid() and os.waitpid(int(entry), os.WNOHANG)[0] == 0:
                running[int(entry)] = name
    return running


def end_children(grace=1):
    """Ends every child of this process; the names of those that did not end by themselves."""
    deadline = time.monotonic() + grace
    left = _children()
    while left and time.monotonic() < deadline:
        time.sleep(0.01)
        left = _children()
    for pid in left:
        os.kill(pid, signal.SIGKILL)
        os.waitpid(pid, 0)
    return [f"{name} (pid {pid})" for pid, name in left.items()]


def clean_environment():
    kept = {name: value for name, value in os.environ.items()
            if name in KEPT_NAMES or name.startswith(KEPT_PREFIXES)}
    kept.pop("ZELDLG_STAGE", None)
    kept.setdefault("PATH", "/usr/local/bin:/usr/bin:/bin")
    kept["LANG"] = "C.UTF-8"
    return kept


class Server:
    """One process of a stage; a grandchild (a service a bus started) has no `process`."""

    def __init__(self, name, pid, log_path=None, process=None):
        self.name = name
        self.pid = pid
        self._log_path = log_path
        self._process = process
        self.pidfd = os.pidfd_open(pid)

    def died(self):
        return self.ended_within(0)

    def ended_within(self, seconds):
        poller = select.poll()
        poller.register(self.pidfd, select.POLLIN)
        return bool(poller.poll(seconds * 1000))

    def log(self):
        if self._log_path is None:
            return ""
        with open(self._log_path, errors="replace") as log:
            return log.read()[-4000:]

    def obituary(self):
        status = ""
        if self._process is not None:
            self._process.wait()
            status = f" with status {self._process.returncode}"
        return f"{self.name} (pid {self.pid}) died{status}; its log:\n{self.log() or '(empty)'}"

    def kill(self):
        signal.pidfd_send_signal(self.pidfd, signal.SIGKILL)

    def stop(self):
        """Asks the process to end, insists after five seconds, and forgets it."""
        for number in (signal.SIGTERM, signal.SIGKILL):
            with contextlib.suppress(ProcessLookupError):
                signal.pidfd_send_signal(self.pidfd, number)
            if self.ended_within(scaled(5)):
                break
        if self._process is not None:
            self._process.wait()
        else:
            with contextlib.suppress(ChildProcessError):
                os.waitpid(self.pid, os.WNOHANG)
        os.close(self.pidfd)


class Stage:
    """A private display with its servers: `with Stage() as stage: ...`.

    `stage.environment` is what a program on this stage has to be started with. The options are
    the screen's size in pixels, the resolution toolkits are told (dots per inch), whether the
    accessibility bus runs, variables to add to the environment, and the command that is the
    window manager (an empty one: none).
    """

    MANAGER = "openbox --sm-disable"

    def __init__(self, size="1024x768", dpi=96, accessibility=True, extra=None,
                 manager=MANAGER):
        self._size = size
        self._dpi = dpi
        self._accessibility = accessibility
        self._extra = dict(extra or {})
        self._manager = manager.split()
        self._janitor = None
        self._buses = []
        self.servers = {}
        self.directory = None
        self.environment = None

    def __enter__(self):
        try:
            self._make_directories()
            self._start_display()
            self._start_session_bus()
            if self._manager:
                self._start_window_manager()
            if self._accessibility:
                self._start_accessibility()
            self.environment.update(self._extra)
            self._record()
        except BaseException:
            self.close()
            raise
        return self

    def __exit__(self, *_):
        self.close()

    def close(self):
        """Ends the servers, the newest first, and removes the directory."""
        for bus in self._buses:
            bus.close()
        self._buses = []
        while self.servers:
            self.servers.popitem()[1].stop()
        if self.directory is not None:
            shutil.rmtree(self.directory, ignore_errors=True)
        if self._janitor is not None:
            os.close(self._janitor)
            self._janitor = None

    def check(self):
        """Raises StageError with the logs when a server has died."""
        if not any(server.died() for server in self.servers.values()):
            return
        # The one that went down may be reaped later than those that it took with it.
        settled = time.monotonic() + 0.3
        for server in self.servers.values():
            server.ended_within(max(0, settled - time.monotonic()))
        raise StageError("\n".join(server.obituary() for server in self.servers.values()
                                   if server.died()))

    def _make_directories(self):
        self.directory = tempfile.mkdtemp(prefix="zeldlg-stage-")
        self._hire_janitor()
        adopt_orphans()
        environment = clean_environment()
        for name, part in (("HOME", "home"), ("ZEL_HOME", "zel"), ("XDG_RUNTIME_DIR", "run"),
                           ("XDG_CONFIG_HOME", "config"), ("XDG_CACHE_HOME", "cache"),
                           ("XDG_DATA_HOME", "data")):
            environment[name] = os.path.join(self.directory, part)
            os.mkdir(environment[name], 0o700)
        os.mkdir(os.path.join(self.directory, "log"))
        settings = os.path.join(environment["XDG_CONFIG_HOME"], "gtk-3.0")
        os.mkdir(settings)
        with open(os.path.join(settings, "settings.ini"), "w") as file:
            file.write(GTK_SETTINGS)
        # No settings daemon: what a test sees never depends on the user's desktop.
        environment["GSETTINGS_BACKEND"] = "memory"
        environment["ZELDLG_STAGE"] = self.directory
        if not self._accessibility:
            environment["NO_AT_BRIDGE"] = "1"
        self.environment = environment

    def _hire_janitor(self):
        reading, self._janitor = os.pipe()
        with contextlib.ExitStack() as stack:
            stack.callback(os.close, reading)
            subprocess.run(["sh", "-c", JANITOR, self.directory], stdin=reading, check=True,
                           start_new_session=True)

    def _start_display(self, *number):
        reading, writing = os.pipe()
        with contextlib.ExitStack() as stack:
            stack.callback(os.close, reading)
            # -r: a key held down by a slow machine must not repeat. -noreset: the keyboard map
            # and root properties outlive the first client.
            command = ["Xvfb", *number, "-displayfd", str(writing), "-screen", "0",
                       f"{self._size}x24", "-dpi", str(self._dpi), "-nolisten", "tcp", "-noreset",
                       "-r"]
            server = self._start("Xvfb", command, [writing])
            os.close(writing)
            self.environment["DISPLAY"] = ":" + self._answer(server, reading)
        self._tell_resolution()

    def lose_display(self):
        """Kills the display, as a crash would; what stands on it ends, too."""
        self.servers["Xvfb"].kill()
        for name in ("Xvfb", *self._manager[:1]):
            self.servers.pop(name).stop()

    def restart_display(self):
        """Brings the display back after its loss, by the same name."""
        self._start_display(self.environment["DISPLAY"])
        if self._manager:
            self._start_window_manager()

    def _tell_resolution(self):
        x11 = X11(self.environment["DISPLAY"])
        x11.set_resources(f"Xft.dpi:\t{self._dpi}\n")
        x11.close()

    def _start_window_manager(self):
        server = self._start(self._manager[0], self._manager)
        x11 = X11(self.environment["DISPLAY"])
        self._wait(server, x11.window_manager_ready, "the window manager")
        x11.close()

    def _start_session_bus(self):
        config = os.path.join(self.directory, "bus.conf")
        with open(config, "w") as file:
            file.write(BUS_CONFIG.format(directory=self.environment["XDG_RUNTIME_DIR"]))
        reading, writing = os.pipe()
        with contextlib.ExitStack() as stack:
            stack.callback(os.close, reading)
            server = self._start("dbus-daemon", [
                "dbus-daemon", f"--config-file={config}", f"--print-address={writing}",
                "--nofork", "--nopidfile"], [writing])
            os.close(writing)
            self.environment["DBUS_SESSION_BUS_ADDRESS"] = self._answer(server, reading)

    def _start_accessibility(self):
        launcher = next((path for path in LAUNCHERS if os.path.exists(path)), None)
        if launcher is None:
            raise StageError("at-spi-bus-launcher is not installed")
        server = self._start("at-spi-bus-launcher",
                             [launcher, "--launch-immediately", "--a11y=1"])
        session = Bus(self.environment["DBUS_SESSION_BUS_ADDRESS"])
        self._buses.append(session)
        self._wait(server, lambda: session.has_owner("org.a11y.Bus"), "the name org.a11y.Bus")
        session.enable_accessibility()
        address = session.accessibility_address()
        self.environment["AT_SPI_BUS_ADDRESS"] = address
        accessibility = Bus(address)
        self._buses.append(accessibility)
        accessibility.start_service("org.a11y.atspi.Registry")
        for name, owner in (("a11y dbus-daemon", "org.freedesktop.DBus"),
                            ("at-spi2-registryd", "org.a11y.atspi.Registry")):
            self.servers[name] = Server(name, accessibility.process_id(owner))

    def _start(self, name, command, pass_fds=()):
        log_path = os.path.join(self.directory, "log", name)
        with open(log_path, "wb") as log:
            try:
                # A gentle signal: the accessibility launcher has a bus of its own to end.
                process = subprocess.Popen(
                    dying_with_parent(command, "TERM"), stdin=subprocess.DEVNULL, stdout=log,
                    stderr=log, env=self.environment, pass_fds=pass_fds, cwd="/")
            except OSError as error:
                raise StageError(f"cannot start {name}: {error}") from error
        server = Server(name, process.pid, log_path, process)
        self.servers[name] = server
        return server

    def _answer(self, server, descriptor):
        """The line a server writes once it is ready."""
        text = b""
        deadline = time.monotonic() + scaled(20)
        while not text.endswith(b"\n"):
            left = deadline - time.monotonic()
            if left <= 0:
                raise StageError(f"{server.name} is not ready; its log:\n{server.log()}")
            if select.select([descriptor], [], [], left)[0]:
                piece = os.read(descriptor, 4096)
                if not piece:
                    raise StageError(server.obituary())
                text += piece
        return text.decode().strip()

    def _wait(self, server, predicate, what):
        def ready():
            if server.died():
                raise StageError(server.obituary())
            return predicate()
        wait_until(ready, 20, what, seen=server.log)

    def _record(self):
        """Lets a program on the stage find the servers (the self test ends one of them)."""
        pids = {server.name: server.pid for server in self.servers.values()}
        with open(os.path.join(self.directory, "servers.json"), "w") as file:
            json.dump(pids, file)
