"""The dialogs of libzeldlglib.so.3 for hosts in Python.

    import zeldlg

    with zeldlg.Session() as dialogs:
        result, pin = dialogs.ask_pin(zeldlg.PinRequest("Identity card", zeldlg.Bounds(4, 8)))
        if result is zeldlg.Result.OK:
            with pin:  # overwritten when the block ends
                log_in(pin)  # your own; len(pin) bytes at pin.data, or pin itself for ctypes

What a user does, and a display that is not there, is a Result. What a program does wrong (bounds
that nothing fits, a policy that nothing satisfies) raises ValueError before anything is shown.

All texts are str and end at their first zero character. All lengths are UTF-8 bytes. Every function
may be called from any thread and waits for the user, without a time limit; meanwhile other threads
go on. Calls from several threads are served one at a time.

Nothing but ctypes and the installed library is needed. zeldlg.hpp has the same names for C++.
"""

from __future__ import annotations

import ctypes
import enum
import threading
from collections.abc import Sequence
from dataclasses import dataclass
from types import TracebackType
from typing import NamedTuple

from . import _records as records
from ._probe import Probe, probe

__all__ = ["Attempts", "Bounds", "Certificate", "ChangeRequest", "Choice", "Failure", "PinPad",
           "PinRequest", "Policy", "Probe", "Progress", "Result", "Secret", "Session", "UnblockRequest",
           "probe"]

_FUNCTION_LIST_VERSION = 14


class Result(enum.IntEnum):
    """What came of a dialog."""

    OK = 0x00000000
    """The user confirmed."""
    FAILED = 0x80003000
    """It could not be shown: there is no display, as a rule."""
    CANCELLED = 0x80003001
    """The user cancelled or closed the dialog."""
    TOO_LONG = 0x80003002
    """Session.ask_pin only: what was typed has more bytes than the token takes. It is wrong, and
    costs no try as long as the token does not see it."""


class Secret:
    """Bytes of a PIN, a PUK or a response, without a terminating zero.

    They are overwritten by wipe(), at the end of a `with` block, and when nothing refers to the
    object any more. ctypes takes the object where it takes an array of c_uint8, without a copy.
    """

    def __init__(self, size: int = 0) -> None:
        """Zeroes; their number is `size`."""
        self._as_parameter_ = (ctypes.c_uint8 * size)()
        self._size = size

    @property
    def data(self) -> memoryview:
        """The bytes themselves. A copy of them, bytes(secret.data) for one, stays in memory."""
        return memoryview(self._as_parameter_).cast("B")[:self._size]

    def __len__(self) -> int:
        return self._size

    def truncate(self, size: int) -> None:
        """Keeps the first `size` bytes, and overwrites the others."""
        if size < self._size:
            ctypes.memset(ctypes.addressof(self._as_parameter_) + size, 0, self._size - size)
            self._size = size

    def wipe(self) -> None:
        """Overwrites all and is empty."""
        self.truncate(0)

    def __enter__(self) -> Secret:
        return self

    def __exit__(self, kind: type[BaseException] | None, error: BaseException | None,
                 trace: TracebackType | None) -> None:
        self.wipe()

    def __del__(self) -> None:
        if hasattr(self, "_size"):
            self.wipe()

    def __repr__(self) -> str:
        return f"<Secret of {self._size} bytes>"

    def __reduce__(self) -> str:
        raise TypeError("a Secret is not copied")


class Bounds(NamedTuple):
    """How long a value may be, in UTF-8 bytes: at least one, at most 65,536.

    The dialogs that ask for a PIN take `min` characters, which are as many bytes at least.
    """

    min: int = 4
    max: int = 8


class Failure(enum.Enum):
    """Whether a wrong value was entered."""

    NONE = enum.auto()
    """None is on record."""
    EARLIER = enum.auto()
    """Before this dialog, by somebody else maybe."""
    NOW = enum.auto()
    """The answer to the dialog before this one was wrong."""


@dataclass(frozen=True)
class Attempts:
    """What is known of the attempts; the dialogs warn of it in red.

    final_try: the next wrong value locks; also when `left` is 1.
    left: tries that are left; 0 = not known. of: the full counter of tries; 0 = not known.
    """

    failure: Failure = Failure.NONE
    final_try: bool = False
    left: int = 0
    of: int = 0


