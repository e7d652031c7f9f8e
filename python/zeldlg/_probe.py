"""Whether a dialog could be shown now: as zeldlg/probe.hpp finds it out."""

from __future__ import annotations

import contextlib
import ctypes
import os
import socket
import stat
import struct
import time
from dataclasses import dataclass


@dataclass(frozen=True)
class Probe:
    """What probe() found. Each text is empty where nothing is wrong.

    display: why no display can be used. fonts: why there are no letters to show.
    settings: why the user's settings cannot be kept; dialogs are shown all the same, with those of
    the system. The object is true when a dialog could be shown.
    """

    display: str
    fonts: str
    settings: str

    def __bool__(self) -> bool:
        return not self.display and not self.fonts


def probe(patience: float = 2.0) -> Probe:
    """Says whether a dialog could be shown now, without starting anything or changing a file.

    It looks whether a display answers within `patience` seconds, whether there are fonts, and
    whether there is a place for the user's settings. A call that would start the user interface may
    wait for ever for a display that does not answer: this one does not.
    """
    return Probe(_display(time.monotonic() + patience), _fonts(), _settings())


def _variable(name: str) -> str:
    return os.environ.get(name, "")


def _ask(addresses: list[tuple], question: bytes, deadline: float) -> bytes:
    """The first 8 bytes that the server at one of the addresses answers; OSError."""
    failure = OSError()
    for family, address in addresses:
        with socket.socket(family, socket.SOCK_STREAM) as server:
            try:
                server.settimeout(max(deadline - time.monotonic(), 0.001))
                server.connect(address)
            except OSError as error:
                failure = error
                continue
            server.sendall(question)
            answer = b""
            while len(answer) < 8:
                server.settimeout(max(deadline - time.monotonic(), 0.001))
                piece = server.recv(256)
                if not piece:
                    raise ConnectionResetError(104, os.strerror(104))
                answer += piece
            return answer
    raise failure


def _words(error: OSError) -> str:
    return os.strerror(110) if isinstance(error, TimeoutError) else os.strerror(error.errno)


def _cookie(number: str, local: bool) -> bytes:
    """The cookie for a display with that number, from the file that xauth keeps."""
    path = _variable("XAUTHORITY") or _variable("HOME") + "/.Xauthority"
    try:
        with open(path, "rb") as file:
            content = file.read()
    except OSError:
        return b""
    any_host, this_host = 65535, 256
    place = 0
    with contextlib.suppress(struct.error):
        while True:
            family, = struct.unpack_from(">H", content, place)
            place += 2
            parts = []
            for _ in range(4):
                size, = struct.unpack_from(">H", content, place)
                parts.append(content[place + 2:place + 2 + size])
                place += 2 + size
            address, display, method, data = parts
            fits = (family == any_host or not local
                    or (family == this_host and address == socket.gethostname().encode()))
            if (fits and display in (b"", number.encode()) and method == b"MIT-MAGIC-COOKIE-1"
                    and place <= len(content)):
                return data
    return b""


def _x11(deadline: float) -> str:
    display = _variable("DISPLAY")
    host, colon, rest = display.rpartition(":")
    if not colon:
        return "DISPLAY is not set"
    number = rest.partition(".")[0]
    local = host in ("", "unix")
    data = _cookie(number, local)
    method = b"MIT-MAGIC-COOKIE-1" if data else b""
    # Byte order, protocol 11.0, who we are; the answer begins with 1 when we may stay.
    question = struct.pack("<BxHHHHxx", ord("l"), 11, 0, len(method), len(data))
    for text in (method, data):
        question += text + bytes(-len(text) % 4)
    path = f"/tmp/.X11-unix/X{number}"
    try:
        addresses = ([(socket.AF_UNIX, path), (socket.AF_UNIX, "\0" + path)] if local else
                     [(family, address) for family, _, _, _, address in socket.getaddrinfo(
                         host, 6000 + int(number or 0), type=socket.SOCK_STREAM)])
        answer = _ask(addresses, question, deadline)
    except OSError as error:
        return f"{display}: {_words(error)}"
    return "" if answer[0] == 1 else f"{display}: this user may not use it"


def _wayland(deadline: float) -> str:
    if _variable("WAYLAND_SOCKET"):
        return ""  # a connection that is there already
    display = _variable("WAYLAND_DISPLAY")
    if not display:
        return "WAYLAND_DISPLAY is not set"
    path = display if display[0] == "/" else f"{_variable('XDG_RUNTIME_DIR')}/{display}"
    # wl_display.sync: of object 1 the request 0, 12 bytes, with the new object 2.
    try:
        _ask([(socket.AF_UNIX, path)], struct.pack("=III", 1, 12 << 16, 2), deadline)
    except OSError as error:
        return f"{path}: {_words(error)}"
    return ""


def _display(deadline: float) -> str:
    """As the toolkit does: Wayland, then X, of those that GDK_BACKEND leaves."""
    backends = _variable("GDK_BACKEND") or "*"
    why = ""
    if "wayland" in backends or "*" in backends:
        why = _wayland(deadline)
        if not why:
            return ""
    if "x11" in backends or "*" in backends:
        other = _x11(deadline)
        if not other:
            return ""
        why = f"{why}; {other}" if why and _variable("WAYLAND_DISPLAY") else other
    return why or "GDK_BACKEND leaves neither wayland nor x11"


class _FontSet(ctypes.Structure):
    _fields_ = [("count", ctypes.c_int)]


def _fonts() -> str:
    try:
        library = ctypes.CDLL("libfontconfig.so.1")
    except OSError as error:
        return str(error)
    library.FcInitLoadConfigAndFonts.restype = ctypes.c_void_p
    library.FcConfigGetFonts.restype = ctypes.POINTER(_FontSet)
    library.FcConfigGetFonts.argtypes = [ctypes.c_void_p, ctypes.c_int]
    library.FcConfigDestroy.argtypes = [ctypes.c_void_p]
    library.FcConfigDestroy.restype = None
    configuration = library.FcInitLoadConfigAndFonts()
    if not configuration:
        return "there are no fonts"
    fonts = library.FcConfigGetFonts(configuration, 0)
    found = bool(fonts) and fonts.contents.count > 0
    library.FcConfigDestroy(configuration)
    return "" if found else "there are no fonts"


def _settings() -> str:
    home = (_variable("ZEL_HOME") or _variable("HOME")
            or _variable("HOMEDRIVE") + _variable("HOMEPATH"))
    if not home:
        return "neither ZEL_HOME nor HOME is set"
    # The innermost that there is of file and directories: the others would be made.
    place = home + "/.tessaly/registry"
    while not os.path.exists(place) and len(place) > len(home):
        place = os.path.dirname(place)
    try:
        is_folder = stat.S_ISDIR(os.stat(place).st_mode)
    except OSError as error:
        return f"{place}: {error.strerror}"
    wanted = os.W_OK | os.X_OK if is_folder else os.R_OK | os.W_OK
    return "" if os.access(place, wanted) else f"{place}: {os.strerror(13)}"
