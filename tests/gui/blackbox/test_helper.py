#!/usr/bin/python3
"""The helper process: when there is one, what it is, and how it ends."""

import contextlib
import os
import re
import shutil
import signal
import socket
import struct
import subprocess
import unittest
from pathlib import Path

from stage import BUFFER_TOO_SMALL, CANCELLED, FAILED, OK, StageTestCase, scaled, wait_until
from stage.settings import registry

PIN = "DLG_ShowPinDialog"
TITLE = "Enter PIN"
HELPED = {"ZELDLG_PROCESS": "helper"}
BY_SETTING = registry(("", "DialogProcess", '"helper"'))
LIBRARY = os.path.realpath(os.environ["ZELDLG_LIBRARY"])
PROGRAM = os.path.join(os.path.dirname(LIBRARY), "zeldlg", "zeldlg-helper")
SOCKET = 3
HEAD = struct.Struct("<4sHHQ")
REQUEST, FINISH, SERVED, UNTAKEN, REFUSED, RAISED = 1, 2, 3, 4, 5, 6


def has_ended(process_id):
    """Its files are closed, too: with the last of its threads, and after its memory is gone."""
    try:
        with open(f"/proc/{process_id}/stat", encoding="utf-8") as file:
            ended = file.read().rpartition(") ")[2][0] in "ZX"
        return ended and len(os.listdir(f"/proc/{process_id}/task")) == 1
    except OSError:
        return True


class HelperCase(StageTestCase):
    def ask(self, host):
        return host.run("DLG_GetLocale", bufferCapacity=0)

    def cancel(self, host):
        call, window = self.show(host, PIN, TITLE)
        self.screen.close_window(window)
        self.assertEqual(CANCELLED, call.result())
        self.screen.wait_gone(window)


class Choice(HelperCase):
    def helpers_with(self, environment=None, settings=None):
        host = self.start_host(environment={"ZELDLG_PROCESS": None, **(environment or {})},
                               registry=settings)
        self.assertEqual([], host.helpers())
        self.assertEqual(BUFFER_TOO_SMALL, self.ask(host))
        return len(host.helpers())

    def test_by_default_the_hosts_process_shows_the_windows(self):
        self.assertEqual(0, self.helpers_with())
        self.assertEqual(0, self.helpers_with({"ZELDLG_PROCESS": "auto"}))
        self.assertEqual(0, self.helpers_with({"ZELDLG_PROCESS": "Helper"}))

    def test_the_environment_can_have_a_helper(self):
        self.assertEqual(1, self.helpers_with(HELPED))

    def test_so_can_a_setting_and_the_environment_goes_before_it(self):
        self.assertEqual(1, self.helpers_with(settings=BY_SETTING))
        self.assertEqual(0, self.helpers_with({"ZELDLG_PROCESS": "own"}, BY_SETTING))
        self.assertEqual(0, self.helpers_with({"ZELDLG_PROCESS": "auto"}, BY_SETTING))

    def test_beside_another_gtk_there_is_one(self):
        with open("/proc/self/maps", encoding="utf-8") as maps:
            any_library = re.search(r"/\S+/libz\.so\S*", maps.read())[0]
        for name, helpers in (("libgtk-4.so.1", 1), ("libgtk-x11-2.0.so.0", 1),
                              ("libgtk-3.so.0.1", 0), ("my-libgtk-4.so.1", 0)):
            with self.subTest(name):
                loaded = os.path.join(os.environ["ZELDLG_STAGE"], name)
                shutil.copy(any_library, loaded)
                self.addCleanup(os.unlink, loaded)
                self.assertEqual(helpers, self.helpers_with({"LD_PRELOAD": loaded}))

    def test_init_starts_it_ahead_of_time(self):
        host = self.start_host(environment=HELPED)
        self.assertNotEqual(0, host.run("InitApp"))
        # It may not have its name yet.
        self.assertEqual(1, len(wait_until(host.helpers, what="a helper")))
        host.run("QuitApp")
        self.assertEqual([], host.helpers())

    def test_where_it_is_missing_calls_fail(self):
        alone = os.path.join(os.environ["ZELDLG_STAGE"], "alone.so")
        shutil.copy(LIBRARY, alone)
        host = self.start_host(library=alone, environment=HELPED)
        self.assert_pin_fails(host)
        self.assertEqual(0, host.run("DLG_PinPadShowVerificationDialog"))
        host.run("DLG_Finalize")
        self.assertEqual(FAILED, self.ask(host))

    def test_a_library_that_was_loaded_by_another_name_finds_it(self):
        link = os.path.join(os.environ["ZELDLG_STAGE"], "link.so")
        os.symlink(LIBRARY, link)
        self.addCleanup(os.unlink, link)
        host = self.start_host(library=link, environment=HELPED)
        self.assertEqual(BUFFER_TOO_SMALL, self.ask(host))


