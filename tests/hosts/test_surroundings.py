#!/usr/bin/python3
"""Hosts in odd surroundings, whose dialogs the library shows from its helper: forked, killed,
without a home, with others' children, signals, descriptors and files around them.
"""

import contextlib
import os
import shutil
import signal
import tempfile
import time
import unittest

from evidence import process_of, record
from stage import (CANCELLED, FAILED, OK, Screen, Stage, StageTestCase, library_path, require_private_mounts,
                   wait_until)

PIN = "DLG_ShowPinDialog"
TITLE = "Enter PIN"
HELPER = {"ZELDLG_PROCESS": "helper"}
# How soon the windows of a host that was killed have to be gone.
VANISH_SECONDS = 0.1
# Opens so many descriptors, one of them a pipe to the test, and becomes the host.
MANY_FILES = """
import os, sys
pipe = os.open(sys.argv[1], os.O_WRONLY)
for _ in range(int(sys.argv[2])):
    os.set_inheritable(os.open("/dev/null", os.O_RDONLY), True)
os.dup2(pipe, int(sys.argv[3]))
os.execv(sys.argv[4], sys.argv[4:])
"""


class HostCase(StageTestCase):
    def enter_pin(self, host, screen=None, process="helper", what=""):
        """Types a PIN into a dialog of the host, which is shown by that process; `what` says of
        which host that tells.
        """
        screen = screen or self.screen
        call = host.call(PIN)
        wait_until(lambda: call.done or TITLE in screen.titles(host), 20, "a dialog")
        self.assertFalse(call.done, f"{call.done and call.result():#x} instead of a dialog")
        window = screen.find_window(TITLE, host)
        self.assertEqual(process, process_of(screen, window, host))
        screen.type_text("2468", window.find("password text"))
        wait_until(lambda: window.find("push button", "OK").enabled, what="OK")
        screen.key("Return")
        self.assertEqual(OK, call.result())
        self.assertEqual(b"2468", call.value("pin"))
        screen.wait_gone(window)
        if what:
            record(what, process)

    def wait_vanished(self, window, what, process):
        """That it takes little time, from now on, until the window has left the screen."""
        number, began = self.screen.x11_window(window), time.monotonic()
        wait_until(lambda: number not in [each[0] for each in self.screen.x11.windows()],
                   what="the end of the window")
        elapsed = time.monotonic() - began
        self.assert_takes_at_most(VANISH_SECONDS, elapsed)
        record(what, process, vanished=elapsed, dialog="open")


class Children(HostCase):
    def test_a_forked_child_is_served_as_its_parent_was(self):
        host = self.start_host()
        self.enter_pin(host, process="own")
        host.become_child()
        self.enter_pin(host, what="A child forked after the first call")
        host.run("DLG_Finalize")
        self.enter_pin(host)

    def test_a_child_forked_while_a_dialog_is_open_is_served_beside_it(self):
        host = self.start_host()
        _, window = self.show(host, PIN, TITLE)
        host.become_child()
        self.enter_pin(host, what="A child forked while a dialog is open")
        self.assertTrue(window.showing)

    def test_a_child_of_a_host_with_a_helper_gets_one_of_its_own(self):
        host = self.start_host(environment=HELPER)
        self.enter_pin(host)
        theirs = host.helpers()
        host.become_child()
        self.enter_pin(host)
        self.assertEqual(1, len(host.helpers()))
        self.assertNotEqual(theirs, host.helpers())

    def test_a_host_that_waits_for_any_child_sees_none_of_the_librarys(self):
        host = self.start_host(environment=HELPER)
        host.command("reap")
        for _ in range(3):
            self.enter_pin(host, what="A host that waits for any child (`waitpid(-1)` in a loop)")
            host.run("DLG_Finalize")
            wait_until(lambda: not host.helpers(), what="the end of the helper")
        self.assertEqual(1, host.command("reaped")["count"], "the host's own")

    def test_a_host_that_ignores_the_end_of_children_is_served(self):
        for how, what in (("ignore", "that ignores SIGCHLD"),
                          ("handler", "with a handler for SIGCHLD")):
            host = self.start_host(environment=HELPER)
            host.command(f"signal SIGCHLD {how}")
            before = host.signals()
            for _ in range(2):
                self.enter_pin(host, what=f"A host {what}")
                host.run("DLG_Finalize")
            self.assertEqual(before, host.signals())


