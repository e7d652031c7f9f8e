"""Windows beside threads that poll a pad without a pause."""

import time

from stage import Screen, scaled, wait_until

from .process import Fault, Process
from .report import percentile

MOST_SECONDS = 0.05       # from the press to the answer, for 99 of 100
MOST_PAINT_SECONDS = 0.5  # from the call that shows a pad to its content on the screen
TICK_SECONDS = 0.5        # of the key generation's animation


class Polled:
    """A host with some threads that poll, and the user of its windows."""

    def __init__(self, library, threads, screen, environment):
        self._screen = screen
        self.host = Process(["poll", library, f"threads={threads}", "status=7"], environment)
        self._abort = None  # where the button is, from the pad's corner

    def __enter__(self):
        self.host.__enter__()
        self.host.next("ready")
        self._find_abort()
        self.order("poll")
        return self

    def __exit__(self, *problem):
        self.host.__exit__(*problem)

    def quit(self):
        self.host.tell("quit")
        self.host.next("exit")
        self.host.end(7)

    def order(self, line):
        self.host.tell(line)
        return self.host.next("done")

    def _window(self, title):
        return wait_until(
            lambda: next((number for number, pid, name in self._screen.x11.windows()
                          if (pid, name) == (self.host.pid, title)), None),
            20, f"the window {title!r}", seen=self._screen.x11.windows)

    def _find_abort(self):
        self.order("pad")
        pad = self._screen.find_window("PinPad", self.host.pid)
        x, y, *_ = self._screen.x11.geometry(pad.x11_number)
        left, top, width, height = pad.find("push button", "Abort").extents
        self._abort = left + width // 2 - x, top + height // 2 - y
        self._hide(pad.x11_number)

    def _hide(self, number):
        self.order("hide")
        wait_until(lambda: number not in [window for window, *_ in self._screen.x11.windows()],
                   20, "the pad's end")

    def _painted(self, number):
        """Waits until the button can be seen: its letters, and not one colour."""
        x11 = self._screen.x11

        def look():
            x, y, *_ = x11.geometry(number)
            across, down = self._abort
            return len(set(x11.pixels((x + across - 20, y + down - 8, 40, 16)))) > 4
        wait_until(look, 20, "a painted pad")

    def press(self):
        """Shows a pad and presses Abort. Gives how long it took to paint, and to be told."""
        ordered = self.order("pad")
        number = self._window("PinPad")
        self._painted(number)
        painted = time.monotonic() - ordered
        x, y, *_ = self._screen.x11.geometry(number)
        pressed = time.monotonic()
        self._screen.x11.click(x + self._abort[0], y + self._abort[1])
        told = self.host.next("abort") - pressed
        self._hide(number)
        return painted, told

    def frames(self, seconds):
        """How long each picture of the animation stood, without the first and the last."""
        self.order("keygen")
        number = self._window("Generating key-pair")
        x11 = self._screen.x11
        x, y, width, height = x11.geometry(number)
        changes, seen = [], None
        until = time.monotonic() + seconds
        while time.monotonic() < until:
            pixels = x11.pixels((x, y, width // 2, height))
            if pixels != seen:
                changes.append(time.monotonic())
                seen = pixels
            time.sleep(0.01)
        self.order("hide-keygen")
        return [later - earlier for earlier, later in zip(changes[1:], changes[2:])]


def run(report, library, presses, frame_seconds, environment):
    screen = Screen()
    for threads in (1, 2, 3, 4):
        kind = f"{threads} polling"
        try:
            with Polled(library, threads, screen, environment) as polled:
                times = [polled.press() for _ in range(presses)]
                stood = polled.frames(frame_seconds)
                polled.quit()
            judge(report, kind, times, stood, frame_seconds)
        except (Fault, AssertionError) as error:
            fault = error if isinstance(error, Fault) else Fault("hang", str(error))
            report.failed(fault, kind, ["script/life fairness"])
    screen.close()


def judge(report, kind, times, stood, frame_seconds):
    for painted, told in times:
        report.passed(f"{kind}: painted", painted)
        report.passed(f"{kind}: Abort told", told)
    for seconds in stood:
        report.passed(f"{kind}: a picture stood", seconds)
    told = percentile([told for _, told in times], 0.99)
    if told > scaled(MOST_SECONDS):
        raise Fault("slow", f"Abort is told after {told * 1000:.0f} ms")
    painted = percentile([painted for painted, _ in times], 0.99)
    if painted > scaled(MOST_PAINT_SECONDS):
        raise Fault("slow", f"a pad is painted after {painted * 1000:.0f} ms")
    if not stood or max(stood) > scaled(2 * TICK_SECONDS):
        raise Fault("slow", f"pictures stood for {[round(seconds, 2) for seconds in stood]} s")
    if len(stood) < frame_seconds / scaled(2 * TICK_SECONDS):
        raise Fault("slow", f"{len(stood)} pictures in {frame_seconds} s")
