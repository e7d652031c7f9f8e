"""The base of the black-box test classes."""

import os
import sys
import unittest

from .host import FAILED, Host
from .screen import Screen
from .wait import Gone, StageError, scaled, wait_until

# A limit below that says more of the machine than of the program.
LEAST_LIMIT = 2


def own_process_only(reason):
    """Marks what is not to be run with every window in a helper process (ZELDLG_PROCESS=helper)."""
    return unittest.skipIf(os.environ.get("ZELDLG_PROCESS") == "helper", reason)


class StageTestCase(unittest.TestCase):
    """A test with `self.screen`; hosts that it starts are ended with it and checked for faults.

    What was on the screen when a test failed is printed, and saved as a picture when
    ZELDLG_ARTIFACTS names a directory.
    """

    def setUp(self):
        self.screen = Screen()
        self.addCleanup(self.screen.close)

    def start_host(self, **options):
        host = Host(**options)
        self.addCleanup(self._end, host)
        return host

    def show(self, host, export, title, **arguments):
        """Starts a call and gives it with the window that it brings up."""
        call = host.call(export, **arguments)

        def shown_or_returned():
            return call.done or title in self.screen.titles(host)
        wait_until(shown_or_returned, 20, f"the window {title!r}",
                   seen=lambda: self.screen.dump(host))
        if call.done:
            self.fail(f"{export} returned {call.result():#x} instead of showing {title!r}")
        return call, self.screen.find_window(title, host)

    def assert_takes_at_most(self, seconds, elapsed):
        """That it took no longer than so many seconds on a quiet machine."""
        self.assertLess(elapsed, scaled(max(seconds, LEAST_LIMIT)))

    def assert_pin_fails(self, host):
        """What a host sees whose toolkit cannot start, now and later."""
        for _ in range(2):
            call = host.call("DLG_ShowPinDialog")
            self.assertEqual(FAILED, call.result())
            self.assertTrue(call.untouched("pin"))

    def _end(self, host):
        failed = not self._outcome.success
        if failed:
            self._keep_evidence(host)
        host.close(failed)

    def _keep_evidence(self, host):
        try:
            print(f"--- {self.id()}\n{host.stderr()}\n{self.screen.dump(host)}", file=sys.stderr)
            directory = os.environ.get("ZELDLG_ARTIFACTS")
            if directory:
                os.makedirs(directory, exist_ok=True)
                self.screen.screenshot(os.path.join(directory, self.id() + ".png"))
        except (Gone, StageError, OSError) as error:
            print(f"--- no evidence: {error}", file=sys.stderr)
