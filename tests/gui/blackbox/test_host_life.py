#!/usr/bin/python3
"""How the library lives in its host: start, end, threads, neighbours."""

import os
import subprocess
import unittest

from slow_display import SlowDisplay
from soak.waiting_threads import WaitingThreads
from stage import (CANCELLED, FAILED, NOT_SUPPORTED, OK, StageTestCase, own_process_only, scaled,
                   wait_until)
from stage.dialogs import DIALOGS, show_dialog

PIN = "DLG_ShowPinDialog"
TITLE = "Enter PIN"
ALONE = {"ZELDLG_PROCESS": "own"}
HELPED = {"ZELDLG_PROCESS": "helper"}


class LifeCase(StageTestCase):
    def cancel_pin_dialog(self, host):
        call, window = self.show(host, PIN, TITLE)
        self.screen.wait_focused(window.find("password text"))
        self.screen.key("Escape")
        self.assertEqual(CANCELLED, call.result())
        self.screen.wait_gone(window)


# A toolkit that is still running at the end of its process is no leak.
STILL_RUNNING = {"ASAN_OPTIONS": "detect_leaks=0"}


class StartAndEnd(LifeCase):
    def test_a_request_straight_after_init_is_served(self):
        host = self.start_host()
        first = host.call("InitApp")
        call, window = self.show(host, PIN, TITLE)
        self.assertNotEqual(0, first.result())
        self.screen.close_window(window)
        self.assertEqual(CANCELLED, call.result())

    @own_process_only("counts the threads of the host's process")
    def test_init_gives_the_same_runner_until_it_is_finalised(self):
        host = self.start_host()
        runner = host.run("InitApp")
        self.cancel_pin_dialog(host)
        threads = sorted(host.threads())
        self.assertEqual(runner, host.run("InitApp"))
        self.assertEqual(threads, sorted(host.threads()))
        self.cancel_pin_dialog(host)
        host.run("DLG_Finalize")
        self.assertLess(len(host.threads()), len(threads))

    def test_finalise_with_nothing_started_does_nothing(self):
        host = self.start_host()
        threads = host.threads()
        host.run("DLG_Finalize")
        host.run("QuitApp")
        self.assertEqual(threads + ["worker"], host.threads())

    def test_a_call_after_finalise_starts_anew(self):
        host = self.start_host()
        for end in ("DLG_Finalize", "QuitApp"):
            self.cancel_pin_dialog(host)
            host.run(end)
        host.run("InitApp")
        self.cancel_pin_dialog(host)

    def test_twenty_cycles_leave_nothing_behind(self):
        host = self.start_host()
        sizes = []
        for cycle in range(20):
            self.cancel_pin_dialog(host)
            host.run("DLG_Finalize")
            if cycle in (4, 19):
                sizes.append((host.rss(), len(host.threads()), len(host.fds())))
        (rss, threads, files), (last_rss, _, last_files) = sizes
        # GLib keeps a thread without work for 15 s.
        wait_until(lambda: len(host.threads()) <= threads, 20, "as few threads", seen=host.threads)
        self.assertLessEqual(last_files, files)
        if not os.environ.get("ZELDLG_INSTRUMENTED"):
            self.assertLess(last_rss - rss, 2048, "kB in fifteen cycles")

    def test_parameters_and_table_do_not_start_the_gui_thread(self):
        host = self.start_host()
        for export in ("DLG_SetParameter", "DLG_GetParameter"):
            for parameter in (0, 1, 2**64 - 1):
                self.assertEqual(87, host.run(export, parameter=parameter, value=parameter))
        first, second = host.run("DLG_GetFunctionList"), host.run("DLG_GetFunctionList")
        self.assertEqual(first, second)
        self.assertEqual({"worker"}, set(host.threads()[1:]))

    def test_the_table_is_that_of_the_exports(self):
        table = self.start_host().table()
        self.assertEqual((14, 49, []), (table["version"], table["entries"], table["different"]))

    def test_a_host_that_exits_without_finalising_ends_well(self):
        for _ in range(10):
            host = self.start_host(environment=STILL_RUNNING)
            self.cancel_pin_dialog(host)
            self.assertEqual(0, host.quit())

    def test_a_host_that_exits_while_a_dialog_is_open_ends_well(self):
        for _ in range(5):
            host = self.start_host(environment=STILL_RUNNING)
            _, window = self.show(host, PIN, TITLE)
            self.assertEqual(0, host.quit())
            self.screen.wait_gone(window)

    def test_calls_late_in_the_exit_neither_wait_nor_work(self):
        host = self.start_host(environment=STILL_RUNNING)
        self.cancel_pin_dialog(host)
        self.assertEqual(1, host.run("DLG_PinPadShowVerificationDialog"))
        host.command("exit-calls")
        self.assertEqual(0, host.quit())

    def test_nor_while_a_dialog_is_open(self):
        host = self.start_host(environment=STILL_RUNNING)
        _, window = self.show(host, PIN, TITLE)
        host.command("exit-calls")
        self.assertEqual(0, host.quit())
        self.screen.wait_gone(window)


