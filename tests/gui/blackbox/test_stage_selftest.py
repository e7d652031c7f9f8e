#!/usr/bin/python3
"""The stage tested on itself, with a small GTK window of its own as the subject.

A fault of the stage must be told apart from a fault of the library; this file needs no library.
"""

import json
import os
import signal
import subprocess
import sys
import tempfile
import unittest

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), ".."))

from stage import (Gone, Screen, Stage, StageError, StageTestCase, folder_with,  # noqa: E402
                   require_private_mounts, scaled, wait_until)
from stage.servers import dying_with_parent  # noqa: E402
from stage.wait import load_factor  # noqa: E402

RUN_ON_STAGE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "run_on_stage")


def subject(count):
    import gi
    gi.require_version("Gtk", "3.0")
    from gi.repository import Gtk
    left = [subject_window(Gtk) for _ in range(count)]
    for window in list(left):
        window.connect("destroy", lambda w: (left.remove(w), left or Gtk.main_quit()))
    Gtk.main()


def subject_window(Gtk):
    """A window with an entry, a password entry, a label that follows them, and two buttons."""
    window = Gtk.Window(title="Sübject")
    grid = Gtk.Grid(border_width=10, row_spacing=5, column_spacing=5)
    echo = Gtk.Label(label="nothing yet")
    entry, secret = Gtk.Entry(), Gtk.Entry(visibility=False)
    press, disabled = Gtk.Button(label="Press me"), Gtk.Button(label="Disabled", sensitive=False)
    entry.connect("changed", lambda e: echo.set_text("typed: " + e.get_text()))
    secret.connect("changed", lambda e: echo.set_text("secret: " + e.get_text()))
    left = Gtk.Label(label="left")

    def pressed(_):
        echo.set_text("pressed")
        left.set_markup('<span foreground="#ff0000" background="#ff0000">left</span>')
    press.connect("clicked", pressed)
    window.connect("delete-event", lambda *_: print("delete-event", flush=True))
    # Added from the bottom up: the reading order is that of the screen.
    grid.attach(press, 0, 3, 1, 1)
    grid.attach(disabled, 1, 3, 1, 1)
    grid.attach(echo, 0, 2, 2, 1)
    grid.attach(secret, 0, 1, 2, 1)
    # Of another height than its neighbour: a row is what stands side by side.
    grid.attach(Gtk.Label(label="right", margin_top=10), 1, 0, 1, 1)
    grid.attach(left, 0, 0, 1, 1)
    grid.attach(entry, 0, 4, 2, 1)
    window.add(grid)
    window.show_all()
    entry.grab_focus()
    return window


def start_subject(environment=None):
    return subprocess.Popen(dying_with_parent([sys.executable, __file__, "--subject"]),
                            stdout=subprocess.PIPE, text=True, env=environment)


def end(program):
    program.kill()
    program.wait()
    program.stdout.close()


