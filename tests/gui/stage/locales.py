"""System locales for tests, made without touching those of the machine."""

import contextlib
import os
import shutil
import subprocess
import tempfile

from .host import library_path


def make_locales(*names):
    """The value of LOCPATH with which a program has the locales, for example `de_DE` (UTF-8) or
    `de_DE.ISO-8859-1`.

    They are kept beside the library under test: making one takes a second.
    """
    directory = os.path.join(os.path.dirname(os.path.abspath(library_path())), "locales")
    os.makedirs(directory, exist_ok=True)
    for name in names:
        language, _, charset = name.partition(".")
        charset = charset or "UTF-8"
        target = os.path.join(directory, f"{language}.{charset}")
        if not os.path.isdir(target):
            _make(language, charset, target)
    return directory


def _make(language, charset, target):
    # Another test may be at it as well: the first to finish wins.
    draft = tempfile.mkdtemp(dir=os.path.dirname(target))
    try:
        made = os.path.join(draft, language)
        subprocess.run(["localedef", "-i", language, "-f", charset, made], check=True)
        with contextlib.suppress(OSError):
            os.rename(made, target)
    finally:
        shutil.rmtree(draft)