class Threads(LifeCase):
    def test_eight_threads_each_get_their_own_answer(self):
        host = self.start_host()
        calls = {f"{number}{number}{number}{number}":
                 host.call(PIN, thread=f"thread{number}", label=f"Card {number}")
                 for number in range(1, 9)}
        for _ in calls:
            window = self.screen.find_window(TITLE, host)
            heading = window.labels()[0]
            pin = next(pin for pin in calls if heading == f'To log in to "Card {pin[0]}"')
            self.screen.type_text(pin, window.find("password text"))
            wait_until(lambda: window.find("push button", "OK").enabled)
            self.screen.key("Return")
            self.assertEqual(OK, calls[pin].result())
            self.screen.wait_gone(window)
        for pin, call in calls.items():
            self.assertEqual(pin.encode(), call.value("pin"))

    def test_finalise_waits_for_an_open_dialog_and_later_calls_are_served_or_refused(self):
        host = self.start_host()
        call, window = self.show(host, PIN, TITLE)
        end = host.call("DLG_Finalize", thread="ender")
        later = host.call(PIN, thread="later", label="Later")
        self.screen.type_text("1234", window.find("password text"))
        self.assertFalse(end.done)
        wait_until(lambda: window.find("push button", "OK").enabled)
        self.screen.key("Return")
        self.assertEqual(OK, call.result())
        end.result()
        # A call that was under way already when the end began is refused; any other is served.
        window = wait_until(lambda: later.done or next(
            (each for each in self.screen.windows(host)
             if 'To log in to "Later"' in each.labels()), None), 20)
        if not later.done:
            self.screen.close_window(window)
        self.assertIn(later.result(), (CANCELLED, FAILED))
        self.cancel_pin_dialog(host)


