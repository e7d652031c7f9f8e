#!/usr/bin/python3
"""The package for hosts in Python, on functions that stand for those of the library."""

import copy
import ctypes
import inspect
import os
import re
import subprocess
import sys
import unittest
from types import SimpleNamespace
from unittest import mock

ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", ".."))
sys.path.insert(0, os.path.join(ROOT, "python"))

import zeldlg  # noqa: E402
from zeldlg import (Attempts, Bounds, ChangeRequest, Choice, Failure, PinPad,  # noqa: E402
                    PinRequest, Policy, Result, Secret, UnblockRequest)
from zeldlg import _records as records  # noqa: E402

RECORDS = "zeldlg/_records.py"


def text(secret):
    return bytes(secret.data).decode()


def snake(name):
    return re.sub(r"(?<=[a-z])([A-Z])", r"_\1", name).upper()


class Library:
    """What the library was asked, and what its user does."""

    def __init__(self):
        self.code = Result.OK
        self.typed, self.second = b"2468", b"97531"
        self.chosen = 0
        self.abort = False
        self.calls = []
        self.fields = {}
        self.policy = None
        self.characters = None
        self.rows = []
        self.capacity = None
        self.table = records.DLG_FunctionList(version=14)
        for name, kind in records.DLG_FunctionList._fields_[1:]:
            setattr(self.table, name, kind(self._function(name)))

    def _function(self, name):
        def call(*arguments):
            self.calls.append(name)
            return getattr(self, name, self._answer)(*arguments)
        return call

    def _answer(self, *_):
        return int(self.code)

    def _ask(self, request, buffer):
        self.fields = {field: getattr(request.contents, field)
                       for field, _ in request.contents._fields_}
        self.capacity = buffer.contents.pinLength
        if self.code == Result.OK:
            ctypes.memmove(buffer.contents.pin, self.typed, len(self.typed))
            buffer.contents.pinLength = len(self.typed)
        return int(self.code)

    ShowPinDialog = ShowPinDialogEx = ShowLegalPinDialog = ShowLegalPinDialogEx = _ask

    def _change(self, request, buffers):
        self.fields = {field: getattr(request.contents, field)
                       for field, _ in request.contents._fields_}
        policy = self.fields.get("policy")
        if policy:
            self.descriptor = policy.contents.tag, policy.contents.size
            wire = policy.contents.block.contents
            self.policy = {field: getattr(wire, field) for field, _ in wire._fields_}
            characters = wire.charList.contents
            self.characters = (characters.characters or b"")[:characters.length]
        if self.code == Result.OK:
            for name, value in (("old", self.typed), ("new", self.second)):
                ctypes.memmove(getattr(buffers.contents, name + "Value"), value, len(value))
                setattr(buffers.contents, name + "Length", len(value))
        return int(self.code)

    ShowChangePinDialog = ShowChangeTransportPIN = ShowChangePolicedPinDialog_func = _change

    def ShowTokenSelectionDialog(self, choices, identifier):
        entries = choices.contents.entries
        self.rows = [(entries[i].name, entries[i].detail) for i in range(choices.contents.count)]
        identifier[0] = entries[self.chosen].identifier
        return int(self.code)

    def PinPadShowModificationDialog(self, handle, _allow_abort):
        handle[0] = 4711
        return int(self.code == Result.OK)

    def PinPadKeyboardInputShouldAbort(self, handle):
        return int(self.abort and handle == 4711)

    def PinPadHideDialog(self, handle):
        assert handle == 4711


class PackageCase(unittest.TestCase):
    def setUp(self):
        self.library = Library()

        def get_list():
            return ctypes.pointer(self.library.table)
        self.enterContext(mock.patch.object(
            zeldlg.ctypes, "CDLL", lambda _path: SimpleNamespace(DLG_GetFunctionList=get_list)))
        self.dialogs = zeldlg.Session()
        self.addCleanup(self.dialogs.close)