@dataclass(frozen=True)
class PinRequest:
    """What Session.ask_pin asks for.

    label: label of the token. pin: length of the PIN.
    attempts: with both numbers known the dialog tells how many tries are left.
    legal: the PIN authorises a legally binding signature.
    """

    label: str
    pin: Bounds = Bounds()
    attempts: Attempts = Attempts()
    legal: bool = False


@dataclass(frozen=True)
class UnblockRequest:
    """What Session.unblock asks for.

    label: label of the token. pin: length of the PUK and of the new PIN.
    attempts: those with the PUK; as for a change, without a number of tries.
    """

    label: str
    pin: Bounds = Bounds()
    attempts: Attempts = Attempts()


class Policy:
    """The rules that a new PIN has to keep, beside its length. A new policy has none.

    What is built here can be read by the library and be kept by some PIN: what could not raises
    ValueError. Every function gives the policy itself, so that calls can follow each other.
    """

    class Class(enum.IntFlag):
        """Classes of characters. A byte of 128 and above is an other character, as `$` is."""

        LOWER = 1
        UPPER = 2
        DIGIT = 4
        PUNCTUATION = 8
        OTHER = 16
        ANY = 31

    _DISTANCE, _CLASSES, _HISTORY, _CHARACTERS = 1, 2, 4, 8

    def __init__(self) -> None:
        self._fields: dict[str, int] = {"enabledMask": 0}
        self._characters = b""

    def no_run(self, step: int = 1) -> Policy:
        """Refuse PINs that are one run, such as 123456 or 975310; `step` is a run's largest."""
        return self._enable(self._DISTANCE, p1Threshold=step, p1FullPinCheck=1)

    def no_near_neighbours(self, step: int = 0) -> Policy:
        """Refuse PINs in which any two neighbours are at most `step` from each other: 11, or 12."""
        return self._enable(self._DISTANCE, p1Threshold=step, p1FullPinCheck=0)

    def classes(self, count: int, each: int = 1, of: Class = Class.ANY) -> Policy:
        """Ask for `count` of the classes `of`, with `each` characters of every one that is used."""
        if not 0 <= of <= Policy.Class.ANY or count > bin(of).count("1"):
            raise ValueError("a policy asks for more classes than there are")
        return self._enable(self._CLASSES, p2NbClass=count, p2PopMin=each, p2ClassMask=int(of))

    def min_length(self, count: int) -> Policy:
        """Ask for `count` bytes at least."""
        return self._enable(self._CLASSES, p2MinLen=count)

    def history(self, size: int) -> Policy:
        """Say that the token refuses the `size` PINs that it has had last.

        The token has to check that: this is told to the user.
        """
        return self._enable(self._HISTORY, p3HistorySize=size, p3StrictOnly=1)

    def only(self, characters: str) -> Policy:
        """Allow these characters only. They are ASCII, and there is one at least."""
        return self._restrict(characters, True)

    def without(self, characters: str) -> Policy:
        """Refuse these characters. They are ASCII, and there is one at least."""
        return self._restrict(characters, False)

    def _enable(self, rule: int, **fields: int) -> Policy:
        for name, value in fields.items():
            if not 0 <= value <= 255:
                raise ValueError(f"a policy's number is from 0 to 255, not {value}")
        self._fields.update(fields)
        self._fields["enabledMask"] |= rule
        return self

    def _restrict(self, characters: str, allowed: bool) -> Policy:
        if not characters:  # would be no restriction at all
            raise ValueError("a policy restricts characters and names none")
        self._characters = characters.encode("ascii")
        return self._enable(self._CHARACTERS, p4IsWhiteList=int(allowed))

    def _descriptor(self, longest: int) -> records.PinPolicyDescriptor:
        if self._fields.get("p2MinLen", 0) > longest:
            raise ValueError("a policy asks for a longer PIN than fits")
        characters = records.PinPolicyCharList(length=len(self._characters),
                                               characters=self._characters)
        wire = records.PinPolicyWire(charList=ctypes.pointer(characters), source=-4,
                                     **self._fields)
        return records.PinPolicyDescriptor(size=ctypes.sizeof(wire), block=ctypes.pointer(wire))


@dataclass(frozen=True)
class ChangeRequest:
    """What Session.change_pin asks for.

    label: label of the token. new_pin: length of the new value.
    old_pin: length of the old value; None = that of the new one.
    attempts: those with the old value. Failure.EARLIER is shown only when the next try is the last.
    policy: what the new value has to keep; None = its length alone.
    puk: it is the PUK that is changed.
    """

    label: str
    new_pin: Bounds = Bounds()
    old_pin: Bounds | None = None
    attempts: Attempts = Attempts()
    policy: Policy | None = None
    puk: bool = False


