"""One connection to an X display: windows as the window manager sees them, keys and clicks.

Keys go through the XTEST extension on a connection that is synchronised after each of them. A
character that the keyboard map lacks gets a key of its own that stays: tools that map a key for
a moment and take it back race with the program that has to look the key up.
"""

import contextlib
import ctypes
import subprocess

from .wait import StageError

c_display = ctypes.c_void_p
c_window = ctypes.c_ulong
c_atom = ctypes.c_ulong

MODIFIERS = {"shift": "Shift_L", "ctrl": "Control_L", "alt": "Alt_L", "super": "Super_L"}
CLIENT_MESSAGE = 33
FORMAT_SIZES = {8: 1, 16: 2, 32: ctypes.sizeof(ctypes.c_long)}
ALL_PLANES = ctypes.c_ulong(-1).value
Z_PIXMAP = 2


class _ClientMessage(ctypes.Structure):
    _fields_ = [("type", ctypes.c_int), ("serial", ctypes.c_ulong), ("send_event", ctypes.c_int),
                ("display", c_display), ("window", c_window), ("message_type", c_atom),
                ("format", ctypes.c_int), ("data", ctypes.c_long * 5), ("pad", ctypes.c_long * 24)]


class _Image(ctypes.Structure):  # as far as it is looked at
    _fields_ = [("width", ctypes.c_int), ("height", ctypes.c_int), ("xoffset", ctypes.c_int),
                ("format", ctypes.c_int), ("data", ctypes.c_void_p),
                ("byte_order", ctypes.c_int), ("bitmap_unit", ctypes.c_int),
                ("bitmap_bit_order", ctypes.c_int), ("bitmap_pad", ctypes.c_int),
                ("depth", ctypes.c_int), ("bytes_per_line", ctypes.c_int),
                ("bits_per_pixel", ctypes.c_int)]


def _load(name, prototypes):
    library = ctypes.CDLL(name)
    for function, (result, *arguments) in prototypes.items():
        getattr(library, function).restype = result
        getattr(library, function).argtypes = arguments
    return library


_int, _uint, _ulong, _char_p = ctypes.c_int, ctypes.c_uint, ctypes.c_ulong, ctypes.c_char_p
_void_p, _pointer = ctypes.c_void_p, ctypes.POINTER
_EXIT_HANDLER = ctypes.CFUNCTYPE(None, _void_p, _void_p)
_ERROR_HANDLER = ctypes.CFUNCTYPE(_int, _void_p, _void_p)

_x11 = _load("libX11.so.6", {
    "XOpenDisplay": (c_display, _char_p),
    "XCloseDisplay": (_int, c_display),
    "XSync": (_int, c_display, _int),
    "XFree": (_int, _void_p),
    "XDefaultRootWindow": (c_window, c_display),
    "XInternAtom": (c_atom, c_display, _char_p, _int),
    "XGetWindowProperty": (_int, c_display, c_window, c_atom, ctypes.c_long, ctypes.c_long, _int,
                           c_atom, _pointer(c_atom), _pointer(_int), _pointer(_ulong),
                           _pointer(_ulong), _pointer(_void_p)),
    "XChangeProperty": (_int, c_display, c_window, c_atom, c_atom, _int, _int, _char_p, _int),
    "XSendEvent": (_int, c_display, c_window, _int, ctypes.c_long, _void_p),
    "XGetGeometry": (_int, c_display, c_window, _pointer(c_window), _pointer(_int),
                     _pointer(_int), _pointer(_uint), _pointer(_uint), _pointer(_uint),
                     _pointer(_uint)),
    "XTranslateCoordinates": (_int, c_display, c_window, c_window, _int, _int, _pointer(_int),
                              _pointer(_int), _pointer(c_window)),
    "XGetInputFocus": (_int, c_display, _pointer(c_window), _pointer(_int)),
    "XQueryTree": (_int, c_display, c_window, _pointer(c_window), _pointer(c_window),
                   _pointer(_void_p), _pointer(_uint)),
    "XGetImage": (_pointer(_Image), c_display, c_window, _int, _int, _uint, _uint, _ulong, _int),
    "XDestroyImage": (_int, _pointer(_Image)),
    "XMoveWindow": (_int, c_display, c_window, _int, _int),
    "XDisplayKeycodes": (_int, c_display, _pointer(_int), _pointer(_int)),
    "XGetKeyboardMapping": (_void_p, c_display, ctypes.c_ubyte, _int, _pointer(_int)),
    "XChangeKeyboardMapping": (_int, c_display, _int, _int, _pointer(_ulong), _int),
    "XStringToKeysym": (_ulong, _char_p),
    "XSetErrorHandler": (_void_p, _ERROR_HANDLER),
    "XSetIOErrorExitHandler": (None, c_display, _EXIT_HANDLER, _void_p),
})
_xtst = _load("libXtst.so.6", {
    "XTestFakeKeyEvent": (_int, c_display, _uint, _int, _ulong),
    "XTestFakeButtonEvent": (_int, c_display, _uint, _int, _ulong),
    "XTestFakeMotionEvent": (_int, c_display, _int, _int, _int, _ulong),
})
_xkb = _load("libxkbcommon.so.0", {"xkb_utf32_to_keysym": (ctypes.c_uint32, ctypes.c_uint32)})

