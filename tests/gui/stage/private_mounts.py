"""File systems of a program's own, where the machine lets a user have them."""

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
