#!/usr/bin/python3
"""A host in Python: asks for the PIN of a legally binding signature.

    sign.py [LIBRARY]
"""

import sys

import zeldlg
from zeldlg import Result

SAID = {Result.CANCELLED: ("cancelled", 1),
        Result.TOO_LONG: ("the token does not take a PIN that long", 1),
        Result.FAILED: ("the PIN dialog cannot be shown; is there a display?", 2)}


def sign(dialogs):
    """What there is to say, and the exit code."""
    if not zeldlg.probe():  # a start without a display may be slow to fail, and never return
        return SAID[Result.FAILED]
    result, pin = dialogs.ask_pin(
        zeldlg.PinRequest("Identity card", zeldlg.Bounds(6, 12), legal=True))
    if result is not Result.OK:
        return SAID[result]
    with pin:
        return f"signing with a PIN of {len(pin)} bytes", 0


def main():
    try:
        with zeldlg.Session(*sys.argv[1:]) as dialogs:
            text, code = sign(dialogs)
    except OSError as error:
        text, code = error, 2
    print(text)
    return code


if __name__ == "__main__":
    sys.exit(main())
