"""Answers, on a stage of its own, which test notices a mutant.

Reads lines "NUMBER RINGS PATH" (rings joined by commas), writes the name of the step that failed,
or "-" when none did.
"""

import sys

from mutation.rings import Rings

LIMIT = 300  # seconds that a step may take


class Asking:
    def __init__(self, rings):
        self._rings = rings
        self._sound = set()  # steps that pass without a mutant

    def _fails(self, number, command):
        return self._rings.fails(number, command, LIMIT)

    def noticed_by(self, number, ring, path):
        for name, command in self._rings.steps(ring, path):
            # Once more: a test on a display may fail because the machine is busy.
            if self._fails(number, command) and (
                    ring == "unit" or self._fails(number, command)):
                if name not in self._sound and number and self._fails(0, command):
                    return f"nothing, for this fails without any change: {name}"
                self._sound.add(name)
                return name
        return None


def main():
    asking = Asking(Rings(*sys.argv[1:3]))
    for line in sys.stdin:
        number, rings, path = line.split()
        answers = (asking.noticed_by(int(number), ring, path) for ring in rings.split(","))
        print(next(filter(None, answers), "-"), flush=True)


main()