class WithoutDisplay(LifeCase):
    def test_calls_fail_soon_and_work_once_there_is_a_display(self):
        host = self.start_host(environment={"DISPLAY": None}, strict=False)
        for _ in range(2):
            self.assert_pin_fails(host)
            host.run("DLG_Finalize")
        host.setenv("DISPLAY", os.environ["DISPLAY"])
        self.cancel_pin_dialog(host)

    @own_process_only("each call starts a helper anew")
    def test_a_failed_start_is_tried_again_only_after_finalise(self):
        host = self.start_host(environment={"DISPLAY": None}, strict=False)
        self.assertEqual(FAILED, host.run(PIN))
        host.setenv("DISPLAY", os.environ["DISPLAY"])
        self.assertEqual(FAILED, host.run(PIN))
        host.run("DLG_Finalize")
        self.cancel_pin_dialog(host)

    # Every export with its failure value; None where it returns nothing.
    FAILURES = {
        "DLG_ShowPinDialog": FAILED, "DLG_ShowPinDialogEx": FAILED,
        "DLG_ShowLegalPinDialog": FAILED, "DLG_ShowLegalPinDialogEx": FAILED,
        "DLG_ShowDigitalIDSelection": FAILED, "DLG_ShowTokenSelectionDialog": FAILED,
        "DLG_ShowLockedDialog": FAILED, "DLG_GetTranslationUTF8": FAILED,
        "DLG_GetTranslationUTF16": FAILED, "DLG_GetLocale": FAILED,
        "DLG_ShowSupertokenAuthDlg": FAILED, "DLG_ShowSupertokenEnrolDlg": FAILED,
        "DLG_UpdateSuperTokenEnrolDlg": FAILED, "DLG_HideSupertokenDlg": FAILED,
        "DLG_ShowSupertokenError": FAILED, "DLG_AuthFailRetryDialog": FAILED,
        "DLG_EnrolFailRetryDialog": FAILED, "DLG_ShowKeyGenerationProgressDialog": FAILED,
        "DLG_HideKeyGenerationProgressDialog": FAILED,
        "DLG_ShowConfirmDeleteCertificate": FAILED, "DLG_ShowUnlockTokenDialog": FAILED,
        "DLG_AskChangeTransportPIN": FAILED, "DLG_AskEarlyUnexpirePin": FAILED,
        "DLG_ShowCRUnblockFailed": FAILED, "DLG_ShowPUKIsLocked": FAILED,
        "DLG_ShowSelectUnblockMethod": FAILED, "DLG_ShowUnblockThroughPUK": FAILED,
        "DLG_ShowChangeTransportPIN": FAILED, "DLG_ShowChangePinDialog": FAILED,
        "DLG_ShowChangePolicedPinDialog_func": FAILED, "DLG_ShowUnblockThroughCR": FAILED,
        "DLG_PinPadShowVerificationDialog": 0, "DLG_PinPadShowModificationDialog": 0,
        "DLG_PinPadShowLegalVerificationDialog": 0, "DLG_PinPadShowNoPinVerificationDialog": 0,
        "DLG_PinPadShowLegalNoPinVerificationDialog": 0, "DLG_PinPadHideDialog": None,
        "DLG_PinPadKeyboardInputNextPin": None, "DLG_PinPadKeyboardInputCancel": None,
        "DLG_PinPadKeyboardInputTimeout": None, "DLG_PinPadKeyboardInputAccept": None,
        "DLG_PinPadKeyboardInputAddChar": None, "DLG_PinPadKeyboardInputDelChar": None,
        "DLG_PinPadKeyboardInputClearChars": None, "DLG_PinPadKeyboardInputShouldAbort": 0,
    }

    def test_every_export_answers_its_failure_value(self):
        host = self.start_host(environment={"DISPLAY": None}, strict=False)
        for export, failure in self.FAILURES.items():
            for via in ({}, {"via": "table"}):
                with self.subTest(export=export, **via):
                    handle = {"handle": 0} if failure is None or "Abort" in export else {}
                    self.assertEqual(failure, host.run(export, **via, **handle))