class Description(unittest.TestCase):
    def test_the_records_are_those_of_the_description(self):
        made = subprocess.run(
            [sys.executable, os.path.join(ROOT, "python/make_records.py"),
             os.path.join(ROOT, "tests/abi/zeldlg.abi")],
            check=True, stdout=subprocess.PIPE, text=True).stdout
        with open(os.path.join(ROOT, "python", RECORDS), encoding="utf-8") as file:
            self.assertEqual(made, file.read())

    def test_a_record_of_another_layout_is_refused(self):
        with self.assertRaises(ImportError):
            records._check(records.PinBuffer, 12, (0, 8))
        with self.assertRaises(ImportError):
            records._check(records.PinBuffer, 16, (0, 12))

    def test_help_describes_everything_that_is_public(self):
        for name in zeldlg.__all__:
            public = getattr(zeldlg, name)
            self.assertTrue(inspect.getdoc(public), name)
            for member, value in getattr(public, "__dict__", {}).items():
                if not member.startswith("_") and (inspect.isfunction(value)
                                                   or inspect.isclass(value)):
                    self.assertTrue(value.__doc__, f"{name}.{member}")

    def test_the_names_are_those_of_the_wrapper_in_cpp(self):
        header = ""
        for name in ("zeldlg.hpp", "probe.hpp"):
            with open(os.path.join(ROOT, "include/zeldlg", name), encoding="utf-8") as file:
                text = re.sub(r"/\*\* @cond \*/.*?/\*\* @endcond \*/", "", file.read(),
                              flags=re.DOTALL)
            header += re.sub(r"/\*.*?\*/|//[^\n]*", "", text, flags=re.DOTALL)
        classes = re.findall(r"^(?:class|struct|enum class) (\w+)(.*?)^\};", header,
                             re.MULTILINE | re.DOTALL)
        self.assertEqual(sorted(zeldlg.__all__), sorted([name for name, _ in classes] + ["probe"]))
        for name, body in classes:
            found = set(dir(getattr(zeldlg, name)))
            public = body.split("private:")[0]
            if re.search(rf"enum class {name}\b", header):
                self.assertEqual({snake(each) for each in re.findall(r"^ +(\w+)(?: = \w+)?, *$", body,
                                                                     re.MULTILINE)},
                                 {each.name for each in getattr(zeldlg, name)})
            functions = set(re.findall(r"^    (?=\S)[\w:&<>\[\] ]+? [&*]?([a-z_]+)\(", public,
                                       re.MULTILINE))
            # What Python says in another way.
            functions -= {"bool", "load", "functions", "empty", "size", "shown"}
            self.assertLessEqual(functions, found, name)
        self.assertIn("ask_pin", dir(zeldlg.Session))


class Secrets(unittest.TestCase):
    def test_what_is_cut_off_is_overwritten(self):
        secret = Secret(6)
        secret.data[:] = b"246813"
        whole = memoryview(secret._as_parameter_).cast("B")
        secret.truncate(4)
        self.assertEqual("2468", text(secret))
        self.assertEqual(b"2468\0\0", bytes(whole))
        with secret:
            pass
        self.assertEqual(bytes(6), bytes(whole))
        self.assertEqual(0, len(secret))

    def test_it_is_overwritten_when_nothing_refers_to_it(self):
        secret = Secret(4)
        secret.data[:] = b"2468"
        whole = memoryview(secret._as_parameter_).cast("B")
        del secret
        self.assertEqual(bytes(4), bytes(whole))

    def test_it_is_neither_printed_nor_copied(self):
        secret = Secret(4)
        secret.data[:] = b"2468"
        self.assertNotIn("2468", repr(secret) + str(secret))
        with self.assertRaises(TypeError):
            copy.copy(secret)

    def test_ctypes_takes_its_bytes(self):
        secret = Secret(4)
        secret.data[:] = b"2468"
        length = ctypes.CDLL(None).strnlen
        self.assertEqual(4, length(secret, len(secret)))