class WithSubject(unittest.TestCase):
    def setUp(self):
        self.screen = Screen()
        self.addCleanup(self.screen.close)
        self.subject = start_subject()
        self.addCleanup(end, self.subject)
        self.window = self.screen.find_window("Sübject", self.subject)

    def wait_echo(self, text):
        wait_until(lambda: text in self.window.labels(), 10, f"the label {text!r}",
                   seen=self.window.labels)

    def test_a_window_is_found_by_title_and_program_only(self):
        self.assertEqual([self.window], self.screen.windows(self.subject))
        self.assertEqual(["Sübject"], self.screen.titles(self.subject))
        self.assertEqual([], self.screen.windows(os.getpid()))
        with self.assertRaisesRegex(AssertionError, "the one window 'Other'.*(.|\n)*Sübject"):
            self.screen.find_window("Other", timeout=0.2)

    def test_windows_with_one_title_are_told_apart_by_their_place(self):
        other = start_subject({**os.environ, "SUBJECT_WINDOWS": "2"})
        self.addCleanup(end, other)
        wait_until(lambda: len(self.screen.windows(other)) == 2, 10, "two windows",
                   seen=self.screen.dump)
        with self.assertRaisesRegex(AssertionError, "the one window"):
            self.screen.find_window("Sübject", other, timeout=0.2)
        first, second = self.screen.windows(other)
        wait_until(lambda: first.extents != second.extents, 10, "two places")
        numbers = {self.screen.x11_window(window) for window in (first, second)}
        self.assertEqual(2, len(numbers))
        self.screen.close_window(second)
        self.screen.wait_gone(second)
        self.assertEqual([first], self.screen.windows(other))

    def test_labels_come_in_reading_order(self):
        self.assertEqual(["left", "right", "nothing yet"], self.window.labels())
        self.assertEqual(["left", "right", "nothing yet", "Press me", "Disabled"],
                         self.window.texts())

    def test_typed_text_arrives_whole_whatever_the_characters(self):
        entry = self.window.find("text")
        for text in ("é1 x", "ÄöÜß€", "Ab3$%&/()=?*_#~{[]}", "жλ漢", "é" * 40):
            entry.set_text("")
            self.screen.type_text(text, into=entry)
            self.wait_echo("typed: " + text)

    def test_a_password_entry_shows_how_much_was_typed(self):
        secret = self.window.find("password text")
        secret.focus()
        self.screen.type_text("12é4", into=secret)
        self.wait_echo("secret: 12é4")
        self.assertEqual(4, secret.length)
        self.assertNotIn("1", secret.text)

    def test_what_is_in_the_clipboard_is_pasted_at_the_caret(self):
        entry = self.window.find("text")
        entry.focus()
        for text in ("é1 x\n漢", "z" * 100_000):
            self.screen.set_clipboard(text)
            self.assertEqual(text, self.screen.clipboard())
        self.screen.type_text("ac", into=entry)
        self.screen.key("Left")
        wait_until(lambda: entry.caret == 1, 10, "the caret after one character")
        self.screen.paste("bé", into=entry)
        self.screen.type_text("+")
        self.wait_echo("typed: abé+c")

    def test_keys_move_the_focus_and_press(self):
        entry, press = self.window.find("text"), self.window.find("push button", "Press me")
        self.assertEqual(entry, self.screen.wait_focused(entry))
        press.focus()
        self.assertEqual((True, False), (press.focused, entry.focused))
        self.screen.key("space", into=press)
        self.wait_echo("pressed")
        self.screen.key("Tab")
        self.screen.wait_focused(entry)
        self.screen.key("shift+Tab")
        self.screen.wait_focused(press)

    def test_a_button_is_pressed_through_its_action_and_by_a_click(self):
        entry, press = self.window.find("text"), self.window.find("push button", "Press me")
        press.press()
        self.wait_echo("pressed")
        entry.set_text("between")
        self.wait_echo("typed: between")
        press.click()
        self.wait_echo("pressed")

    def test_a_disabled_button_is_seen_as_disabled(self):
        disabled = self.window.find("push button", "Disabled")
        self.assertEqual((True, False), (disabled.showing, disabled.enabled))
        with self.assertRaises(AssertionError):
            disabled.press()

    def test_closing_sends_a_close_request_and_the_window_goes(self):
        press = self.window.find("push button", "Press me")
        self.screen.close_window(self.window)
        self.screen.wait_gone(self.window)
        self.subject.wait(timeout=scaled(10))
        self.assertEqual("delete-event\n", self.subject.stdout.read())
        self.assertEqual([], self.screen.titles(self.subject))
        self.assertFalse(press.exists)
        with self.assertRaises(Gone):
            press.name

    def test_a_screenshot_holds_the_window_with_its_frame(self):
        number = self.screen.x11_window(self.window)
        height = self.screen.x11.geometry(number)[3]
        # The window manager tells the size of the frame after it has taken the window.
        wait_until(lambda: self.screen.x11.geometry(number, frame=True)[3] > height,
                   what="the title bar")
        frame = self.screen.x11.geometry(number, frame=True)
        with tempfile.TemporaryDirectory() as directory:
            path = os.path.join(directory, "window.png")

            def colours():
                self.screen.screenshot(path, self.window)
                size, count = subprocess.run(
                    ["identify", "-format", "%wx%h %k", path], stdout=subprocess.PIPE, text=True,
                    check=True).stdout.split()
                self.assertEqual(f"{frame[2]}x{frame[3]}", size)
                return int(count)
            # A window is there before it is painted.
            wait_until(lambda: colours() > 10, 10, "a painted window", seen=colours)

    def test_the_colours_of_an_object_are_read(self):
        label = self.window.find("label", "left")
        red = (255, 0, 0)
        self.assertNotIn(red, self.screen.pixels(label))
        self.window.find("push button", "Press me").press()  # it reddens the label
        wait_until(lambda: red in self.screen.pixels(label), 10, "something red",
                   seen=lambda: set(self.screen.pixels(label)))
        x, y, width, height = label.extents
        self.assertEqual(width * height, len(self.screen.pixels(label)))
        self.assertNotIn(red, self.screen.x11.pixels((0, 0, 20, 20)))

    def test_windows_of_a_program_that_hangs_are_still_known_to_the_window_manager(self):
        self.subject.send_signal(signal.SIGSTOP)
        self.addCleanup(self.subject.send_signal, signal.SIGCONT)
        self.assertEqual(["Sübject"], self.screen.titles(self.subject))
        with self.assertRaises(Gone):
            self.window.name