class AfterFinalise(LifeCase):
    """Each export, when the user interface has run before and has been ended."""

    # Without a dialog: what they answer then, all of them by starting anew.
    PLAIN = {
        "DLG_GetTranslationUTF8": OK, "DLG_GetTranslationUTF16": OK, "DLG_GetLocale": OK,
        "DLG_UpdateSuperTokenEnrolDlg": OK, "DLG_HideSupertokenDlg": OK,
        "DLG_HideKeyGenerationProgressDialog": OK,
    }
    PAD_ORDERS = [export for export in WithoutDisplay.FAILURES
                  if export.startswith(("DLG_PinPadKeyboardInput", "DLG_PinPadHide"))]
    NOT_STARTING = {"DLG_SetParameter": NOT_SUPPORTED, "DLG_GetParameter": NOT_SUPPORTED,
                    "DLG_Finalize": None, "QuitApp": None}

    def setUp(self):
        super().setUp()
        self.host = self.start_host()
        self.seen = set()

    def ended(self, export):
        """The threads that are left after the end."""
        self.seen.add(export)
        self.host.run("DLG_Finalize")
        return self.tasks()

    def tasks(self):
        """The threads of the host, and its helpers."""
        return {*map(int, os.listdir(f"/proc/{self.host.pid}/task")), *self.host.helpers()}

    def show_each_dialog(self):
        for dialog in DIALOGS:
            with self.subTest(dialog=dialog.name):
                left = self.ended(dialog.export)
                call, window = show_dialog(self.screen, self.host, dialog)
                self.assertTrue(self.tasks() - left)
                if dialog.modal:
                    self.screen.close_window(window)
                self.assertEqual(dialog.result, call.result())
        self.ended("DLG_Finalize")
        wait_until(lambda: not self.screen.titles(self.host), what="no window")

    def call_each_without_a_dialog(self):
        answers = {export: (result, {}) for export, result in self.PLAIN.items()}
        call = self.host.call("DLG_PinPadShowVerificationDialog")
        self.assertEqual(1, call.result())
        for export in self.PAD_ORDERS:  # of a pad that vanished with the end: without effect
            result = 0 if export.endswith("ShouldAbort") else None
            answers[export] = result, {"handle": call.number("handle")}
        for export, (result, arguments) in answers.items():
            with self.subTest(export=export):
                left = self.ended(export)
                self.assertEqual(result, self.host.run(export, **arguments))
                self.assertTrue(self.tasks() - left)
                self.assertEqual([], self.screen.titles(self.host))

    def call_each_that_starts_nothing(self):
        for export, result in self.NOT_STARTING.items():
            left = self.ended(export)
            self.assertEqual(result, self.host.run(export))
            self.assertLessEqual(self.tasks(), left)
        table = self.host.run("DLG_GetFunctionList")
        left = self.ended("DLG_GetFunctionList")
        self.assertEqual(table, self.host.run("DLG_GetFunctionList"))
        self.assertLessEqual(self.tasks(), left)

    def start_by_init_and_by_the_demonstration(self):
        left = self.ended("InitApp")
        self.assertNotEqual(0, self.host.run("InitApp"))
        self.assertTrue(self.tasks() - left)
        self.ended("TestApp")
        call = self.host.call("TestApp")
        self.screen.close_window(self.screen.find_window(TITLE, self.host, timeout=60))
        self.assertIsNone(call.result())

    def test_every_export_does_what_it_does_before(self):
        self.cancel_pin_dialog(self.host)
        self.show_each_dialog()
        self.call_each_without_a_dialog()
        self.call_each_that_starts_nothing()
        self.start_by_init_and_by_the_demonstration()
        self.assertEqual({*WithoutDisplay.FAILURES, *self.NOT_STARTING, "DLG_GetFunctionList",
                          "InitApp", "TestApp"}, self.seen)
        self.assertEqual(52, len(self.seen))


@own_process_only("watches the start in the host's process")
class SlowStart(LifeCase):
    """The display lets the toolkit wait in the middle of its start."""

    def setUp(self):
        super().setUp()
        self.display = SlowDisplay(os.environ["DISPLAY"])
        self.addCleanup(self.display.close)
        self.host = self.start_host(environment={"DISPLAY": self.display.name})
        for thread in ("first", "second"):
            self.host.run("DLG_SetParameter", thread=thread)
        self.waiting = WaitingThreads(self.host.pid, ("first", "second"))
        # Comes back although the start is not over: it waits for a fraction of a second.
        self.assertNotEqual(0, self.host.run("InitApp"))
        self.display.wait_connected()

    def call_and_wait(self, thread, export, **arguments):
        """A call that has come to wait for the start."""
        waits = self.waiting.watch_sleep(thread)
        call = self.host.call(export, thread, **arguments)
        wait_until(waits, what=f"{export} to wait")
        self.assertFalse(call.done)
        return call

    def test_requests_that_are_sent_meanwhile_are_served_in_turn_once_it_is_over(self):
        pin = self.call_and_wait("first", PIN)
        locale = self.call_and_wait("second", "DLG_GetLocale", bufferCapacity=64)
        self.assertEqual([], self.screen.titles(self.host))
        self.display.let_through()
        window = self.screen.find_window(TITLE, self.host)
        self.assertFalse(locale.done)
        self.screen.type_text("2468", window.find("password text"))
        wait_until(lambda: window.find("push button", "OK").enabled)
        self.screen.key("Return")
        self.assertEqual((OK, b"2468"), (pin.result(), pin.value("pin")))
        self.assertEqual(OK, locale.result())

    def test_the_end_waits_for_it_and_a_later_call_starts_anew(self):
        end = self.call_and_wait("first", "DLG_Finalize")
        self.display.let_through()
        self.assertIsNone(end.result())
        self.cancel_pin_dialog(self.host)


