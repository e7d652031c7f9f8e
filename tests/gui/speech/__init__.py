"""What the screen reader of Debian says of every dialog, with a voice that writes. See reader.py."""

from .listener import ScreenReader

__all__ = ["ScreenReader"]
