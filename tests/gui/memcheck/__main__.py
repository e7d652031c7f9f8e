"""Plays the tour of every dialog on the stage that this process runs on.

    python3 -m memcheck LOG_DIRECTORY VALGRIND_COMMAND...

The command's words %LOG% stand for the file that a host's findings go into.
"""

import os
import sys
import time

from stage import OK, Host, Screen
from stage.dialogs import DIALOGS, show_dialog, wait_ready


def say(text):
    print(f"{time.strftime('%H:%M:%S')}  {text}", flush=True)


class Tour:
    """A host's way through the dialogs."""

    def __init__(self, screen, host):
        self._screen, self._host = screen, host

    def play(self, dialog):
        call, window = show_dialog(self._screen, self._host, dialog)
        wait_ready(self._screen, dialog, window)
        self._type(dialog, window)
        self._answer(dialog, window, call)
        if dialog.hide:
            self._go_on(dialog)
            self._host.run(dialog.hide)
        self._screen.wait_gone(window)

    def _type(self, dialog, window):
        self._screen.fill(window, [*filter(None, [dialog.answer]), *dialog.typed])
        if dialog.order and not dialog.typed:
            for key in ("Tab", "shift+Tab"):
                self._screen.key(key)

    def _answer(self, dialog, window, call):
        if not dialog.modal:
            self._expect(dialog.result, call)
        elif dialog.typed:
            self._screen.key("Return")
            self._expect(OK, call)
        elif self._confirm(dialog, window):
            self._expect(OK, call)
        else:
            self._screen.key("Escape")
            self._expect(dialog.result, call)

    @staticmethod
    def _confirm(dialog, window):
        """Presses OK, where there is one that can be pressed."""
        buttons = [node for node in window.find_all("push button", "OK") if node.enabled]
        if dialog.role != "dialog" or not buttons:
            return False
        buttons[0].press()
        return True

    def _go_on(self, dialog):
        """What a host does with a window that stays."""
        if dialog.name.startswith("pad"):
            for order in ("NextPin", "Accept", "Timeout", "Cancel"):
                self._host.run("DLG_PinPadKeyboardInput" + order)
        elif dialog.name == "biometric-enrol":
            self._host.run("DLG_UpdateSuperTokenEnrolDlg")

    @staticmethod
    def _expect(result, call):
        if call.result() != result:
            raise AssertionError(f"{call.result():#x} instead of {result:#x}")


def play_all(screen, prefix):
    """A host that shows them, ends the toolkit, starts it again, and leaves; its exit code."""
    host = Host(prefix=prefix, environment={
        # What GLib hands out comes from malloc, one by one, and is cleared when given back.
        "G_SLICE": "always-malloc", "G_DEBUG": "gc-friendly"})
    try:
        tour = Tour(screen, host)
        for number, dialog in enumerate(DIALOGS, 1):
            began = time.monotonic()
            tour.play(dialog)
            say(f"{number:3} of {len(DIALOGS)}  {dialog.name} ({time.monotonic() - began:.0f} s)")
        host.run("DLG_GetTranslationUTF8", source="Cancel", bufferCapacity=100)
        host.run("DLG_GetLocale")
        host.run("DLG_Finalize")
        tour.play(DIALOGS[0])
        host.run("DLG_Finalize")
        say("started twice, finalised twice")
        return host.quit(60)
    except BaseException:
        print(host.stderr(), file=sys.stderr)
        print(screen.dump(host), file=sys.stderr)
        host.close(failed=True)
        raise


def main():
    logs, command = sys.argv[1], sys.argv[2:]
    screen = Screen()
    log = os.path.join(logs, "dialogs.log")
    say(f"{len(DIALOGS)} dialogs, findings in {os.path.relpath(log)}")
    code = play_all(screen, [word.replace("%LOG%", log) for word in command])
    say(f"the host ended with {code}")
    screen.close()
    return 1 if code != 0 else 0


if __name__ == "__main__":
    sys.exit(main())