class Servers(unittest.TestCase):
    def test_stages_do_not_share_anything(self):
        with Stage() as one, Stage(size="800x600") as two:
            for name in ("DISPLAY", "DBUS_SESSION_BUS_ADDRESS", "AT_SPI_BUS_ADDRESS", "HOME"):
                self.assertNotEqual(one.environment[name], two.environment[name])
            screens = [Screen(stage.environment) for stage in (one, two)]
            program = start_subject(two.environment)
            try:
                screens[1].find_window("Sübject")
                self.assertEqual([], screens[0].windows())
                self.assertEqual([], screens[0].titles())
                self.assertEqual((0, 0, 800, 600), screens[1].x11.geometry(screens[1].x11.root))
            finally:
                end(program)
                for screen in screens:
                    screen.close()

    def test_nothing_of_a_stage_is_left(self):
        with Stage() as stage:
            directory, servers = stage.directory, list(stage.servers.values())
            stage.check()
        self.assertFalse(os.path.exists(directory))
        for server in servers:
            with self.assertRaises(ProcessLookupError, msg=server.name):
                os.kill(server.pid, 0)

    def test_the_environment_of_the_caller_does_not_reach_a_stage(self):
        os.environ["WAYLAND_DISPLAY"] = "wayland-9"
        os.environ["GTK_THEME"] = "HighContrast"
        self.addCleanup(os.environ.pop, "WAYLAND_DISPLAY")
        self.addCleanup(os.environ.pop, "GTK_THEME")
        with Stage(accessibility=False) as stage:
            self.assertNotIn("WAYLAND_DISPLAY", stage.environment)
            self.assertNotIn("GTK_THEME", stage.environment)
            self.assertEqual("C.UTF-8", stage.environment["LANG"])
            self.assertEqual("1", stage.environment["NO_AT_BRIDGE"])
        with Stage(extra={"GTK_THEME": "HighContrast"}) as stage:
            self.assertEqual("HighContrast", stage.environment["GTK_THEME"])
            self.assertNotIn("NO_AT_BRIDGE", stage.environment)

    def test_the_resolution_reaches_the_toolkit(self):
        heights = []
        for dpi in (96, 192):
            with Stage(dpi=dpi) as stage:
                screen = Screen(stage.environment)
                program = start_subject(stage.environment)
                try:
                    window = screen.find_window("Sübject")
                    heights.append(window.find("label", "nothing yet").extents[3])
                finally:
                    end(program)
                    screen.close()
        self.assertAlmostEqual(2, heights[1] / heights[0], delta=0.3)

    def test_a_server_that_dies_is_reported(self):
        for name in ("Xvfb", "openbox", "dbus-daemon", "at-spi-bus-launcher", "a11y dbus-daemon",
                     "at-spi2-registryd"):
            with self.subTest(name), Stage() as stage:
                stage.check()
                os.kill(stage.servers[name].pid, signal.SIGKILL)
                self.assertTrue(stage.servers[name].ended_within(scaled(5)))
                with self.assertRaisesRegex(StageError, rf"(?m)^{name} \(pid \d+\) died"):
                    stage.check()