class Pins(PackageCase):
    def test_the_function_fits_what_is_known(self):
        for of, legal, name in ((0, False, "ShowPinDialog"), (0, True, "ShowLegalPinDialog"),
                                (3, False, "ShowPinDialogEx"), (3, True, "ShowLegalPinDialogEx")):
            result, pin = self.dialogs.ask_pin(
                PinRequest("Zürich", Bounds(4, 12), Attempts(left=of, of=of), legal))
            self.assertEqual((Result.OK, "2468"), (result, text(pin)))
            self.assertEqual(name, self.library.calls[-1])
            self.assertEqual("Zürich".encode(), self.library.fields["tokenLabel"])
            self.assertEqual((4, 12), (self.library.fields["minPinLength"],
                                       self.library.fields["maxPinLength"]))
        self.assertEqual((3, 3), (self.library.fields["maxTries"],
                                  self.library.fields["triesLeft"]))

    def test_wrong_attempts_are_told(self):
        for attempts, expected in ((Attempts(), (1, 0, 1)),
                                   (Attempts(Failure.NOW), (0, 0, 0)),
                                   (Attempts(Failure.EARLIER), (0, 0, 1)),
                                   (Attempts(final_try=True), (1, 1, 1)),
                                   (Attempts(Failure.NOW, left=1), (0, 1, 0))):
            self.dialogs.ask_pin(PinRequest("Card", attempts=attempts))
            self.assertEqual(expected, tuple(
                self.library.fields[name] for name in ("noFailure", "finalTry", "failedEarlier")))

    def test_there_is_no_pin_unless_it_was_confirmed(self):
        for code, expected in ((Result.CANCELLED, Result.CANCELLED),
                               (Result.FAILED, Result.FAILED), (0x12345678, Result.FAILED)):
            self.library.code = code
            result, pin = self.dialogs.ask_pin(PinRequest("Card"))
            self.assertEqual((expected, 0), (result, len(pin)))

    def test_too_many_bytes_are_told_from_cancelled(self):
        self.library.typed = "ééééé".encode()
        result, pin = self.dialogs.ask_pin(PinRequest("Card", Bounds(4, 8)))
        self.assertEqual((Result.TOO_LONG, 0, 32), (result, len(pin), self.library.capacity))
        self.assertEqual(Result.OK, self.dialogs.ask_pin(PinRequest("Card", Bounds(4, 10)))[0])

    def test_what_nothing_fits_is_refused(self):
        for bounds in (Bounds(5, 4), Bounds(0, 0), Bounds(4, 65537), Bounds(-1, 4)):
            for ask in (lambda: self.dialogs.ask_pin(PinRequest("Card", bounds)),
                        lambda: self.dialogs.unblock(UnblockRequest("Card", bounds)),
                        lambda: self.dialogs.change_pin(ChangeRequest("Card", bounds)),
                        lambda: self.dialogs.change_pin(ChangeRequest("Card", old_pin=bounds))):
                self.assertRaises(ValueError, ask)
        for attempts in (Attempts(of=3), Attempts(left=4, of=3), Attempts(left=-1)):
            self.assertRaises(ValueError, self.dialogs.ask_pin,
                              PinRequest("Card", attempts=attempts))
        self.assertRaises(ValueError, self.dialogs.select, [])
        self.assertEqual([], self.library.calls)

    def test_a_change_takes_the_smaller_dialog_when_nothing_needs_the_larger_one(self):
        result, old, new = self.dialogs.change_pin(
            ChangeRequest("Card", attempts=Attempts(Failure.NOW)))
        self.assertEqual((Result.OK, "2468", "97531"), (result, text(old), text(new)))
        self.assertEqual(["ShowChangePinDialog"], self.library.calls)
        self.assertEqual((0, 0), (self.library.fields["noFailure"],
                                  self.library.fields["changePuk"]))
        self.dialogs.change_pin(ChangeRequest("Card", attempts=Attempts(left=1, of=3), puk=True))
        self.assertEqual("ShowChangePolicedPinDialog_func", self.library.calls[-1])
        self.assertFalse(self.library.fields["policy"])
        self.assertEqual((1, 1, 1), tuple(self.library.fields[name]
                                          for name in ("changePuk", "finalTry", "triesLeft")))

    def test_a_policy_is_a_record_that_can_be_read(self):
        policy = Policy().no_run(2).classes(2, of=Policy.Class.LOWER | Policy.Class.DIGIT)
        policy.min_length(6).history(5).without("01")
        self.dialogs.change_pin(ChangeRequest("Card", Bounds(6, 16), Bounds(4, 12),
                                              policy=policy))
        self.assertEqual((0, 32), self.library.descriptor)
        expected = {"enabledMask": 15, "p1Threshold": 2, "p1FullPinCheck": 1, "p2NbClass": 2,
                    "p2PopMin": 1, "p2MinLen": 6, "p2ClassMask": 5, "p3HistorySize": 5,
                    "p3StrictOnly": 1, "p4IsWhiteList": 0, "source": -4}
        self.assertEqual(expected, {name: self.library.policy[name] for name in expected})
        self.assertEqual(b"01", self.library.characters)
        self.assertEqual((4, 12), (self.library.fields["oldMinLength"],
                                   self.library.fields["oldMaxLength"]))

    def test_no_policy_is_built_that_no_pin_keeps(self):
        for build in (lambda: Policy().classes(3, of=Policy.Class.LOWER | Policy.Class.DIGIT),
                      lambda: Policy().classes(1, of=32), lambda: Policy().only(""),
                      lambda: Policy().without("ä"), lambda: Policy().min_length(256),
                      lambda: self.dialogs.change_pin(
                          ChangeRequest("Card", policy=Policy().min_length(9)))):
            self.assertRaises(ValueError, build)
        self.assertEqual([], self.library.calls)

    def test_unblocking_asks_for_the_puk(self):
        result, puk, new = self.dialogs.unblock(UnblockRequest("Card"))
        self.assertEqual((Result.OK, "2468", "97531"), (result, text(puk), text(new)))
        self.assertEqual(["ShowChangeTransportPIN"], self.library.calls)


