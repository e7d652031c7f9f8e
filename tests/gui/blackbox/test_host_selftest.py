#!/usr/bin/python3
"""The host process tested on itself: crashes, faults and mistakes in a test never pass unseen."""

import os
import signal
import unittest

from stage import (FAILED, NOT_SUPPORTED, OK, Call, Host, HostError, StageTestCase, policy,
                   wait_until)


def complaining(text):
    """A command prefix that writes a line to standard error before the host starts."""
    return ["sh", "-c", 'printf "%s\\n" "$0" >&2; exec "$@"', text]


class HostProcess(unittest.TestCase):
    def host(self, **options):
        host = Host(**options)
        self.addCleanup(host.close, failed=True)
        return host

    def test_an_export_is_called_by_name_and_through_the_table(self):
        host = self.host()
        self.assertEqual(NOT_SUPPORTED, host.run("DLG_SetParameter", parameter=1, value=2))
        self.assertEqual(NOT_SUPPORTED, host.run("DLG_SetParameter", via="table"))
        table = host.table()
        self.assertEqual((14, 49, []), (table["version"], table["entries"], table["different"]))

    def test_mistakes_in_a_command_are_refused(self):
        host = self.host()
        for export, arguments in (
                ("DLG_Missing", {}), ("DLG_ShowPinDialog", {"mni": 4}),
                ("DLG_ShowPinDialog", {"min": -1}), ("DLG_ShowPinDialog", {"min": 1 << 32}),
                ("DLG_ShowPinDialog", {"min": "four"}), ("DLG_ShowPinDialog", {"noFailure": 256}),
                ("DLG_ShowPinDialog", {"record": 1}), ("DLG_ShowPinDialog", {"min": [1, 2]}),
                ("DLG_ShowTokenSelectionDialog", {"entry": [("name", "detail")]}),
                ("DLG_PinPadHideDialog", {"pad": "never shown"}),
                ("DLG_ShowChangePolicedPinDialog_func", {"policy": "00"}),
                ("DLG_SetParameter", {"via": "name"})):
            with self.subTest(export, **arguments), self.assertRaises(HostError):
                host.call(export, **arguments)
        for command in ("", "frobnicate", "rss now", "glib-loop", "glib-loop stop", "toolkit start",
                        "signal SIGNONE ignore", "signal SIGPIPE loud", "dlopen", "call"):
            with self.subTest(command), self.assertRaises(HostError):
                host.command(command)
        self.assertEqual(NOT_SUPPORTED, host.run("DLG_SetParameter"))

    def test_a_policy_has_the_layout_of_its_wire_form(self):
        block = bytes.fromhex(policy(header=1, enabled=2, p2_class_mask=3, p3_threshold=4,
                                     p3_strict_only=5, p4_white_list=6, source=-4)["policy"])
        self.assertEqual(32, len(block))
        self.assertEqual((1, 2, 3, 4, 5, 6), tuple(block[at] for at in (0, 1, 8, 9, 13, 25)))
        self.assertEqual(-4, int.from_bytes(block[28:], "little", signed=True))
        with self.assertRaises(TypeError):
            policy(p5_threshold=1)
        self.assertEqual(FAILED, self.host().run("DLG_ShowChangePolicedPinDialog_func",
                                                 record=None, **policy(b"abc")))

    def test_a_crash_is_reported_with_its_signal_and_standard_error(self):
        host = self.host(prefix=complaining("last words"))
        call = host.call("DLG_ShowPinDialog", thread="caller", label="Token")
        os.kill(host.pid, signal.SIGABRT)
        with self.assertRaisesRegex(HostError, "signal SIGABRT(.|\n)*last words"):
            call.result()
        with self.assertRaisesRegex(HostError, "signal SIGABRT"):
            host.rss()
        with self.assertRaisesRegex(HostError, "signal SIGABRT"):
            host.close()

    def test_a_fault_on_standard_error_fails_a_strict_test(self):
        for line in ("(host:1): Gtk-CRITICAL **: gtk_foo failed", "a.cpp(7): assert \"x\" failed",
                     "(host:1): GLib-GObject-WARNING **: signal 'shwo' is invalid",
                     "(host:1): Gtk-WARNING **: Theme parsing error: <data>:1:4: 'pdading' is not",
                     "x.h:3: runtime error: signed integer overflow",
                     "==1==ERROR: AddressSanitizer: heap-use-after-free"):
            with self.subTest(line):
                strict = self.host(prefix=complaining(line), strict=True)
                with self.assertRaises(HostError) as caught:
                    strict.close()
                self.assertIn(line, str(caught.exception))
                self.host(prefix=complaining(line), strict=False).close()
        self.host(prefix=complaining("(host:1): Gtk-WARNING **: no theme"), strict=True).close()

    def test_a_library_that_cannot_be_loaded_is_reported(self):
        with self.assertRaisesRegex(HostError, "exit code 1(.|\n)*no-such-library"):
            Host(library="/no-such-library.so")

    def test_a_host_that_quits_ends_well(self):
        host = self.host()
        self.assertEqual(0, host.quit())
        self.assertFalse(host.running)

    def test_signal_dispositions_are_those_of_the_process(self):
        host = self.host()
        before = host.signals()
        self.assertEqual(("default", "default"), (before["SIGPIPE"], before["SIGUSR1"]))
        host.command("signal SIGPIPE ignore")
        host.command("signal SIGUSR1 handler")
        changed = {name: how for name, how in host.signals().items() if how != before[name]}
        self.assertEqual({"SIGPIPE": "ignore", "SIGUSR1": "handler"}, changed)

    def test_files_threads_and_memory_are_those_of_the_process(self):
        host = self.host()
        self.assertEqual(len(os.listdir(f"/proc/{host.pid}/fd")), len(host.fds()))
        self.assertEqual(1, len(host.threads()))
        host.run("DLG_SetParameter", thread="another")
        self.assertIn("another", host.threads())
        self.assertGreater(host.rss(), 500)

    def test_the_environment_can_be_changed(self):
        host = self.host(environment={"HOST_GIVEN": "yes", "HOME": None})
        with open(f"/proc/{host.pid}/environ") as file:
            names = [entry.split("=")[0] for entry in file.read().split("\0")]
        self.assertIn("HOST_GIVEN", names)
        self.assertNotIn("HOME", names)
        host.setenv("LANG", "de_DE.UTF-8")
        host.command("unsetenv LANG")

    def test_the_host_can_run_a_loop_of_its_own(self):
        host = self.host()
        self.assertEqual(0, host.ticks())
        host.command("glib-loop start")
        before = host.ticks()
        wait_until(lambda: host.ticks() > before + 3, 10, "more ticks", seen=host.ticks)
        host.command("glib-loop stop")
        self.assertEqual(1, len([name for name in host.threads() if name != "gmain"]))

    def test_the_library_stays_mapped_after_dlclose(self):
        host = self.host()
        host.run("DLG_SetParameter")
        host.command("dlclose")
        self.assertTrue(host.command("mapped")["mapped"])
        with self.assertRaisesRegex(HostError, "not loaded"):
            host.call("DLG_SetParameter")
        host.command("dlopen")
        self.assertEqual(NOT_SUPPORTED, host.run("DLG_SetParameter"))