class InTheHost(HelperCase):
    """What becomes of the host's process."""

    def test_nothing_of_it_is_changed_but_one_socket(self):
        host = self.start_host(environment={**HELPED, "LC_ALL": "C.UTF-8"})
        before = host.locale(), host.signals(), host.environment(), sorted(host.fds())
        self.cancel(host)
        self.assertEqual((*before[:3],), (host.locale(), host.signals(), host.environment()))
        self.assertEqual(["worker"], [name for name in host.threads() if name == "worker"])
        self.assertEqual(2, len(host.threads()))
        added = list(host.fds())
        for each in before[3]:
            added.remove(each)
        self.assertEqual(["socket"], [each.split(":")[0] for each in added])
        host.run("DLG_Finalize")
        self.assertEqual(before[3], sorted(host.fds()))

    def test_the_locale_is_that_of_the_environment_all_the_same(self):
        host = self.start_host(environment={**HELPED, "LC_ALL": "C.UTF-8"})
        own = self.start_host(environment={"LC_ALL": "C.UTF-8"})
        answers = []
        for each in (host, own):
            call = each.call("DLG_GetLocale", bufferCapacity=16)
            self.assertEqual(OK, call.result())
            answers.append(call.output("buffer"))
        self.assertEqual(*answers)

    def test_many_starts_and_ends_leave_nothing_behind(self):
        host = self.start_host(environment=HELPED)
        self.ask(host)
        host.run("DLG_Finalize")
        files, heap = host.fds(), host.heap()
        for _ in range(10):
            self.assertEqual(BUFFER_TOO_SMALL, self.ask(host))
            host.run("DLG_Finalize")
        self.assertEqual(files, host.fds())
        self.assertLess(host.heap() - heap, 4096)
        self.assertEqual([], host.helpers())

    @unittest.skipIf("NoNewPrivs:\t1" in Path("/proc/self/status").read_text(),
                     "no process gets other rights here")
    def test_a_process_with_other_rights_does_not_heed_the_environment(self):
        program = os.path.join(os.environ["ZELDLG_STAGE"], "rights")
        shutil.copy(os.environ["ZELDLG_TEST_HOST"], program)
        os.chmod(program, 0o4755)
        os.chmod(os.environ["ZELDLG_STAGE"], 0o711)
        wishes = {**HELPED, "ZELDLG_TRACE": "1"}
        for prefix, told in (([], True), (["setpriv", "--reuid=12345", "--clear-groups"], False)):
            with self.subTest(prefix=prefix):
                host = self.start_host(program=program, prefix=prefix, environment=wishes)
                self.assertEqual(FAILED, host.run("DLG_GetLocale", size=None))
                host.quit()
                self.assertEqual(told, "zeldlg: GetLocale" in host.stderr(), host.stderr())


