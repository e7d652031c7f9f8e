"""System locales for tests, made without touching those of the machine."""

import contextlib
import os
import shutil
import subprocess
import tempfile

from .host import library_path


def make_locales(*names):
    """The value of LOCPATH with which a program has the locales, for example `de_DE` (UTF-8).

    They are kept beside the library under test: making one takes a second.
    """
    directory = os.path.join(os.path.dirname(os.path.abspath(library_path())), "locales")
    os.makedirs(directory, exist_ok=True)
    for name in names:
        target = os.path.join(directory, name + ".UTF-8")
        if not os.path.isdir(target):
            _make(name, target)
    return directory


def _make(name, target):
    # Another test may be at it as well: the first to finish wins.
    draft = tempfile.mkdtemp(dir=os.path.dirname(target))
    try:
        subprocess.run(["localedef", "-i", name, "-f", "UTF-8", os.path.join(draft, name)],
                       check=True)
        with contextlib.suppress(OSError):
            os.rename(os.path.join(draft, name), target)
    finally:
        shutil.rmtree(draft)