class Choice(NamedTuple):
    """One line of Session.select: what is chosen, and what tells it apart, in brackets."""

    name: str
    detail: str = ""


@dataclass(frozen=True)
class Certificate:
    """What Session.show_delete_certificate shows. Dates are shown as they are.

    application: who wants to delete it. label: label of its token.
    """

    application: str
    label: str
    issued_to: str
    issued_by: str
    valid_from: str
    valid_to: str


class Session:
    """The library, for as long as a host wants to use it: a `with` block, or until close().

    Making one starts nothing: the user interface starts at the first dialog, and ends with the
    program's last session. A failed start (Result.FAILED) can be tried again after that.
    """

    _lock = threading.Lock()
    _count = 0

    def __init__(self, library: str = "libzeldlglib.so.3") -> None:
        """library: its file, or a name that the loader looks up.

        Raises OSError when it cannot be loaded, RuntimeError when it is of another version.
        """
        get_list = ctypes.CDLL(library).DLG_GetFunctionList
        get_list.restype = ctypes.POINTER(records.DLG_FunctionList)
        self.functions = get_list().contents
        """The library's own functions, for what this class has not; described in zeldlg.h."""
        if self.functions.version != _FUNCTION_LIST_VERSION:
            raise RuntimeError(f"{library} has another version of its functions")
        self._open = True
        with Session._lock:
            Session._count += 1

    def close(self) -> None:
        """Ends the session; that of the last one waits for a dialog that is open."""
        with Session._lock:
            is_last = self._open and Session._count == 1
            Session._count -= int(self._open)
            self._open = False
        if is_last:
            self.functions.Finalize()

    def __enter__(self) -> Session:
        return self

    def __exit__(self, kind: type[BaseException] | None, error: BaseException | None,
                 trace: TracebackType | None) -> None:
        self.close()

    # ---- PINs

    def ask_pin(self, request: PinRequest) -> tuple[Result, Secret]:
        """Ask for a PIN: for a login, or for a legally binding signature.

        Gives any Result, and the PIN on Result.OK; else an empty Secret.
        """
        _check(request.pin)
        _check_attempts(request.attempts)
        # Bounds count characters there, of up to four bytes each. A buffer of just the bytes that
        # the token takes would make a longer PIN look like one that was cancelled.
        pin = Secret(4 * request.pin.max)
        buffer = records.PinBuffer(pin=pin._as_parameter_, pinLength=len(pin))
        attempts = request.attempts
        common = {"tokenLabel": request.label.encode(), "minPinLength": request.pin.min,
                  "maxPinLength": request.pin.max,
                  # A final try counts as failed; without a failure now, it was earlier.
                  "failedEarlier": attempts.failure is not Failure.NOW}
        if attempts.of:
            show = (self.functions.ShowLegalPinDialogEx if request.legal
                    else self.functions.ShowPinDialogEx)
            code = show(records.PinDialogRequestEx(maxTries=attempts.of, triesLeft=attempts.left,
                                                   **common), buffer)
        else:
            show = (self.functions.ShowLegalPinDialog if request.legal
                    else self.functions.ShowPinDialog)
            code = show(records.PinDialogRequest(noFailure=attempts.failure is Failure.NONE,
                                                 finalTry=_is_final(attempts), **common), buffer)
        result = _result(code)
        if result is Result.OK and buffer.pinLength > request.pin.max:
            result = Result.TOO_LONG
        pin.truncate(buffer.pinLength if result is Result.OK else 0)
        return result, pin

    def change_pin(self, request: ChangeRequest) -> tuple[Result, Secret, Secret]:
        """Ask for the old PIN (or PUK) and, twice, for a new one.

        The title says "Change transport PIN". Gives OK, CANCELLED or FAILED, and the old and the
        new value on Result.OK; else empty ones.
        """
        old_pin = request.old_pin or request.new_pin
        for bounds in (old_pin, request.new_pin):
            _check(bounds)
        _check_attempts(request.attempts)
        fields = _change_fields(request.label, request.new_pin, request.attempts)
        if request.policy is None and request.old_pin is None and request.attempts.left == 0:
            return _change(self.functions.ShowChangePinDialog,
                           records.PinChangeRequest(changePuk=request.puk, **fields),
                           old_pin, request.new_pin)
        policy = request.policy and ctypes.pointer(
            request.policy._descriptor(request.new_pin.max))
        return _change(self.functions.ShowChangePolicedPinDialog_func,
                       records.PolicedPinChangeRequest(
                           changePuk=request.puk, triesLeft=request.attempts.left, policy=policy,
                           oldMinLength=old_pin.min, oldMaxLength=old_pin.max, **fields),
                       old_pin, request.new_pin)

    def unblock(self, request: UnblockRequest) -> tuple[Result, Secret, Secret]:
        """Ask for the PUK and, twice, for a new PIN.

        Gives OK, CANCELLED or FAILED, and the PUK and the new PIN on Result.OK; else empty ones.
        (The function of the C interface that does so is called DLG_ShowChangeTransportPIN; this
        one is not DLG_ShowUnblockThroughPUK.)
        """
        _check(request.pin)
        _check_attempts(request.attempts)
        return _change(self.functions.ShowChangeTransportPIN,
                       records.PinChangeRequest(
                           **_change_fields(request.label, request.pin, request.attempts)),
                       request.pin, request.pin)

    # ---- choices

    def select(self, choices: Sequence[Choice]) -> tuple[Result, int]:
        """Let the user choose a line of a list of one at least. The title says "Select a token".

        Gives OK, CANCELLED or FAILED, and the number of the chosen line, from 0; else -1.
        """
        if not choices:
            raise ValueError("nothing to choose from")
        entries = (records.TokenChoiceEntry * len(choices))(
            *((choice.name.encode(), choice.detail.encode(), index)
              for index, choice in enumerate(choices)))
        chosen = ctypes.c_uint64()
        result = _result(self.functions.ShowTokenSelectionDialog(
            records.TokenChoiceList(entries, len(choices)), chosen))
        return result, chosen.value if result is Result.OK else -1

    def confirm(self, no: str, yes: str, detail: str) -> Result:
        """Ask a question whose answer is reported: a list of both, with the harmless one selected.

        The questions of the library (show_...) do not report theirs. `no` says what is done when
        the user does not want it, for example "Keep the certificate", `yes` what is done
        otherwise, `detail` what both are about. Gives OK when the user chose `yes`, CANCELLED when
        not, FAILED.
        """
        result, answer = self.select([Choice(no, detail), Choice(yes, detail)])
        return Result.CANCELLED if result is Result.OK and answer == 0 else result

    # ---- boxes

    # They wait until the user has closed them. Which button was pressed is not reported, also where
    # there is a Yes and a No: such a box asks nothing, it tells.

    def show_locked(self, label: str) -> bool:
        """Tell that the token is locked. Gives whether the box was shown."""
        return self.functions.ShowLockedDialog(label.encode()) != Result.FAILED

    def show_puk_locked(self) -> bool:
        """Tell that the PUK is locked. Gives whether the box was shown."""
        return self.functions.ShowPUKIsLocked() != Result.FAILED

    def show_change_transport_pin(self) -> bool:
        """Tell that the PIN that was set for the user has to be changed.

        Gives whether the box was shown; which button was pressed is not reported.
        """
        return self.functions.AskChangeTransportPIN() != Result.FAILED

    def show_expiry(self, days: int) -> bool:
        """Tell that the PIN expires in so many days.

        Gives whether the box was shown; which button was pressed is not reported.
        """
        return self.functions.AskEarlyUnexpirePin(days) != Result.FAILED

    def show_unlock(self) -> bool:
        """Tell that the token is locked and could be unlocked.

        Gives whether the box was shown; which button was pressed is not reported.
        """
        return self.functions.ShowUnlockTokenDialog() != Result.FAILED

    def show_delete_certificate(self, certificate: Certificate) -> bool:
        """Tell that a certificate is about to be deleted.

        Gives whether the box was shown; which button was pressed is not reported. See confirm().
        """
        return self.functions.ShowConfirmDeleteCertificate(
            certificate.application.encode(), certificate.label.encode(),
            certificate.issued_to.encode(), certificate.issued_by.encode(),
            certificate.valid_from.encode(), certificate.valid_to.encode()) != Result.FAILED


