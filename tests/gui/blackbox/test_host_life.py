#!/usr/bin/python3
"""How the library lives in its host: start, end, threads, neighbours."""

import os
import unittest

from stage import CANCELLED, FAILED, OK, StageTestCase, wait_until

PIN = "DLG_ShowPinDialog"
TITLE = "Enter PIN"


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
        (rss, threads, files), (last_rss, last_threads, last_files) = sizes
        self.assertLessEqual(last_threads, threads)
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
            self.assert_pin_fails_soon(host)
            host.run("DLG_Finalize")
        host.setenv("DISPLAY", os.environ["DISPLAY"])
        self.cancel_pin_dialog(host)

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

    def test_after_first_use_the_childs_calls_fail_at_once(self):
        host = self.start_host()
        self.cancel_pin_dialog(host)
        answer = host.command("fork")
        self.assertEqual((FAILED, FAILED), (answer["first"], answer["second"]))
        self.cancel_pin_dialog(host)

    def test_also_while_a_dialog_is_open(self):
        host = self.start_host()
        call, window = self.show(host, PIN, TITLE)
        answer = host.command("fork")
        self.assertEqual((FAILED, FAILED), (answer["first"], answer["second"]))
        self.assertFalse(call.done)
        self.screen.close_window(window)
        self.assertEqual(CANCELLED, call.result())

    def test_after_finalise_too(self):
        host = self.start_host()
        self.cancel_pin_dialog(host)
        host.run("DLG_Finalize")
        answer = host.command("fork")
        self.assertEqual((FAILED, FAILED), (answer["first"], answer["second"]))
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


class Neighbours(LifeCase):
    def test_a_host_that_runs_a_glib_loop_gets_failures_and_goes_on(self):
        host = self.start_host()
        host.command("glib-loop start")
        for _ in range(2):
            self.assertEqual(FAILED, host.run(PIN))
        ticks = host.ticks()
        wait_until(lambda: host.ticks() > ticks + 3, what="the host's own timer")
        host.command("glib-loop stop")
        host.run("DLG_Finalize")
        self.cancel_pin_dialog(host)

    def test_a_glib_loop_that_starts_later_is_left_alone_too(self):
        host = self.start_host()
        self.cancel_pin_dialog(host)
        host.command("glib-loop start")
        wait_until(lambda: host.ticks() > 3, what="the host's own timer")
        self.assertEqual(FAILED, host.run(PIN))
        ticks = host.ticks()
        wait_until(lambda: host.ticks() > ticks + 3, what="the host's own timer")
        host.command("glib-loop stop")
        self.cancel_pin_dialog(host)

    def test_a_host_with_a_toolkit_of_its_own_gets_failures_and_goes_on(self):
        host = self.start_host(toolkit=True)
        host.command("toolkit start")
        window = self.screen.find_window("Host window", host)
        for _ in range(2):
            self.assertEqual(FAILED, host.run(PIN))
        self.assertTrue(window.showing)
        host.run("DLG_Finalize")
        self.assertTrue(window.showing)
        host.command("toolkit stop")
        self.screen.wait_gone(window)
        self.cancel_pin_dialog(host)

    def test_a_host_that_has_started_gtk_itself_is_served(self):
        host = self.start_host()
        self.assertTrue(host.command("gtk-init")["started"])
        self.cancel_pin_dialog(host)
        host.run("DLG_Finalize")
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