class End(HelperCase):
    def test_finalise_waits_for_an_open_dialog_and_later_calls_have_another_helper(self):
        host = self.start_host(environment=HELPED)
        call, window = self.show(host, PIN, TITLE)
        waiting = host.call(PIN, thread="second")
        first = host.helpers()
        end = host.call("DLG_Finalize", thread="ender")
        self.screen.key("Escape", window.find("password text"))
        self.assertEqual(CANCELLED, call.result())
        self.screen.wait_gone(window)
        if not waiting.done:
            # It may have come after the end was asked for, and has a helper of its own then.
            wait_until(lambda: waiting.done or TITLE in self.screen.titles(host), what="its turn")
            if not waiting.done:
                self.screen.close_window(self.screen.find_window(TITLE, host))
        self.assertIn(waiting.result(), (FAILED, CANCELLED))
        end.result()
        self.cancel(host)
        self.assertNotEqual(first, host.helpers())

    def test_a_display_that_takes_its_time_to_fail_leaves_no_call_waiting(self):
        with socket.create_server(("127.0.0.1", 0)) as display:
            host = self.start_host(environment={
                **HELPED, "WAYLAND_DISPLAY": None,
                "DISPLAY": f"127.0.0.1:{display.getsockname()[1] - 6000}"})
            call = host.call("DLG_GetLocale", bufferCapacity=0)
            connection, _ = display.accept()
            # Longer than a start is waited for.
            connection.settimeout(scaled(0.5))
            with connection, self.assertRaises(TimeoutError):
                while connection.recv(4096):
                    pass
            self.assertEqual(FAILED, call.result())

    def test_finalise_removes_modeless_windows(self):
        host = self.start_host(environment=HELPED)
        self.assertEqual(1, host.run("DLG_PinPadShowVerificationDialog"))
        self.assertEqual(OK, host.run("DLG_ShowKeyGenerationProgressDialog"))
        wait_until(lambda: len(self.screen.titles(host)) == 2, what="two windows")
        host.run("DLG_Finalize")
        wait_until(lambda: not self.screen.titles(host), what="no window")
        self.assertEqual([], host.helpers())

    def test_a_helper_that_dies_in_between_costs_no_call(self):
        host = self.start_host(environment=HELPED)
        self.ask(host)
        for _ in range(3):
            helper, = host.helpers()
            os.kill(helper, signal.SIGKILL)
            wait_until(lambda: has_ended(helper), what="its end")
            self.assertEqual(BUFFER_TOO_SMALL, self.ask(host))
            self.assertNotEqual([helper], host.helpers())

    def test_the_pads_of_a_helper_that_died_are_no_pads_of_the_next(self):
        host = self.start_host(environment=HELPED)
        self.assertEqual(1, host.run("DLG_PinPadShowVerificationDialog", pad="old"))
        helper, = host.helpers()
        os.kill(helper, signal.SIGKILL)
        wait_until(lambda: has_ended(helper), what="its end")
        self.assertEqual(1, host.run("DLG_PinPadShowVerificationDialog", pad="new"))
        window = self.screen.find_window("PinPad", host)
        host.run("DLG_PinPadHideDialog", pad="old")
        self.assertTrue(window.showing)
        host.run("DLG_PinPadHideDialog", pad="new")
        self.screen.wait_gone(window)

    def test_a_host_that_exits_takes_it_along(self):
        host = self.start_host(environment=HELPED)
        self.show(host, PIN, TITLE)
        self.assertEqual(0, host.quit())
        wait_until(lambda: not host.helpers(), what="its end")
        wait_until(lambda: TITLE not in self.screen.titles(), what="no window")

    def test_a_child_that_still_has_the_socket_does_not_keep_it(self):
        host = self.start_host(environment=HELPED)
        self.show(host, PIN, TITLE)
        host.become_child()
        host.kill()  # the parent
        wait_until(lambda: TITLE not in self.screen.titles(), what="no window")

    def test_calls_in_an_exit_fail_at_once(self):
        host = self.start_host(environment=HELPED)
        self.cancel(host)
        host.command("exit-calls")
        self.assertEqual(0, host.quit(), host.stderr())