class Runner(unittest.TestCase):
    def run_on_stage(self, *command):
        return subprocess.run([RUN_ON_STAGE, *command], stdout=subprocess.PIPE,
                              stderr=subprocess.PIPE, text=True, timeout=scaled(60))

    def test_it_passes_output_and_exit_code_on(self):
        result = self.run_on_stage("sh", "-c", "echo out; echo err >&2; exit 7")
        self.assertEqual((7, "out\n", "err\n"), (result.returncode, result.stdout, result.stderr))

    def test_it_reports_a_signal_as_a_shell_does(self):
        self.assertEqual(128 + signal.SIGSEGV,
                         self.run_on_stage("sh", "-c", "kill -SEGV $$").returncode)

    def test_it_gives_the_command_the_normal_signals(self):
        show = "grep -E '^Sig(Blk|Ign)' /proc/self/status"
        script = f"trap '' QUIT HUP USR1; exec {RUN_ON_STAGE} sh -c \"{show}\""
        result = subprocess.run(["sh", "-c", script], stdout=subprocess.PIPE, text=True,
                                timeout=scaled(60))
        self.assertEqual(["SigBlk:", "0" * 16, "SigIgn:", "0" * 16], result.stdout.split())

    def test_it_ends_the_command_when_the_display_dies(self):
        kill = ("import json, os, signal, time; "
                "pids = json.load(open(os.environ['ZELDLG_STAGE'] + '/servers.json')); "
                "os.kill(pids['Xvfb'], signal.SIGKILL); signal.pause()")
        result = self.run_on_stage(sys.executable, "-c", kill)
        self.assertEqual(70, result.returncode)
        self.assertRegex(result.stderr, r"Xvfb \(pid \d+\) died with status -9; its log:")

    def test_it_removes_everything_when_it_is_killed(self):
        script = "echo $ZELDLG_STAGE; cat $ZELDLG_STAGE/servers.json; echo; echo $$; exec sleep 600"
        runner = subprocess.Popen([RUN_ON_STAGE, "sh", "-c", script], stdout=subprocess.PIPE,
                                  text=True)
        self.addCleanup(runner.stdout.close)
        directory = runner.stdout.readline().strip()
        pids = list(json.loads(runner.stdout.readline()).values())
        pids.append(int(runner.stdout.readline()))
        self.assertTrue(all(map(is_running, pids)))
        runner.kill()
        runner.wait()
        wait_until(lambda: not os.path.exists(directory), 10, "the end of the directory")
        wait_until(lambda: not any(map(is_running, pids)), 10, "the end of the servers",
                   seen=lambda: list(filter(is_running, pids)))


def is_running(pid):
    try:
        with open(f"/proc/{pid}/stat") as stat:
            return stat.read().rsplit(")", 1)[1].split()[0] != "Z"
    except FileNotFoundError:
        return False