class RoughHosts(StageTestCase):
    """What hosts do that ought not to, see tests/gui/host/rough_host.c."""

    AS_EXPECTED = 43

    def assert_ends_as_expected(self, scenario, *arguments):
        host = subprocess.run([os.environ["ZELDLG_ROUGH_HOST"], scenario, *map(str, arguments)],
                              env={**os.environ, **STILL_RUNNING}, capture_output=True, text=True,
                              timeout=scaled(150), check=False)
        self.assertEqual((self.AS_EXPECTED, ""), (host.returncode, host.stderr),
                         f"{scenario} {arguments}")

    def test_an_exit_while_other_threads_call_ends_with_its_status(self):
        for milliseconds in (0, 30, 60, 90, 120, 150, 200, 300):
            self.assert_ends_as_expected("callers", milliseconds)

    def test_an_exit_while_another_thread_starts_and_ends_ends_with_its_status(self):
        for milliseconds in (0, 30, 60, 90, 120, 150, 200, 300):
            self.assert_ends_as_expected("restarts", milliseconds)

    def test_a_signal_handler_may_exit_while_its_thread_waits_for_the_end(self):
        self.assert_ends_as_expected("signal")

    @unittest.skipIf(os.environ.get("ZELDLG_INSTRUMENTED"),
                     "the sanitizers do not stand asynchronous cancellation")
    @unittest.skipIf(os.environ.get("ZELDLG_COUNTED"),
                     "the way out of each variable's life is counted, and so there to be unwound")
    def test_a_thread_that_can_be_cancelled_anywhere_is_cancelled_around_its_calls(self):
        self.assert_ends_as_expected("cancel")

    @own_process_only("a helper serves that call, too")
    def test_a_call_of_a_librarys_constructor_fails_and_later_ones_work(self):
        self.assert_ends_as_expected("constructor", os.environ["ZELDLG_ROUGH_CONSTRUCTOR"])


class NullArguments(LifeCase):
    # What a host may get wrong, and the failure value that it gets for it.
    CASES = [
        (export, {what: None}, FAILED)
        for export in ("DLG_ShowPinDialog", "DLG_ShowPinDialogEx", "DLG_ShowLegalPinDialog",
                       "DLG_ShowLegalPinDialogEx", "DLG_ShowUnblockThroughPUK",
                       "DLG_ShowChangeTransportPIN", "DLG_ShowChangePinDialog",
                       "DLG_ShowChangePolicedPinDialog_func", "DLG_ShowUnblockThroughCR")
        for what in ("record", "out")
    ] + [
        ("DLG_ShowDigitalIDSelection", {"record": None}, FAILED),
        ("DLG_ShowDigitalIDSelection", {"chosen": None}, FAILED),
        ("DLG_ShowTokenSelectionDialog", {"record": None}, FAILED),
        ("DLG_ShowTokenSelectionDialog", {"identifier": None}, FAILED),
        ("DLG_ShowSupertokenAuthDlg", {"shown": None}, FAILED),
        ("DLG_ShowSupertokenEnrolDlg", {"shown": None}, FAILED),
        ("DLG_ShowSelectUnblockMethod", {"method": None}, FAILED),
        ("DLG_ShowSelectUnblockMethod", {"algorithm": None}, FAILED),
        ("DLG_ShowSelectUnblockMethod", {"algorithms": None, "count": 2}, FAILED),
        ("DLG_PinPadShowVerificationDialog", {"handle": None}, 0),
        ("DLG_ShowLockedDialog", {"label": None}, FAILED),
        ("DLG_GetTranslationUTF8", {"source": None}, FAILED),
        ("DLG_GetTranslationUTF8", {"size": None}, FAILED),
        ("DLG_GetTranslationUTF16", {"size": None}, FAILED),
        ("DLG_GetLocale", {"size": None}, FAILED),
    ] + [
        ("DLG_ShowConfirmDeleteCertificate", {what: None}, FAILED)
        for what in ("application", "label", "issuedTo", "issuedBy", "validFrom", "validTo")
    ]

    def test_they_are_answered_before_anything_is_shown(self):
        host = self.start_host()
        for export, arguments, failure in self.CASES:
            with self.subTest(export=export, **arguments):
                self.assertEqual(failure, host.run(export, **arguments))
        self.assertEqual([], self.screen.titles(host))


