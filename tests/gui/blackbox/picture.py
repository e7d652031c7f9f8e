"""What a window looks like, pixel by pixel: contrasts, and which form of an icon is drawn."""

import collections
import functools
import glob
import os

import gi

gi.require_version("Gtk", "3.0")
from gi.repository import Gdk, GdkPixbuf, Gtk  # noqa: E402

ART = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "..", "src",
                   "resources", "art")
THEME_ICONS = ("dialog-warning", "dialog-error", "dialog-question", "dialog-information")
# A drawn colour may be off by as much: it has been multiplied with an alpha of 255 and back.
TOLERANCE = 6
DETAIL_PIXELS = 500
# An icon is no smaller than this part of the box that it stands in.
MOST_OF_A_BOX = 0.6


@functools.lru_cache(maxsize=None)
def luminance(colour):
    def linear(value):
        share = value / 255
        return share / 12.92 if share <= 0.04045 else ((share + 0.055) / 1.055) ** 2.4
    red, green, blue = map(linear, colour)
    return 0.2126 * red + 0.7152 * green + 0.0722 * blue


def contrast(one, other):
    """The contrast ratio of two colours as WCAG 2 has it, 1 to 21."""
    darker, lighter = sorted((luminance(one), luminance(other)))
    return (lighter + 0.05) / (darker + 0.05)


def commonest(pixels):
    return collections.Counter(pixels).most_common(1)[0][0]


class Picture:
    """Pixels in rows."""

    def __init__(self, pixels, width):
        self.pixels = pixels
        self.width = width
        self.height = len(pixels) // width if width else 0

    def part(self, x, y, width, height):
        left, right = max(x, 0), min(x + width, self.width)
        pixels = []
        for row in range(max(y, 0), min(y + height, self.height)):
            pixels += self.pixels[row * self.width + left:row * self.width + right]
        return Picture(pixels, right - left)

    def text_contrast(self):
        """That of the text's strongest pixel: smoothed edges and thin strokes are paler than the
        text's colour, never stronger.
        """
        background = commonest(self.pixels)
        return max(contrast(colour, background) for colour in set(self.pixels))

    def share_beyond(self, ratio):
        """How much of an icon stands out from what it is on."""
        background = self._ground()
        count = sum(number for colour, number in collections.Counter(self.pixels).items()
                    if contrast(colour, background) >= ratio)
        return count / len(self.pixels)

    def _ground(self):
        """What is around an icon: not the border of a button."""
        inner = self.part(2, 2, self.width - 4, self.height - 4)
        rim = [*inner.pixels[:inner.width], *inner.pixels[-inner.width:],
               *inner.pixels[::inner.width]]
        return commonest(rim)

    def ink(self):
        """The colour that stands out most."""
        background = self._ground()
        return max(set(self.pixels), key=lambda colour: sum(abs(a - b) for a, b
                                                            in zip(colour, background)))

    def likeness(self, icon):
        """How much of the icon's detail is here, wherever it stands."""
        detail = icon.detail_on(self._ground())
        return max((self._likeness_at(detail, x, y)
                    for y in range(self.height - icon.height + 1)
                    for x in range(self.width - icon.width + 1)), default=0)

    def _likeness_at(self, detail, left, top):
        allowed = len(detail) // 4  # more that differ are a miss, which is soon told
        missed = 0
        for x, y, colour in detail:
            seen = self.pixels[(top + y) * self.width + left + x]
            if any(abs(a - b) > TOLERANCE for a, b in zip(seen, colour)):
                missed += 1
                if missed > allowed:
                    return 0
        return 1 - missed / len(detail)


class Icon:
    """A picture in the form for twice the scale."""

    def __init__(self, pixbuf):
        if not pixbuf.get_has_alpha():
            pixbuf = pixbuf.add_alpha(False, 0, 0, 0)
        self.width, self.height = pixbuf.get_width(), pixbuf.get_height()
        self._data, self._stride = pixbuf.get_pixels(), pixbuf.get_rowstride()

    @functools.lru_cache(maxsize=None)
    def detail_on(self, background):
        """What no picture of half the size has when it is blown up: some hundred pixels (x, y,
        colour) that differ from one beside them in the square of four that would be one.
        """
        points = [point for y in range(0, self.height - 1, 2) for x in range(0, self.width - 1, 2)
                  for point in self._square(x, y, background)]
        return points[::max(1, len(points) // DETAIL_PIXELS)]

    def _square(self, left, top, background):
        points = [(x, y, self._drawn(x, y, background))
                  for y in (top, top + 1) for x in (left, left + 1)]
        spread = max(max(part) - min(part) for part in zip(*(colour for _, _, colour in points)))
        return points if spread > 3 * TOLERANCE else []

    def _drawn(self, x, y, background):
        start = y * self._stride + 4 * x
        *colour, alpha = self._data[start:start + 4]
        return tuple(round((front * alpha + back * (255 - alpha)) / 255)
                     for front, back in zip(colour, background))


@functools.lru_cache(maxsize=None)
def own_icons():
    """The forms for twice the scale that the library has."""
    return [Icon(GdkPixbuf.Pixbuf.new_from_file(path))
            for path in glob.glob(os.path.join(ART, "*_2x.png"))]


@functools.lru_cache(maxsize=None)
def theme_icons(size, ink):
    """The theme's icons of a size, for twice the scale, as they are and plain in a colour."""
    theme, force = Gtk.IconTheme.get_default(), Gtk.IconLookupFlags.FORCE_SIZE
    colour = Gdk.RGBA(*(part / 255 for part in ink), 1)
    plain = (theme.lookup_icon(name + "-symbolic", 2 * size, force) for name in THEME_ICONS)
    return [*(Icon(theme.load_icon(name, 2 * size, force)) for name in THEME_ICONS),
            *(Icon(icon.load_symbolic(colour)[0]) for icon in plain if icon)]


def icons_in(part):
    """What may be drawn, for twice the scale, into a part of the screen."""
    width, height = part.width, part.height
    icons = [*own_icons(), *theme_icons(width // 2, part.ink())]
    return [icon for icon in icons if width * MOST_OF_A_BOX <= icon.width <= width
            and icon.height <= height]