class Others(PackageCase):
    def test_the_chosen_line_is_given_by_its_number(self):
        self.library.chosen = 1
        lines = [Choice("One", "A"), Choice("Two")]
        self.assertEqual((Result.OK, 1), self.dialogs.select(lines))
        self.assertEqual([(b"One", b"A"), (b"Two", b"")], self.library.rows)
        self.library.code = Result.CANCELLED
        self.assertEqual((Result.CANCELLED, -1), self.dialogs.select(lines))

    def test_only_the_second_line_of_a_confirmation_is_a_yes(self):
        self.assertEqual(Result.CANCELLED, self.dialogs.confirm("Keep", "Delete", "it"))
        self.library.chosen = 1
        self.assertEqual(Result.OK, self.dialogs.confirm("Keep", "Delete", "it"))
        self.library.code = Result.FAILED
        self.assertEqual(Result.FAILED, self.dialogs.confirm("Keep", "Delete", "it"))

    def test_of_a_box_is_said_only_whether_it_was_shown(self):
        def show_all():
            return [self.dialogs.show_locked("Card"), self.dialogs.show_puk_locked(),
                    self.dialogs.show_change_transport_pin(), self.dialogs.show_expiry(3),
                    self.dialogs.show_unlock(),
                    self.dialogs.show_delete_certificate(zeldlg.Certificate(*"123456"))]
        self.library.code = Result.CANCELLED  # what a question answers that was shown
        self.assertEqual([True] * 6, show_all())
        self.library.code = Result.FAILED
        self.assertEqual([False] * 6, show_all())

    def test_the_progress_is_hidden_whatever_happens(self):
        with self.assertRaises(ZeroDivisionError), zeldlg.Progress(self.dialogs) as progress:
            self.assertTrue(progress.shown)
            1 / 0
        self.assertEqual(["ShowKeyGenerationProgressDialog", "HideKeyGenerationProgressDialog"],
                         self.library.calls)

    def test_a_pin_pad_starts_with_its_first_pin_and_is_hidden(self):
        with PinPad(self.dialogs, PinPad.Kind.MODIFICATION, True) as pad:
            self.assertFalse(pad.aborted())
            pad.add_char()
            self.library.abort = True
            self.assertTrue(pad.aborted())
        self.assertEqual(
            ["PinPadShowModificationDialog", "PinPadKeyboardInputNextPin",
             "PinPadKeyboardInputShouldAbort", "PinPadKeyboardInputAddChar",
             "PinPadKeyboardInputShouldAbort", "PinPadHideDialog"], self.library.calls)

    def test_a_pin_pad_that_is_not_shown_is_left_alone(self):
        self.library.code = Result.FAILED
        with PinPad(self.dialogs, PinPad.Kind.MODIFICATION, True) as pad:
            self.assertFalse(pad.shown or pad.aborted())
        self.assertEqual(["PinPadShowModificationDialog"], self.library.calls)

    def test_the_last_session_ends_the_user_interface(self):
        with zeldlg.Session() as second:
            second.close()
        self.assertEqual([], self.library.calls)
        self.dialogs.close()
        self.assertEqual(["Finalize"], self.library.calls)

    def test_functions_of_another_version_are_refused(self):
        self.library.table.version = 15
        self.assertRaises(RuntimeError, zeldlg.Session)


if __name__ == "__main__":
    unittest.main()