class Forking(LifeCase):
    """The child asks for the locale, finalises, and asks again."""

    def test_before_first_use_the_child_starts_a_user_interface_of_its_own(self):
        host = self.start_host(strict=False)
        answer = host.command("fork")
        self.assertEqual((OK, OK), (answer["first"], answer["second"]))
        self.cancel_pin_dialog(host)

    def served(self, host):
        """The child's two results."""
        answer = host.command("fork")
        return answer["first"], answer["second"]

    @own_process_only("looks for helpers where there are none at first")
    def test_after_first_use_the_child_has_a_helper_of_its_own(self):
        host = self.start_host()
        self.cancel_pin_dialog(host)
        self.assertEqual((OK, OK), self.served(host))
        self.assertEqual([], host.helpers())
        self.cancel_pin_dialog(host)

    def test_also_while_a_dialog_is_open(self):
        host = self.start_host()
        call, window = self.show(host, PIN, TITLE)
        self.assertEqual((OK, OK), self.served(host))
        self.assertFalse(call.done)
        self.screen.close_window(window)
        self.assertEqual(CANCELLED, call.result())

    def test_also_while_a_helper_of_the_parents_shows_one(self):
        host = self.start_host(environment=HELPED)
        call, window = self.show(host, PIN, TITLE)
        before = host.helpers()
        self.assertEqual((OK, OK), self.served(host))
        self.assertEqual(before, host.helpers())
        self.assertFalse(call.done)
        self.screen.close_window(window)
        self.assertEqual(CANCELLED, call.result())

    def test_after_finalise_too(self):
        host = self.start_host()
        self.cancel_pin_dialog(host)
        host.run("DLG_Finalize")
        self.assertEqual((OK, OK), self.served(host))
        self.cancel_pin_dialog(host)

    def test_without_helpers_the_childs_calls_fail_at_once(self):
        host = self.start_host(environment=ALONE)
        self.cancel_pin_dialog(host)
        self.assertEqual((FAILED, FAILED), self.served(host))
        self.cancel_pin_dialog(host)


class Unloading(LifeCase):
    def test_after_finalise_the_library_stays_mapped_and_can_be_opened_again(self):
        host = self.start_host()
        self.cancel_pin_dialog(host)
        host.run("DLG_Finalize")
        self.reopen(host)

    def test_without_finalise_too(self):
        host = self.start_host()
        self.cancel_pin_dialog(host)
        self.assertEqual(1, host.run("DLG_PinPadShowVerificationDialog"))
        self.reopen(host)

    def test_while_a_dialog_is_open(self):
        host = self.start_host()
        call, window = self.show(host, PIN, TITLE)
        host.command("dlclose")
        self.screen.close_window(window)
        self.assertEqual(CANCELLED, call.result())
        host.command("dlopen")
        self.cancel_pin_dialog(host)

    def reopen(self, host):
        for _ in range(3):
            host.command("dlclose")
            self.assertTrue(host.command("mapped")["mapped"])
            host.command("dlopen")
            self.cancel_pin_dialog(host)