class Progress:
    """Shows that a key pair is being generated, in a `with` block. One at a time."""

    def __init__(self, session: Session) -> None:
        self._functions = session.functions
        self.shown = False
        """Whether the window could be shown."""

    def __enter__(self) -> Progress:
        self.shown = self._functions.ShowKeyGenerationProgressDialog() == Result.OK
        return self

    def __exit__(self, kind: type[BaseException] | None, error: BaseException | None,
                 trace: TracebackType | None) -> None:
        self._functions.HideKeyGenerationProgressDialog()


class PinPad:
    """The window beside a reader with keys of its own, in a `with` block. The PIN never comes here.

    Its functions do nothing when the window could not be shown.
    """

    class Kind(enum.Enum):
        """What the user enters on the reader."""

        VERIFICATION = "PinPadShowVerificationDialog"
        """The PIN."""
        MODIFICATION = "PinPadShowModificationDialog"
        """The PIN, the new PIN and its confirmation."""
        LEGAL = "PinPadShowLegalVerificationDialog"
        """The PIN of a legally binding signature."""
        VERIFICATION_NO_PIN = "PinPadShowNoPinVerificationDialog"
        """As VERIFICATION, for a reader that does not tell of its keys."""
        LEGAL_NO_PIN = "PinPadShowLegalNoPinVerificationDialog"
        """As LEGAL, for such a reader."""

    def __init__(self, session: Session, kind: Kind, allow_abort: bool) -> None:
        """allow_abort: whether the window has an Abort button, which aborted() tells of."""
        self._functions = session.functions
        self._show = getattr(self._functions, kind.value)
        self._allow_abort = allow_abort
        self._handle = ctypes.c_void_p()
        self.shown = False
        """Whether the window could be shown."""

    def __enter__(self) -> PinPad:
        self.shown = self._show(self._handle, self._allow_abort) == 1
        if self.shown:
            self.next_pin()
        return self

    def __exit__(self, kind: type[BaseException] | None, error: BaseException | None,
                 trace: TracebackType | None) -> None:
        if self.shown:
            self._functions.PinPadHideDialog(self._handle)
        self.shown = False

    def aborted(self) -> bool:
        """Whether the user has pressed Abort. To be asked some ten times a second."""
        return self.shown and self._functions.PinPadKeyboardInputShouldAbort(self._handle) == 1

    def next_pin(self) -> None:
        """The next PIN of a modification is expected; the first is from the start."""
        self._functions.PinPadKeyboardInputNextPin(self._handle)

    def add_char(self) -> None:
        """A digit was typed."""
        self._functions.PinPadKeyboardInputAddChar(self._handle)

    def delete_char(self) -> None:
        """The last digit was deleted."""
        self._functions.PinPadKeyboardInputDelChar(self._handle)

    def clear_chars(self) -> None:
        """All digits were deleted."""
        self._functions.PinPadKeyboardInputClearChars(self._handle)

    def accept(self) -> None:
        """The user confirmed on the reader."""
        self._functions.PinPadKeyboardInputAccept(self._handle)

    def cancel(self) -> None:
        """The user cancelled on the reader."""
        self._functions.PinPadKeyboardInputCancel(self._handle)

    def time_out(self) -> None:
        """The reader gave up waiting."""
        self._functions.PinPadKeyboardInputTimeout(self._handle)