class Outputs(unittest.TestCase):
    def setUp(self):
        self.call = Call(None, "an export")
        self.call.returned({"result": OK, "pinLength": 2, "pin": "3132a5a5", "over": "3132a533",
                            "slot": "01000000", "left": "a5a5a5a5"})

    def test_the_valid_bytes_of_a_buffer_are_given(self):
        self.assertEqual(b"12", self.call.value("pin"))
        self.assertEqual(1, self.call.number("slot"))

    def test_a_byte_written_behind_them_is_a_fault(self):
        with self.assertRaisesRegex(HostError, "over was written behind its 2 bytes"):
            self.call.value("over", 2)

    def test_what_was_not_written_is_untouched(self):
        self.assertIsNone(self.call.number("left"))
        self.assertTrue(self.call.untouched("left"))
        self.assertFalse(self.call.untouched("left", "slot"))


class HostOnScreen(StageTestCase):
    def test_a_pin_travels_from_the_keyboard_to_the_host(self):
        host = self.start_host()
        call, window = self.show(host, "DLG_ShowPinDialog", "Enter PIN", label="Tök & en")
        self.assertIn('To log in to "Tök & en"', window.labels())
        self.screen.type_text("12é4")
        ok = window.find("push button", "OK")
        wait_until(lambda: ok.enabled, 10, "OK", seen=window.dump)
        self.assertFalse(call.done)
        ok.press()
        self.assertEqual(OK, call.result())
        self.assertEqual("12é4".encode(), call.value("pin"))
        self.screen.wait_gone(window)

    def test_buffers_show_that_nothing_was_written(self):
        host = self.start_host()
        for nothing in ({"record": None}, {"out": None}, {"label": None}):
            call = host.call("DLG_ShowPinDialog", **nothing)
            self.assertEqual(FAILED, call.result())
            self.assertTrue(call.untouched("pin"))
            self.assertEqual(64, call.output("pinLength"))

    def test_a_host_with_a_toolkit_of_its_own_starts_it(self):
        host = self.start_host(toolkit="wx")
        self.assertTrue(host.command("toolkit start")["started"])
        self.screen.find_window("Host window", host)
        host.command("toolkit stop")
        wait_until(lambda: not self.screen.titles(host), 10, "no window")


if __name__ == "__main__":
    unittest.main()
