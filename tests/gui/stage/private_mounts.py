"""File systems of a program's own, where the machine lets a user have them."""

import os
import subprocess
import unittest


def require_private_mounts(*command):
    """Skips the test, or the tests of the class, where that bwrap command cannot start a program.

    In a chroot whose root is no mount point there are no private mounts to be had.
    """
    probe = subprocess.run([*(command or ("bwrap", "--bind", "/", "/")), "true"],
                           stderr=subprocess.PIPE, text=True)
    if probe.returncode != 0:
        raise unittest.SkipTest("no private mounts here: " + probe.stderr.strip())


def folder_with(folder, name, source):
    """The words for bwrap that show a folder as it is, with `source` as its part of that name,
    whether it has one or not; nothing is made on the machine.
    """
    words = ["--tmpfs", folder]
    for other in os.listdir(folder):
        path = os.path.join(folder, other)
        if other == name:
            continue
        if os.path.islink(path):
            words += ["--symlink", os.readlink(path), path]
        else:
            words += ["--ro-bind", path, path]
    return words + ["--bind", source, os.path.join(folder, name)]