# Without these two Xlib ends the process: on a window that is gone, and on a server that is gone.
_ignore_error = _ERROR_HANDLER(lambda display, event: 0)
_survive = _EXIT_HANDLER(lambda display, data: None)


class X11:
    def __init__(self, name):
        _x11.XSetErrorHandler(_ignore_error)
        self._display = _x11.XOpenDisplay(name.encode())
        if not self._display:
            raise StageError(f"cannot open the display {name}")
        _x11.XSetIOErrorExitHandler(self._display, _survive, None)
        self.name = name
        self.root = _x11.XDefaultRootWindow(self._display)
        self._keys = None

    def close(self):
        if self._display:
            _x11.XCloseDisplay(self._display)
            self._display = None

    def _sync(self):
        _x11.XSync(self._display, 0)

    def _atom(self, name):
        return _x11.XInternAtom(self._display, name.encode(), 0)

    def _property(self, window, name):
        """The property's raw bytes, or its list of numbers (format 32); None without it."""
        kind, form, count, rest = c_atom(), _int(), _ulong(), _ulong()
        data = _void_p()
        status = _x11.XGetWindowProperty(
            self._display, window, self._atom(name), 0, 1 << 20, 0, 0, ctypes.byref(kind),
            ctypes.byref(form), ctypes.byref(count), ctypes.byref(rest), ctypes.byref(data))
        if status != 0 or not data:
            return None
        raw = ctypes.string_at(data, count.value * FORMAT_SIZES.get(form.value, 0))
        _x11.XFree(data)
        if form.value == 32:
            return list((ctypes.c_ulong * count.value).from_buffer_copy(raw))
        return raw if form.value else None

    # ---- windows

    def window_manager_ready(self):
        check = self._property(self.root, "_NET_SUPPORTING_WM_CHECK")
        return bool(check) and self._property(check[0], "_NET_WM_NAME") is not None

    def windows(self):
        """The managed windows in the order in which they were mapped: (id, process id, title)."""
        found = []
        for window in self._property(self.root, "_NET_CLIENT_LIST") or []:
            title = self._property(window, "_NET_WM_NAME")
            process = self._property(window, "_NET_WM_PID")
            if title is not None:
                found.append((window, process[0] if process else 0,
                              title.decode("utf-8", "replace")))
        return found

    def focus(self):
        """The window that the keyboard goes to in the server; 0 or 1 when it is none of them."""
        focus, revert = c_window(), _int()
        _x11.XGetInputFocus(self._display, ctypes.byref(focus), ctypes.byref(revert))
        return focus.value

    def holds_focus(self, window):
        """Whether the keyboard goes to the window or to something inside it, in the server."""
        inner = self.focus()
        while inner not in (0, 1, window):  # none and the pointer's root end the walk, too
            inner = self._parent(inner)
        return inner == window

    def _parent(self, window):
        return self._family(window)[0]

    def _family(self, window):
        """The window's parent, 0 without one, and its children."""
        root, parent, children, count = c_window(), c_window(), _void_p(), _uint()
        if not _x11.XQueryTree(self._display, window, ctypes.byref(root), ctypes.byref(parent),
                               ctypes.byref(children), ctypes.byref(count)):
            return 0, []
        numbers = []
        if children:
            numbers = list((c_window * count.value).from_address(children.value))
            _x11.XFree(children)
        return parent.value, numbers

    def count_windows(self, window=None):
        """How many windows there are below one, by default all: mapped or not, whoever's."""
        children = self._family(self.root if window is None else window)[1]
        return len(children) + sum(self.count_windows(child) for child in children)

    def has_state(self, window, state):
        """Whether the window manager shows, for example, `_NET_WM_STATE_ABOVE`."""
        return self._atom(state) in (self._property(window, "_NET_WM_STATE") or [])

    def geometry(self, window, frame=False):
        """(x, y, width, height) on the screen in pixels, with the frame if asked for."""
        root, child = c_window(), c_window()
        x, y = _int(), _int()
        width, height, border, depth = _uint(), _uint(), _uint(), _uint()
        if not _x11.XGetGeometry(self._display, window, ctypes.byref(root), ctypes.byref(x),
                                 ctypes.byref(y), ctypes.byref(width), ctypes.byref(height),
                                 ctypes.byref(border), ctypes.byref(depth)):
            return None
        _x11.XTranslateCoordinates(self._display, window, self.root, 0, 0, ctypes.byref(x),
                                   ctypes.byref(y), ctypes.byref(child))
        left, right, top, bottom = 0, 0, 0, 0
        if frame:
            left, right, top, bottom = self._property(window, "_NET_FRAME_EXTENTS") or [0] * 4
        return (x.value - left, y.value - top, width.value + left + right,
                height.value + top + bottom)

    def stacking(self):
        """The managed windows from the lowest to the topmost."""
        return self._property(self.root, "_NET_CLIENT_LIST_STACKING") or []

    def move(self, window, x, y):
        """Asks the window manager to put the window, with its frame, there."""
        _x11.XMoveWindow(self._display, window, x, y)
        self._sync()

    def send_delete(self, window):
        """What a window manager sends when its close button is pressed."""
        message = _ClientMessage(type=CLIENT_MESSAGE, send_event=1, window=window,
                                 message_type=self._atom("WM_PROTOCOLS"), format=32)
        message.data[0] = self._atom("WM_DELETE_WINDOW")
        _x11.XSendEvent(self._display, window, 0, 0, ctypes.byref(message))
        self._sync()

    def ask_manager_to_close(self, window):
        """What a task bar does; the window manager refuses where the window has no close box."""
        self._ask_manager(window, "_NET_CLOSE_WINDOW", 0, 2)

    def ask_manager_to_activate(self, window):
        """What a task bar does: the window is to get the keyboard."""
        self._ask_manager(window, "_NET_ACTIVE_WINDOW", 2)

    def _ask_manager(self, window, message_type, *data):
        message = _ClientMessage(type=CLIENT_MESSAGE, send_event=1, window=window,
                                 message_type=self._atom(message_type), format=32)
        message.data[:len(data)] = data
        substructure = (1 << 19) | (1 << 20)
        _x11.XSendEvent(self._display, self.root, 0, substructure, ctypes.byref(message))
        self._sync()

    def set_resources(self, text):
        data = text.encode()
        _x11.XChangeProperty(self._display, self.root, self._atom("RESOURCE_MANAGER"),
                             self._atom("STRING"), 8, 0, data, len(data))
        self._sync()

    # ---- keys and clicks

    def _read_keys(self):
        """Fills `_keys` (keysym to (keycode, needs shift)) and `_free`, the unused keycodes."""
        low, high, width = _int(), _int(), _int()
        _x11.XDisplayKeycodes(self._display, ctypes.byref(low), ctypes.byref(high))
        count = high.value - low.value + 1
        table = _x11.XGetKeyboardMapping(self._display, low.value, count, ctypes.byref(width))
        symbols = list((_ulong * (count * width.value)).from_address(table))
        _x11.XFree(table)
        self._keys, self._free = {}, []
        for index in range(count):
            row = symbols[index * width.value:(index + 1) * width.value]
            if not any(row):
                self._free.append(low.value + index)
            for level, symbol in enumerate(row[:2]):
                if symbol:
                    self._keys.setdefault(symbol, (low.value + index, level == 1))

    def _key_for(self, symbol):
        if self._keys is None or symbol not in self._keys:
            self._read_keys()
        if symbol not in self._keys:
            if not self._free:
                raise StageError("no key is left to give to one more character")
            code = self._free.pop()
            _x11.XChangeKeyboardMapping(self._display, code, 2, (_ulong * 2)(symbol, symbol), 1)
            self._sync()
            self._keys[symbol] = (code, False)
        return self._keys[symbol]

    def _send_key(self, code, down):
        _xtst.XTestFakeKeyEvent(self._display, code, int(down), 0)
        self._sync()

    def _stroke(self, code, modifiers):
        with contextlib.ExitStack() as stack:
            for modifier in modifiers:
                self._send_key(modifier, True)
                stack.callback(self._send_key, modifier, False)
            self._send_key(code, True)
            self._send_key(code, False)

    def type_text(self, text):
        """Types the characters; line feed is the Return key."""
        shift = self._key_for(_x11.XStringToKeysym(b"Shift_L"))[0]
        for character in text:
            name = {"\n": b"Return", "\t": b"Tab"}.get(character)
            symbol = (_x11.XStringToKeysym(name) if name
                      else _xkb.xkb_utf32_to_keysym(ord(character)))
            code, shifted = self._key_for(symbol)
            self._stroke(code, [shift] if shifted else [])

    def key(self, combination):
        """Presses for example `Tab`, `shift+Tab`, `ctrl+v`, `alt+F4`, `space`."""
        *modifiers, name = combination.split("+")
        symbol = _x11.XStringToKeysym(name.encode())
        if not symbol:
            raise ValueError(f"no such key: {name}")
        code, shifted = self._key_for(symbol)
        names = [MODIFIERS[modifier] for modifier in modifiers] + ["Shift_L"] * shifted
        held = [self._key_for(_x11.XStringToKeysym(held.encode()))[0] for held in names]
        self._stroke(code, held)

    def point(self, x, y):
        """Moves the pointer there."""
        _xtst.XTestFakeMotionEvent(self._display, -1, x, y, 0)
        self._sync()

    def click(self, x, y, button=1):
        self.point(x, y)
        for down in (1, 0):
            _xtst.XTestFakeButtonEvent(self._display, button, down, 0)
            self._sync()

    def drag(self, begin, end):
        """Moves the pointer from one (x, y) to another with the left button held."""
        self.point(*begin)
        for down, place in ((1, end), (0, end)):
            _xtst.XTestFakeButtonEvent(self._display, 1, down, 0)
            self.point(*place)

    def double_click(self, x, y):
        """Sends both at once: however busy the machine is, the display sees no time between."""
        self.point(x, y)
        for down in (1, 0, 1, 0):
            _xtst.XTestFakeButtonEvent(self._display, 1, down, 0)
        self._sync()

    def screenshot(self, path, area=None):
        """Writes a PNG file of the screen, or of the area (x, y, width, height) of it."""
        width, height, pixels = self._read(area or self.geometry(self.root))
        subprocess.run(["convert", "-size", f"{width}x{height}", "-depth", "8", "rgb:-",
                        f"png:{path}"], input=pixels, check=True)

    def pixels(self, area):
        """The (red, green, blue) of every pixel of the screen in the area, row by row."""
        pixels = self.bytes(area)
        return list(zip(pixels[0::3], pixels[1::3], pixels[2::3]))

    def bytes(self, area):
        """The same without a tuple for each: red, green, blue, red ..."""
        return self._read(area)[2]

    def _read(self, area):
        """(width, height, three bytes for each pixel) of what the area has on the screen.

        The screen's own memory is read. Tools that put a picture together from the windows show
        black for one that stands inside another and has a different visual.
        """
        screen = self.geometry(self.root)
        left, top = max(area[0], 0), max(area[1], 0)
        width = min(area[0] + area[2], screen[2]) - left
        height = min(area[1] + area[3], screen[3]) - top
        if width <= 0 or height <= 0:
            return 0, 0, b""
        image = _x11.XGetImage(self._display, self.root, left, top, width, height, ALL_PLANES,
                               Z_PIXMAP)
        if not image:
            raise StageError(f"cannot read the screen at {area}")
        try:
            content = image.contents
            if (content.depth, content.bits_per_pixel) != (24, 32):
                raise StageError(f"cannot read a screen with {content.depth} bits of colour in "
                                 f"{content.bits_per_pixel}")
            data = ctypes.string_at(content.data, content.bytes_per_line * height)
        finally:
            _x11.XDestroyImage(image)
        pixels = bytearray(3 * width * height)
        for place in range(3):  # blue comes first in memory
            pixels[place::3] = data[2 - place::4]
        return width, height, bytes(pixels)
