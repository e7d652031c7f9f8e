"""Plays a plan on the stage: makes the calls, does what the user does, and compares."""

from stage import Gone, Key, Press, registry, wait_until

from .acts import Click, Close, CloseAll, Configure, Fork, PressAbort, Read, ReadPads, Type
from .dialogs import is_shown, squeezed
from .plan import THREADS
from .rules import ANY, OK
from .waiting_threads import WaitingThreads

PATIENCE = 20  # seconds, for everything that the library does by itself


class Mismatch(AssertionError):
    """The library did something else than the model."""


class Player:
    def __init__(self, host, screen):
        self.host, self.screen = host, screen
        self.handles = {}      # of all pads that were ever shown, by name
        self.pad_windows = {}  # X windows of the pads that are shown, by name
        for thread in THREADS:
            host.run("DLG_SetParameter", thread=thread)  # starts nothing but the thread
        self.owners = {host.pid}
        self.waiting = WaitingThreads(host.pid, THREADS)

    def configure(self, settings):
        self.host.write_registry(registry(
            ("", "LimitPinToAscii", settings.ascii_only), ("", "ShowEnrolmentHint", settings.hint),
            ("Biometrics", "Automatic retry timeout", 3),
            ("CSP", "Automatic default selection timeout", 0)))

    def play(self, step):
        if len(step.calls) == 1 or step.measure:
            for call in step.calls:
                self.play_alone(call)
        else:
            self.play_together(step.calls)

    def play_alone(self, call):
        for act in call.before:
            self.do_before(act)
        before = self.windows()
        running = self.start(call)
        self.attend(call, running, before)
        self.finish(call, running)
        self.expect_windows(call.titles)
        self.keep_pads(call, before)

    def play_together(self, calls):
        """The first call shows a dialog; the others are made while it is open, one after the
        other, and must be served in that order.
        """
        before = known = self.windows()
        running = [self.start(calls[0])]
        window = self.await_window(calls[0], running[0], known)
        for call in calls[1:]:
            waits = self.waiting.watch(call.thread)
            running.append(self.start(call))
            wait_until(waits, PATIENCE, f"{call.export} on {call.thread} to wait for its turn")
        for place, call in enumerate(calls):
            if place > 0:
                window = self.await_window(call, running[place], known) if call.title else None
            if window is not None:
                known = self.windows()  # the next dialog may be there before this call returns
                early = [other.export for other, each in zip(calls[place:], running[place:])
                         if each.done]
                if early:
                    raise Mismatch(f"{early} returned before {call.export}")
                self.use_dialog(call, window, running[place])
            self.finish(call, running[place])
        self.expect_windows(calls[-1].titles)
        self.keep_pads(calls[-1], before)

    # ---- a call

    def start(self, call):
        arguments = dict(call.arguments)
        name = arguments.get("pad")
        if call.rule.slots != ("handle",) and name is not None and name not in self.pad_windows:
            arguments.pop("pad")
            arguments["handle"] = self.dead_handle(name)
        return self.host.call(call.export, thread=call.thread, **arguments)

    def dead_handle(self, name):
        """The handle of a pad that is no more, unless a living one has its place in memory."""
        handle = self.handles.get(name, 1)
        return 1 if handle in [self.handles[living] for living in self.pad_windows] else handle

    def attend(self, call, running, before):
        if call.title is not None:
            self.use_dialog(call, self.await_window(call, running, before), running)

    def finish(self, call, running):
        running.answer(PATIENCE)
        expected, result = call.answer, running.result()
        if expected.result is ANY:
            same = bool(result)
        else:
            same = result == expected.result
        if not same:
            raise Mismatch(f"the result is {as_result(result)}, not {as_result(expected.result)}")
        for name in call.rule.buffers:
            self.compare_buffer(call, running, name)
        for name in call.rule.slots:
            self.compare_slot(call, running, name)
        if expected.size is not None and running.output("size") != expected.size:
            raise Mismatch(f"the size is {running.output('size')}, not {expected.size}")

    @staticmethod
    def compare_buffer(call, running, name):
        data = call.answer.outputs.get(name)
        sized = call.answer.size is not None
        if data is None:
            if not running.untouched(name):
                raise Mismatch(f"{name} was written to")
            if not sized and running.output(name + "Length") != call.arguments[name + "Capacity"]:
                raise Mismatch(f"the length of {name} was written to")
            return
        found = running.value(name, len(data) if sized else None)
        if found != data:
            raise Mismatch(f"{name} is {found!r}, not {data!r}")

    def compare_slot(self, call, running, name):
        data = call.answer.outputs.get(name)
        if data is None:
            if not running.untouched(name):
                raise Mismatch(f"{name} was written to")
        elif data is ANY:
            self.handles[call.arguments["pad"]] = running.number(name)
            if not running.number(name):
                raise Mismatch(f"{name} is 0")
        elif running.output(name)[:len(data)] != data:
            raise Mismatch(f"{name} is {running.output(name).hex()}, not {data.hex()}")

    # ---- windows

    def windows(self):
        """The X windows of the host, or of its helper, with their titles."""
        windows = self.screen.x11.windows()
        if not self.owners.issuperset(owner for _, owner, _ in windows):
            self.owners = {self.host.pid, *self.host.helpers()}
        return {number: title for number, owner, title in windows if owner in self.owners}

    def await_window(self, call, running, before):
        """The dialog's window, once the keyboard goes to it."""
        def has_keyboard():
            if running.done:
                raise Mismatch(f"{call.export} returned {as_result(running.result())} instead of "
                               f"showing {call.title!r}")
            return next((number for number, title in self.windows().items()
                         if number not in before and title == call.title
                         and self.screen.x11.holds_focus(number)), None)
        return wait_until(has_keyboard, PATIENCE, f"the window {call.title!r} with the keyboard",
                          seen=self.screen.dump)

    def expect_windows(self, titles):
        wait_until(lambda: sorted(self.windows().values()) == titles, PATIENCE,
                   f"the windows {titles}", seen=self.windows)

    def keep_pads(self, call, before):
        pads = {number for number, title in self.windows().items() if title == "PinPad"}
        if call.export.startswith("DLG_PinPadShow") and call.answer.result:
            self.pad_windows[call.arguments["pad"]] = (pads - before.keys()).pop()
        self.pad_windows = {name: number for name, number in self.pad_windows.items()
                            if number in pads}

    # ---- the user

    def use_dialog(self, call, window, running):
        for place, act in enumerate(call.acts):
            self.do(act, call, window)
            if place + 1 < len(call.acts) and running.done:
                raise Mismatch(f"{call.export} returned {as_result(running.result())} at {act}")

    def do(self, act, call, window):
        x11 = self.screen.x11
        match act:
            case Type(text=text):
                x11.type_text(text)
            case Key(name=name):
                x11.key(name)
            case Close():
                x11.send_delete(window)
            case Press(name=name):
                self.button(call.title, name).press()
            case Click(name=name):
                self.button(call.title, name).click()
            case Read(texts=texts, button=button, enabled=enabled):
                self.read(call.title, texts, button, enabled)
            case Fork():
                self.fork()

    def accessible(self, title):
        return wait_until(lambda: next((window for window in self.screen.windows(self.host)
                                        if window.name == title), None),
                          PATIENCE, f"the accessible window {title!r}")

    def button(self, title, name):
        return wait_until(lambda: find_button(self.accessible(title), name), PATIENCE,
                          f"the button {name!r}", seen=self.screen.dump)

    def read(self, title, texts, button, enabled):
        def shown():
            labels = [node.name for node in self.accessible(title).find_all("label")]
            return (self.button(title, button).enabled == enabled
                    and all(is_shown(text, labels) for text in texts))
        wait_until(shown, PATIENCE, f"{texts}, {button} enabled: {enabled}", seen=self.screen.dump)

    def fork(self):
        answer = self.host.command("fork")
        if (answer["first"], answer["second"]) != (OK, OK):
            raise Mismatch(f"the calls of a forked child returned {answer}")

    def do_before(self, act):
        match act:
            case Configure():
                self.configure(act)
            case CloseAll():
                for window in self.windows():
                    self.screen.x11.send_delete(window)
            case ReadPads(labels=labels):
                expected = sorted(sorted(map(squeezed, pad)) for pad in labels)
                wait_until(lambda: self.pad_labels() == expected, PATIENCE, f"pads {expected}",
                           seen=self.pad_labels)
            case PressAbort(pad=pad):
                self.press_abort(pad)

    def pad_labels(self):
        return sorted(sorted(filter(None, (squeezed(node.name)
                                           for node in window.find_all("label"))))
                      for window in self.screen.windows(self.host) if window.name == "PinPad")

    def press_abort(self, pad):
        window = self.pad_windows[pad]
        self.screen.x11.ask_manager_to_activate(window)
        wait_until(lambda: self.screen.x11.holds_focus(window), PATIENCE, "the keyboard on a pad")
        # The display may be ahead of the toolkit.
        wait_until(lambda: self.is_active(window), PATIENCE, "a pad that knows it")
        self.screen.x11.key("alt+a")
        wait_until(lambda: self.host.run("DLG_PinPadKeyboardInputShouldAbort", thread=THREADS[0],
                                         pad=pad) == 1, PATIENCE, "the wish to abort")

    def is_active(self, window):
        return any(node.active and self.screen.x11_window(node) == window
                   for node in self.screen.windows(self.host))


def find_button(node, name):
    """Among what the node holds, from the end: that is where buttons are. A count-down may stand
    behind the name.
    """
    try:
        for child in reversed(node.children):
            role = child.role
            if role == "push button" and (child.name + " ").startswith(name + " "):
                return child
            if role in ("panel", "filler"):
                found = find_button(child, name)
                if found is not None:
                    return found
    except Gone:
        return None
    return None


def as_result(result):
    return hex(result) if isinstance(result, int) else result