class Waiting(unittest.TestCase):
    def test_a_condition_that_never_holds_says_what_was_seen(self):
        with self.assertRaisesRegex(AssertionError, "for the moon; seen last:\nonly clouds"):
            wait_until(lambda: False, 0.05, "the moon", seen=lambda: "only clouds")

    def test_the_first_true_value_is_given(self):
        values = iter([0, None, 3])
        self.assertEqual(3, wait_until(lambda: next(values), 5))

    def test_an_object_that_is_gone_counts_as_not_yet(self):
        def gone():
            raise Gone("it left")
        with self.assertRaisesRegex(AssertionError, "gone: it left"):
            wait_until(gone, 0.05, "something")


class Limits(StageTestCase):
    def test_a_busy_machine_has_more_time(self):
        self.assertEqual(1, load_factor("0.00 0.01 0.05 0/120 4711\n", 2))
        self.assertEqual(2, load_factor("0.10 9.00 9.00 1/120 4711\n", 2))
        self.assertEqual(11, load_factor("10.00 0.01 0.05 2/120 4711\n", 2))

    def test_load_that_has_just_begun_counts(self):
        self.assertEqual(11, load_factor("0.10 0.01 0.05 10/120 4711\n", 2))

    def test_a_slow_build_has_more_time(self):
        self.addCleanup(os.environ.__setitem__, "ZELDLG_TIMEOUT_FACTOR",
                        os.environ.get("ZELDLG_TIMEOUT_FACTOR", "1"))
        os.environ["ZELDLG_TIMEOUT_FACTOR"] = "1000"
        self.assertGreaterEqual(scaled(3), 3000)

    def test_what_took_longer_than_its_limit_fails(self):
        self.assert_takes_at_most(3, 2.9)
        with self.assertRaises(AssertionError):
            self.assert_takes_at_most(3, 100_000)


class Installed(unittest.TestCase):
    """What is installed on the machine: here, only in the eyes of one program."""

    CATALOGUE = "/usr/share/locale/de/LC_MESSAGES/tokenutils.mo"

    def setUp(self):
        require_private_mounts()
        self.directory = tempfile.TemporaryDirectory()
        self.addCleanup(self.directory.cleanup)
        self.file = os.path.join(self.directory.name, "registry")
        with open(self.file, "w") as file:
            file.write("installed")

    def show(self, *command):
        """What the command says of the installed files."""
        look = f"cat /usr/share/tessaly/* /etc/tessaly/* {self.CATALOGUE} 2>/dev/null; true"
        installed = [*folder_with("/usr/share", "tessaly", self.directory.name),
                     *folder_with("/etc", "tessaly", self.directory.name),
                     "--tmpfs", "/usr/share/locale", "--ro-bind", self.file, self.CATALOGUE]
        return subprocess.run(["bwrap", "--dev-bind", "/", "/", *installed, *command, "sh", "-c",
                               look], stdout=subprocess.PIPE, text=True, check=True).stdout

    def test_settings_and_catalogues_are_hidden_on_a_stage(self):
        self.assertEqual("installed" * 3, self.show())
        self.assertEqual("", self.show(RUN_ON_STAGE, "--no-a11y"))

    def test_a_program_that_mounts_for_itself_does_not_see_them_either(self):
        self.assertEqual("", self.show(RUN_ON_STAGE, "--no-a11y", "bwrap", "--dev-bind", "/", "/"))


class PrivateMounts(unittest.TestCase):
    def test_what_cannot_mount_skips_a_test_and_what_can_does_not(self):
        with self.assertRaisesRegex(unittest.SkipTest, "no private mounts here: sorry"):
            require_private_mounts("sh", "-c", "echo sorry >&2; exit 1")
        try:
            require_private_mounts("env")
        except unittest.SkipTest as skip:
            self.fail(skip)


if __name__ == "__main__":
    if sys.argv[1:] == ["--subject"]:
        subject(int(os.environ.get("SUBJECT_WINDOWS", "1")))
    else:
        unittest.main()
