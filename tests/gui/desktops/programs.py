"""What asks for a PIN: this library in a host, and the programs that it is compared with."""

import contextlib
import subprocess
import threading

from stage import OK, Host
from stage.servers import dying_with_parent

PIN = "4321"


class Library:
    """One host for all of its dialogs: that they are not the first is the point."""

    def __init__(self, environment, library):
        self.host = Host(library=library, environment=environment, strict=False)

    def ask(self):
        return HostQuestion(self.host.call("DLG_ShowPinDialog"))

    def show_pad(self, pad="pad"):
        self.host.run("DLG_PinPadShowVerificationDialog", pad=pad, allowAbort=1)

    def hide_pad(self, pad="pad"):
        self.host.run("DLG_PinPadHideDialog", pad=pad)

    def is_aborted(self, pad="pad"):
        return self.host.run("DLG_PinPadKeyboardInputShouldAbort", pad=pad) == 1

    def close(self):
        self.host.close(failed=True)


class HostQuestion:
    def __init__(self, call):
        self._call = call

    def answer(self):
        """What was typed, None while it is open, "" when it was cancelled."""
        if not self._call.done:
            return None
        return self._call.value("pin").decode() if self._call.result() == OK else ""


class Peer:
    """A program that ends with its dialog."""

    def __init__(self, environment, command, talk=""):
        self._environment, self._command, self._talk = environment, command, talk
        self._questions = []

    def ask(self):
        self._questions.append(PeerQuestion(self._environment, self._command, self._talk))
        return self._questions[-1]

    def close(self):
        for question in self._questions:
            question.close()


class PeerQuestion:
    def __init__(self, environment, command, talk):
        self._process = subprocess.Popen(dying_with_parent(command), env=environment,
                                         stdin=subprocess.PIPE, stdout=subprocess.PIPE,
                                         stderr=subprocess.DEVNULL, text=True)
        self._lines = []
        self._process.stdin.write(talk)
        self._process.stdin.flush()
        self._reader = threading.Thread(target=self._read, daemon=True)
        self._reader.start()

    def _read(self):
        for line in self._process.stdout:
            self._lines.append(line.rstrip("\n"))

    def answer(self):
        for line in self._lines:
            if line.startswith("D "):
                return line[2:]
            if line.startswith("ERR"):
                return ""
        if self._process.poll() is None:
            return None
        self._reader.join(5)
        return next((line for line in self._lines if line and not line.startswith("OK")), "")

    def close(self):
        with contextlib.suppress(OSError):
            self._process.stdin.close()
        self._process.kill()
        self._process.wait()


# Where the desktop has no prompt of its own for it (gnome-shell has one) there is that of its kin,
# which nothing starts on the stage's bus, and which ends when nobody has asked for long.
PROMPTER = """
offered() { gdbus wait --session --timeout $1 org.gnome.keyring.SystemPrompter; }
if ! offered 1; then
    setpriv --pdeathsig KILL -- /usr/libexec/gcr-prompter &
    offered 60
fi
exec pinentry-gnome3
"""

# Each with its own defaults, a grab of the keyboard included.
PEERS = {
    "pinentry-gtk-2": (["pinentry-gtk-2"], "SETPROMPT PIN\nGETPIN\n"),
    "pinentry-gnome3": (["sh", "-c", PROMPTER], "SETPROMPT PIN\nGETPIN\n"),
    "zenity --password": (["zenity", "--password"], ""),
}
