"""Looks for PINs in the memory of a process."""

import contextlib
import random
import re
import string

# Long, so that what an allocator writes into freed memory does not hide the rest.
PIN_LENGTH = 56
PIECE = 8
ENCODINGS = ("utf-8", "utf-16-le", "utf-32-le")


def new_pin():
    """Differs in each run and from all that is in memory anyway."""
    return "".join(random.SystemRandom().choices(string.ascii_letters + string.digits,
                                                 k=PIN_LENGTH))


def pieces(pin):
    """What tells of a PIN: any few characters in a row, in any encoding."""
    return [pin[start:start + PIECE].encode(encoding) for encoding in ENCODINGS
            for start in range(len(pin) - PIECE + 1)]


def memory_of(pid):
    """The contents of all memory that the process can write to."""
    with open(f"/proc/{pid}/maps") as maps, open(f"/proc/{pid}/mem", "rb", 0) as memory:
        for line in maps:
            start, end, rights = re.match(r"(\w+)-(\w+) (\S+)", line).groups()
            if "w" not in rights or "[vvar]" in line:
                continue
            with contextlib.suppress(OSError):  # what a device driver maps cannot be read
                memory.seek(int(start, 16))
                yield memory.read(int(end, 16) - int(start, 16))


def places_of(pid, *pins):
    """How many pieces of the PINs stand somewhere in the memory of the process."""
    found = re.compile(b"|".join(re.escape(piece) for pin in pins for piece in pieces(pin)))
    return sum(len(found.findall(area)) for area in memory_of(pid))