class Program(HelperCase):
    """The helper by itself."""

    def setUp(self):
        super().setUp()
        self.connection = None

    def start(self, peer=None):
        """Starts one with this process as its host."""
        self.connection, its = socket.socketpair()
        self.addCleanup(self.connection.close)
        with contextlib.closing(its):
            process = subprocess.Popen(**self.with_socket(its))
        self.addCleanup(process.wait)
        self.addCleanup(process.kill)
        return process

    @staticmethod
    def with_socket(its):
        return {"args": [PROGRAM], "stderr": subprocess.DEVNULL, "pass_fds": [SOCKET],
                "preexec_fn": lambda: os.dup2(its.fileno(), SOCKET)}

    def send(self, kind, body=b"", magic=b"ZDLG", version=1, length=None):
        self.connection.sendall(
            HEAD.pack(magic, version, kind, len(body) if length is None else length) + body)

    def receive(self):
        try:
            head = self.connection.recv(HEAD.size, socket.MSG_WAITALL)
        except ConnectionResetError:  # it has not read everything
            return None
        if len(head) < HEAD.size:
            return None
        magic, version, kind, length = HEAD.unpack(head)
        self.assertEqual((b"ZDLG", 1), (magic, version))
        return kind, self.connection.recv(length, socket.MSG_WAITALL) if length else b""

    def test_started_by_somebody_else_it_says_so(self):
        result = subprocess.run([PROGRAM], stdin=subprocess.DEVNULL, capture_output=True, text=True,
                                timeout=scaled(60))
        self.assertEqual(1, result.returncode)
        self.assertEqual("zeldlg-helper: is started by libzeldlglib, and by nothing else\n",
                         result.stderr)

    def test_a_request_is_served_and_a_finish_ends_it(self):
        helper = self.start()
        self.send(REQUEST, struct.pack("<Q", 0x1602))
        self.assertEqual((SERVED, b""), self.receive())
        self.send(REQUEST, struct.pack("<Q", 0x7777))
        self.assertEqual((UNTAKEN, b""), self.receive())
        self.send(FINISH)
        self.assertIsNone(self.receive())
        self.assertEqual(0, helper.wait(scaled(60)))

    def test_what_cannot_be_read_ends_it(self):
        for how in ({"magic": b"ZDLX"}, {"version": 2}, {"length": 1 << 40}, {"kind": SERVED},
                    {"kind": 99}, {"body": b"\x01\x13"},
                    {"body": struct.pack("<QB", 0x1301, 2)},
                    {"body": struct.pack("<QBBQ", 0x1301, 1, 1, 1 << 60)}):
            with self.subTest(**how):
                helper = self.start()
                self.send(**{"kind": REQUEST, "body": struct.pack("<Q", 0x1602), **how})
                self.assertIsNone(self.receive())
                self.assertEqual(1, helper.wait(scaled(60)))

    def test_it_ends_with_the_connection(self):
        helper = self.start()
        self.send(REQUEST, struct.pack("<Q", 0x1602))
        self.receive()
        self.connection.close()
        helper.wait(scaled(60))

    def test_another_users_process_is_not_served(self):
        if os.geteuid() != 0:
            self.skipTest("only root can be somebody else")
        os.seteuid(12345)
        try:
            pair = socket.socketpair()
        finally:
            os.seteuid(0)
        for each in pair:
            self.addCleanup(each.close)
        helper = subprocess.run(**self.with_socket(pair[1]), timeout=scaled(60))
        self.assertEqual(1, helper.returncode)

    def test_it_leaves_no_core_and_lets_nobody_look_into_it(self):
        without_rights = ["setpriv", "--bounding-set=-all", "--inh-caps=-all"]
        host = self.start_host(environment=HELPED, prefix=without_rights)
        self.ask(host)
        helper, = host.helpers()
        with open(f"/proc/{helper}/limits") as file:
            core = next(line for line in file if line.startswith("Max core file size"))
        self.assertEqual(["0", "0"], core.split()[4:6])

        def reads(process):
            """Whether a process of the same user, without other rights, can read its memory map."""
            return subprocess.run([*without_rights, "cat", f"/proc/{process}/maps"],
                                  capture_output=True).returncode == 0
        self.assertTrue(reads(host.pid))
        self.assertFalse(reads(helper))

    def test_it_has_default_signals_and_nothing_of_the_hosts_but_standard_error(self):
        host = self.start_host(environment=HELPED, prefix=[
            "env", "--ignore-signal=USR1", "--block-signal=USR2"])
        self.cancel(host)
        helper, = host.helpers()
        with open(f"/proc/{helper}/status") as file:
            status = dict(line.rstrip("\n").split(":\t", 1) for line in file if ":\t" in line)
        usr1, usr2 = (1 << (each - 1) for each in (signal.SIGUSR1, signal.SIGUSR2))
        self.assertFalse(int(status["SigIgn"], 16) & usr1)
        self.assertFalse(int(status["SigBlk"], 16) & usr2)
        self.assertNotEqual(str(host.pid), status["PPid"].strip())
        links = {name: os.readlink(f"/proc/{helper}/fd/{name}") for name in ("0", "1", "2")}
        self.assertEqual(("/dev/null", "/dev/null"), (links["0"], links["1"]))
        self.assertEqual(os.readlink(f"/proc/{host.pid}/fd/2"), links["2"])
        with open(f"/proc/{helper}/environ") as file:
            self.assertIn(f"ZEL_HOME={host.zel_home}\0", file.read())


if __name__ == "__main__":
    unittest.main()