def _check(bounds: Bounds) -> None:
    least, most = bounds
    if not 0 <= least <= most or not 1 <= most <= 65536:
        raise ValueError(f"bounds of {least} to {most} bytes")


def _check_attempts(attempts: Attempts) -> None:
    if attempts.of != 0 and not 1 <= attempts.left <= attempts.of or attempts.left < 0:
        raise ValueError(f"{attempts.left} of {attempts.of} tries; what is locked is not asked for")


def _is_final(attempts: Attempts) -> bool:
    return attempts.final_try or attempts.left == 1


def _result(code: int) -> Result:
    return Result(code) if code in (Result.OK, Result.CANCELLED) else Result.FAILED


def _change_fields(label: str, bounds: Bounds, attempts: Attempts) -> dict:
    return {"tokenLabel": label.encode(), "minLength": bounds.min, "maxLength": bounds.max,
            "noFailure": attempts.failure is not Failure.NOW, "finalTry": _is_final(attempts)}


def _change(show, record, old_bounds: Bounds,
            new_bounds: Bounds) -> tuple[Result, Secret, Secret]:
    # These dialogs count bytes: whatever they take fits.
    old_value, new_value = Secret(old_bounds.max), Secret(new_bounds.max)
    buffers = records.PinChangeBuffers(
        oldValue=old_value._as_parameter_, oldLength=len(old_value),
        newValue=new_value._as_parameter_, newLength=len(new_value))
    result = _result(show(record, buffers))
    is_ok = result is Result.OK
    old_value.truncate(buffers.oldLength if is_ok else 0)
    new_value.truncate(buffers.newLength if is_ok else 0)
    return result, old_value, new_value
