#!/usr/bin/python3
"""What fails under the library: threads, the display, the settings file. No call hangs, each fails
or goes on with its defaults, and the host lives."""

import os
import socket
import unittest

from stage import (CANCELLED, FAILED, OK, StageTestCase, own_process_only, require_private_mounts,
                   wait_until)

PIN = "DLG_ShowPinDialog"
TITLE = "Enter PIN"


class FaultCase(StageTestCase):
    def confirm_pin_dialog(self, host):
        call, window = self.show(host, PIN, TITLE)
        self.screen.type_text("1234", window.find("password text"))
        wait_until(lambda: window.find("push button", "OK").enabled)
        self.screen.key("Return")
        self.assertEqual(OK, call.result())
        self.assertEqual(b"1234", call.value("pin"))
        self.screen.wait_gone(window)


@own_process_only("makes the threads of the host's process fail")
class Threads(FaultCase):
    def test_without_a_gui_thread_calls_fail_and_work_after_finalise(self):
        host = self.start_host()
        host.command("threads fail")
        for _ in range(2):
            self.assertEqual(FAILED, host.run(PIN))
            self.assertEqual(FAILED, host.run("DLG_GetLocale"))
        self.assertEqual(["worker"], host.threads()[1:])
        host.command("threads work")
        self.assertEqual(FAILED, host.run(PIN))  # the start has been tried
        host.run("DLG_Finalize")
        self.confirm_pin_dialog(host)

    def test_a_second_start_without_a_thread_fails_too(self):
        host = self.start_host()
        self.confirm_pin_dialog(host)
        host.run("DLG_Finalize")
        host.command("threads fail")
        self.assertEqual(FAILED, host.run(PIN))
        host.run("DLG_Finalize")
        host.command("threads work")
        self.confirm_pin_dialog(host)

    def test_a_thread_that_begins_late_is_waited_for(self):
        host = self.start_host()
        host.command("threads late")
        self.assertEqual(OK, host.run("DLG_GetLocale"))
        host.run("DLG_Finalize")
        self.confirm_pin_dialog(host)


class Displays(FaultCase):
    def assert_fails(self, display):
        host = self.start_host(environment={"DISPLAY": display}, strict=False)
        self.assert_pin_fails(host)
        host.run("DLG_Finalize")
        host.setenv("DISPLAY", os.environ["DISPLAY"])
        self.confirm_pin_dialog(host)

    def test_a_display_that_is_not_there_is_a_failed_start(self):
        self.assert_fails(":4711")

    def test_a_display_that_is_no_name_is_a_failed_start(self):
        self.assert_fails("no display")

    def test_a_display_that_hangs_up_is_a_failed_start(self):
        with socket.socket() as server:
            # Displays are at port 6000 and up.
            for number in range(4800, 4900):
                try:
                    server.bind(("127.0.0.1", 6000 + number))
                    break
                except OSError:
                    continue
            server.listen()
            server.settimeout(0)
            host = self.start_host(environment={"DISPLAY": f"127.0.0.1:{number}"}, strict=False)
            call = host.call(PIN)
            wait_until(lambda: self.hang_up(server), what="the library's connection")
            wait_until(lambda: self.hang_up(server) or call.done, what="the failure")
            self.assertEqual(FAILED, call.result())

    @staticmethod
    def hang_up(server):
        try:
            server.accept()[0].close()
        except BlockingIOError:
            return False
        return True


class SettingsFile(FaultCase):
    """What stands in the place of the user's settings file."""

    # The odd temporary directories beside /tmp, which come next, cannot be made.
    ONLY_TMP = ["bwrap", "--ro-bind", "/", "/", "--dev-bind", "/dev", "/dev", "--bind", "/tmp",
                "/tmp"]

    @classmethod
    def setUpClass(cls):
        require_private_mounts(*cls.ONLY_TMP)

    def host_with(self, put):
        host = self.start_host(prefix=self.ONLY_TMP)
        os.makedirs(os.path.dirname(host.registry_path), exist_ok=True)
        put(host.registry_path)
        return host

    def assert_dialog_works(self, put):
        host = self.host_with(put)
        call = host.call("DLG_ShowChangePinDialog", min=4, max=8)
        window = self.screen.find_window("Change transport PIN", host)
        self.assertFalse(call.done)
        self.screen.key("Escape")
        self.assertEqual(CANCELLED, call.result())
        self.screen.wait_gone(window)
        self.confirm_pin_dialog(host)
        return host

    def test_a_fifo_is_not_waited_for(self):
        host = self.assert_dialog_works(os.mkfifo)
        self.assertEqual([], [name for name in host.fds() if "registry" in name])

    def test_a_device_is_not_read(self):
        for device in ("/dev/zero", "/dev/full", "/dev/tty"):
            with self.subTest(device=device):
                self.assert_dialog_works(lambda path, to=device: os.symlink(to, path))

    def test_a_socket_is_not_read(self):
        with socket.socket(socket.AF_UNIX) as listener:
            self.assert_dialog_works(listener.bind)

    def test_links_that_lead_nowhere_or_in_circles_are_passed_over(self):
        self.assert_dialog_works(lambda path: os.symlink(path, path))
        host = self.assert_dialog_works(lambda path: os.symlink("/nowhere/at/all", path))
        self.assertFalse(os.path.exists(host.registry_path))

    def test_a_directory_is_passed_over(self):
        self.assert_dialog_works(os.mkdir)


if __name__ == "__main__":
    unittest.main()
