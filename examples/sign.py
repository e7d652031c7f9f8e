#!/usr/bin/python3
"""A host in Python: asks for the PIN of a legally binding signature.

    sign.py [LIBRARY]

The library is loaded at run time; nothing but ctypes is needed.
"""

import ctypes
import sys
from concurrent.futures import ThreadPoolExecutor

OK, CANCELLED = 0x00000000, 0x80003001
VERSION = 14


class PinDialogRequest(ctypes.Structure):
    _fields_ = [("tokenLabel", ctypes.c_char_p), ("minPinLength", ctypes.c_uint32),
                ("maxPinLength", ctypes.c_uint32), ("noFailure", ctypes.c_uint8),
                ("finalTry", ctypes.c_uint8), ("failedEarlier", ctypes.c_uint8)]


class PinBuffer(ctypes.Structure):
    _fields_ = [("pin", ctypes.POINTER(ctypes.c_uint8)), ("pinLength", ctypes.c_uint32)]


class DialogError(Exception):
    """The dialog could not be shown."""


class Dialogs:
    """The library's dialogs; the end of a `with` block ends their user interface."""

    def __init__(self, path="libzeldlglib.so.3"):
        # A call of a CDLL releases the interpreter's lock: other threads go on while it waits.
        library = ctypes.CDLL(path)
        library.DLG_GetFunctionList.restype = ctypes.POINTER(ctypes.c_uint64)
        version = library.DLG_GetFunctionList()[0]
        if version != VERSION:
            raise DialogError(f"{path} has version {version}, not {VERSION}")
        self._show_legal_pin = library.DLG_ShowLegalPinDialog
        self._show_legal_pin.argtypes = [ctypes.POINTER(PinDialogRequest),
                                         ctypes.POINTER(PinBuffer)]
        self._show_legal_pin.restype = ctypes.c_uint32
        self._finalise = library.DLG_Finalize
        self._finalise.restype = None

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self._finalise()

    def ask_legal_pin(self, label, minimum, maximum):
        """The PIN as a bytearray, which the caller wipes; None when the user cancelled."""
        # The dialog counts characters, the buffer bytes: up to four for each character.
        pin = bytearray(4 * maximum)
        view = (ctypes.c_uint8 * len(pin)).from_buffer(pin)
        request = PinDialogRequest(tokenLabel=label.encode(), minPinLength=minimum,
                                   maxPinLength=maximum, noFailure=1)
        buffer = PinBuffer(pin=view, pinLength=len(pin))
        result = self._show_legal_pin(request, buffer)
        length = buffer.pinLength
        del view, buffer  # a bytearray that something points into cannot change its size
        if result == OK:
            del pin[length:]
            return pin
        if result == CANCELLED:
            return None
        raise DialogError("the PIN dialog cannot be shown; is there a display?")


def sign(dialogs):
    """What there is to say, and the exit code."""
    pin = dialogs.ask_legal_pin("Identity card", 6, 12)
    if pin is None:
        return "cancelled", 1
    try:
        return f"signing with a PIN of {len(pin)} bytes", 0
    finally:
        pin[:] = bytes(len(pin))


def main():
    try:
        with Dialogs(*sys.argv[1:]) as dialogs, ThreadPoolExecutor(1) as pool:
            waiting = pool.submit(sign, dialogs)  # the main thread is free meanwhile
            text, code = waiting.result()
    except (OSError, DialogError) as error:
        text, code = error, 2
    print(text)
    return code


if __name__ == "__main__":
    sys.exit(main())
