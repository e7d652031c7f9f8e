"""Plays the tour of every dialog on the stage that this process runs on.

    python3 -m memcheck LOG_DIRECTORY VALGRIND_COMMAND...

The command's words %LOG% stand for the file that a host's findings go into.
"""

import os
import sys
import time

from stage import OK, Host, Screen, wait_until

sys.path.append(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "blackbox"))

from every_dialog import DIALOGS, wait_ready  # noqa: E402


def say(text):
    print(f"{time.strftime('%H:%M:%S')}  {text}", flush=True)


class Tour:
    """One host's way through the dialogs that share a settings file."""

    def __init__(self, screen, host):
        self._screen, self._host = screen, host

    def play(self, dialog):
        arguments = {key: value for key, value in dialog.arguments.items() if value is not None}
        call = self._host.call(dialog.export, **arguments)
        window = self._screen.find_window(dialog.title, self._host)
        wait_ready(self._screen, dialog, window)
        self._type(dialog, window)
        self._answer(dialog, window, call)
        self._screen.wait_gone(window)
        if dialog.name == "enrolment hint":
            self._host.run("DLG_HideSupertokenDlg")  # what comes after the hint

    def _type(self, dialog, window):
        if dialog.typed:
            fields = window.find_all("password text")
            for field, value in zip(fields, dialog.typed, strict=True):
                self._fill(field, value)
        if dialog.answer:
            self._fill(next(node for node in window.walk() if node.role == "text"
                            and "editable" in node.states), dialog.answer)
        if dialog.order and not dialog.typed:
            for key in ("Tab", "shift+Tab"):
                self._screen.key(key)

    def _fill(self, field, value):
        field.focus()
        self._screen.type_text(value, field)
        wait_until(lambda: field.length == len(value), what="the typed characters")

    def _answer(self, dialog, window, call):
        if dialog.hide is not None:
            self._expect(OK if dialog.name.startswith(("key", "auth", "enrol")) else 1, call)
            self._go_on(dialog)
            self._host.run(dialog.hide)
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
        elif dialog.name == "enrolment":
            self._host.run("DLG_UpdateSuperTokenEnrolDlg")

    @staticmethod
    def _expect(result, call):
        if call.result() != result:
            raise AssertionError(f"{call.result():#x} instead of {result:#x}")


def play_all(screen, dialogs, registry, prefix):
    """A host that shows them, ends the toolkit, starts it again, and leaves; its exit code."""
    host = Host(registry=registry, prefix=prefix, environment={
        # What GLib hands out comes from malloc, one by one, and is cleared when given back.
        "G_SLICE": "always-malloc", "G_DEBUG": "gc-friendly"})
    try:
        tour = Tour(screen, host)
        for number, dialog in enumerate(dialogs, 1):
            began = time.monotonic()
            tour.play(dialog)
            say(f"{number:3} of {len(dialogs)}  {dialog.name} ({time.monotonic() - began:.0f} s)")
        host.run("DLG_GetTranslationUTF8", source="Cancel", bufferCapacity=100)
        host.run("DLG_GetLocale")
        host.run("DLG_Finalize")
        tour.play(dialogs[0])
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
    failed = False
    for number, registry in enumerate(dict.fromkeys(dialog.registry for dialog in DIALOGS), 1):
        dialogs = [dialog for dialog in DIALOGS if dialog.registry == registry]
        log = os.path.join(logs, f"dialogs-{number}.log")
        say(f"host {number}: {len(dialogs)} dialogs, findings in {os.path.relpath(log)}")
        code = play_all(screen, dialogs, registry,
                        [word.replace("%LOG%", log) for word in command])
        say(f"host {number} ended with {code}")
        failed = failed or code != 0
    screen.close()
    return 1 if failed else 0


if __name__ == "__main__":
    sys.exit(main())