@own_process_only("is about what else runs in the host's process")
class Neighbours(LifeCase):
    """What else in the process has what the user interface needs."""

    def expect_ticks(self, host):
        ticks = host.ticks()
        wait_until(lambda: host.ticks() > ticks + 3, what="the host's own timer")

    def expect_helped(self, host):
        """A helper serves, until the end."""
        self.cancel_pin_dialog(host)
        self.assertEqual(1, len(host.helpers()))
        host.run("DLG_Finalize")
        self.assertEqual([], host.helpers())

    def test_a_host_that_runs_a_glib_loop_is_helped_and_goes_on(self):
        host = self.start_host()
        host.command("glib-loop start")
        self.expect_helped(host)
        self.expect_ticks(host)
        host.command("glib-loop stop")
        self.cancel_pin_dialog(host)
        self.assertEqual([], host.helpers())

    def test_while_its_dialog_is_open_the_hosts_loop_goes_on(self):
        host = self.start_host()
        host.command("glib-loop start")
        call, window = self.show(host, PIN, TITLE)
        self.expect_ticks(host)
        self.screen.close_window(window)
        self.assertEqual(CANCELLED, call.result())

    def test_a_glib_loop_that_starts_later_is_left_alone_too(self):
        host = self.start_host()
        self.cancel_pin_dialog(host)
        host.command("glib-loop start")
        self.expect_ticks(host)
        self.expect_helped(host)
        self.expect_ticks(host)
        host.command("glib-loop stop")
        self.cancel_pin_dialog(host)

    def test_a_helper_that_has_begun_goes_on_when_the_hosts_loop_has_ended(self):
        host = self.start_host()
        host.command("glib-loop start")
        self.assertEqual(1, host.run("DLG_PinPadShowVerificationDialog", pad="one"))
        host.command("glib-loop stop")
        window = self.screen.find_window("PinPad", host)
        host.run("DLG_PinPadHideDialog", pad="one")
        self.screen.wait_gone(window)

    def test_a_host_with_a_toolkit_of_its_own_is_helped_and_goes_on(self):
        host = self.start_host(toolkit="wx")
        host.command("toolkit start")
        window = self.screen.find_window("Host window", host)
        self.expect_helped(host)
        self.assertTrue(window.showing)
        host.command("toolkit stop")
        self.screen.wait_gone(window)
        self.cancel_pin_dialog(host)

    def test_a_host_that_has_started_gtk_itself_is_helped(self):
        host = self.start_host()
        self.assertTrue(host.command("gtk-init")["started"])
        self.expect_helped(host)
        self.expect_helped(host)

    def test_without_helpers_it_gets_failures_and_goes_on(self):
        host = self.start_host(environment=ALONE, toolkit="wx")
        host.command("glib-loop start")
        self.assert_pin_fails(host)
        self.expect_ticks(host)
        host.command("glib-loop stop")
        host.run("DLG_Finalize")
        host.command("toolkit start")
        self.assert_pin_fails(host)
        host.command("toolkit stop")
        host.run("DLG_Finalize")
        self.cancel_pin_dialog(host)

    def test_without_helpers_a_loop_that_starts_later_is_left_alone_too(self):
        host = self.start_host(environment=ALONE)
        self.cancel_pin_dialog(host)
        host.command("glib-loop start")
        self.assert_pin_fails(host)
        self.expect_ticks(host)
        host.command("glib-loop stop")
        self.cancel_pin_dialog(host)

    def test_signal_dispositions_stay_the_hosts_own(self):
        for how in (None, "ignore", "handler"):
            host = self.start_host()
            if how is not None:
                host.command(f"signal SIGPIPE {how}")
            before = host.signals()
            self.cancel_pin_dialog(host)
            self.assertEqual(before, host.signals())
            host.run("DLG_Finalize")
            self.assertEqual(before, host.signals())


if __name__ == "__main__":
    unittest.main()