class Deaths(HostCase):
    def test_the_windows_of_a_host_that_is_killed_are_gone_at_once(self):
        for process in ("own", "helper"):
            host = self.start_host(environment={"ZELDLG_PROCESS": process})
            _, window = self.show(host, PIN, TITLE)
            self.assertEqual(process, process_of(self.screen, window, host))
            host.kill()
            self.wait_vanished(window, "A host killed with a dialog open", process)
            wait_until(lambda: not host.helpers(), what="the end of the helper")

    def test_a_helper_that_is_killed_fails_its_call_and_the_next_has_another(self):
        host = self.start_host(environment=HELPER)
        for _ in range(3):
            call, window = self.show(host, PIN, TITLE)
            waiting = host.call(PIN, thread="second")
            helper, = host.helpers()
            os.kill(helper, signal.SIGKILL)
            self.wait_vanished(window, "A helper killed with a dialog open", "helper")
            self.assertEqual(FAILED, call.result())
            self.assertTrue(call.untouched("pin"))
            self.screen.close_window(self.screen.find_window(TITLE, host))
            self.assertEqual(CANCELLED, waiting.result())
            self.assertNotIn(helper, host.helpers())
        self.enter_pin(host)

    def test_a_display_that_comes_back_is_used_again(self):
        for process in ("auto", "helper"):
            with self.subTest(process=process), Stage() as stage:
                host = self.start_host(
                    environment={**stage.environment, "ZELDLG_PROCESS": process}, strict=False)
                screen = Screen(stage.environment)
                call = host.call(PIN)
                before = process_of(screen, screen.find_window(TITLE, host), host)
                screen.close()  # a client that is still connected ends with its display
                stage.lose_display()
                self.assertEqual(FAILED, call.result())
                self.assertEqual(FAILED, host.run(PIN))
                stage.restart_display()
                with contextlib.closing(Screen(stage.environment)) as screen:
                    self.enter_pin(host, screen)
                record("An X server that dies and comes back", f"{before}, then helper")
                self.assertEqual(0, host.quit(), host.stderr())


class Surroundings(HostCase):
    def test_a_host_without_a_home_is_served(self):
        for process in ("own", "helper"):
            host = self.start_host(environment={"HOME": None, "ZEL_HOME": None,
                                                "ZELDLG_PROCESS": process})
            self.enter_pin(host, process=process, what="A host without `HOME`")

    def test_of_a_thousand_open_files_none_reaches_the_helper(self):
        pipe = os.path.join(os.environ["ZELDLG_STAGE"], "pipe")
        os.mkfifo(pipe)
        self.addCleanup(os.unlink, pipe)
        reading = os.open(pipe, os.O_RDONLY | os.O_NONBLOCK)
        self.addCleanup(os.close, reading)
        host = self.start_host(environment=HELPER, prefix=[
            "/usr/bin/python3", "-c", MANY_FILES, pipe, "1000", "1010"])
        self.assertLess(1000, len(host.fds()))
        self.enter_pin(host, what="A host with 1,000 open descriptors")
        before = len(host.fds())
        self.enter_pin(host)
        self.assertEqual(before, len(host.fds()))
        with self.assertRaises(BlockingIOError):  # the host has it
            os.read(reading, 1)
        host.command("close 1010")
        self.assertEqual(b"", os.read(reading, 1))
        self.assertEqual(1, len(host.helpers()))


    def test_another_gtk_that_is_loaded_is_enough_for_a_helper(self):
        with open("/proc/self/maps") as file:
            any_library = next(line.split()[-1] for line in file if "/libm.so" in line)
        for name in ("libgtk-4.so.1", "libgtk-x11-2.0.so.0"):
            with tempfile.TemporaryDirectory() as folder:
                library = shutil.copyfile(any_library, os.path.join(folder, name))
                self.enter_pin(self.start_host(environment={"LD_PRELOAD": library}))


class OtherRoots(HostCase):
    """Roots of the host's own: what there is of the machine is what a program needs."""

    def setUp(self):
        super().setUp()
        require_private_mounts()
        self.stage = os.environ["ZELDLG_STAGE"]

    def start_in(self, *words):
        # Accessibility and display are sockets below /tmp, which is the machine's.
        return self.start_host(environment=HELPER, prefix=["bwrap", *words])

    def root(self, *parts):
        """A root of those parts of the machine alone, read-only, and of what the stage has."""
        words = ["--dev", "/dev", "--proc", "/proc", "--bind", "/tmp", "/tmp"]
        for part in parts:
            if os.path.islink(part):
                words += ["--symlink", os.readlink(part), part]
            elif os.path.exists(part):
                words += ["--ro-bind", part, part]
        return words

    def test_a_read_only_root_is_served(self):
        host = self.start_in("--ro-bind", "/", "/", "--dev", "/dev", "--proc", "/proc",
                             "--bind", self.stage, self.stage)
        self.enter_pin(host, what="A read-only root")

    def test_a_host_in_a_root_of_its_own_is_served(self):
        host = self.start_in(*self.root("/usr", "/bin", "/lib", "/lib64", "/etc",
                                        self.build_folder()))
        self.enter_pin(host, what="A root of its own (chroot) with the library in it")

    def test_where_its_helper_is_not_in_that_root_calls_fail_at_once(self):
        host = self.start_in(
            *self.root("/usr", "/bin", "/lib", "/lib64", "/etc", self.build_folder()),
            "--tmpfs", os.path.join(self.build_folder(), "zeldlg"))
        self.assert_pin_fails(host)
        record("A root of its own without the helper in it", "nobody", dialog="calls fail",
               keyboard="")

    @staticmethod
    def build_folder():
        return os.path.dirname(os.path.realpath(library_path()))


if __name__ == "__main__":
    unittest.main()
