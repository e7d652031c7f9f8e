"""The three PIN policies that are checked while the user types, from the 32 bytes of the record.

Written from the rules alone; the library's own checks are not consulted.
"""

ACCEPTED = 0x9000

DISTANCE, CLASSES, RESTRICTION = 1, 2, 8  # bits of the enabled mask
LOWER, UPPER, DIGIT, PUNCTUATION, OTHER = 1, 2, 4, 8, 16


class Policy:
    def __init__(self, block, characters):
        (_, self.enabled, self.p1_threshold, self.p1_case_sensitive, self.p1_full_check,
         self.p2_classes, self.p2_population, self.p2_minimum, self.p2_mask) = block[:9]
        self.p4_white_list = block[25]
        self.characters = characters

    def accepts(self, pin):
        """Whether every policy that is enabled accepts the bytes."""
        return (not (self.enabled & DISTANCE and self.distance(pin) != ACCEPTED)
                and not (self.enabled & CLASSES and self.classes(pin) != ACCEPTED)
                and not (self.enabled & RESTRICTION and self.characters
                         and self.restriction(pin) != ACCEPTED))

    def distance(self, pin):
        if len(pin) < (3 if self.p1_full_check else 2):
            return ACCEPTED
        if not self.p1_case_sensitive:
            pin = pin.lower()
        steps = [left - right for left, right in zip(pin, pin[1:])]
        if self.p1_full_check:
            one_run = abs(steps[0]) <= self.p1_threshold and set(steps) == {steps[0]}
            return 0x6440 + abs(steps[0]) % 16 if one_run else ACCEPTED
        # The first step counts by its size, every later one by its sign as well.
        for step, size in zip(steps, [abs(steps[0])] + steps[1:]):
            if size <= self.p1_threshold:
                return 0x6440 + step % 16
        return ACCEPTED

    def classes(self, pin):
        counts = {LOWER: 0, UPPER: 0, DIGIT: 0, PUNCTUATION: 0, OTHER: 0}
        for byte in pin:
            counts[class_of(byte)] += 1
        named = [counts[kind] for kind in (LOWER, UPPER, DIGIT, PUNCTUATION)
                 if counts[kind] and self.p2_mask & kind]
        others = bool(counts[OTHER] and self.p2_mask & OTHER)
        used = len(named) + others
        populated = sum(count >= self.p2_population for count in named) + others
        if used < self.p2_classes:
            return 0x6490 + used
        if populated < self.p2_classes:
            for kind in (LOWER, UPPER, DIGIT, PUNCTUATION):  # in the mask or not
                if 0 < counts[kind] < self.p2_population:
                    return 0x64B0 + counts[kind] % 16
        return ACCEPTED if len(pin) >= self.p2_minimum else 0x64A0 + self.p2_minimum % 16

    def restriction(self, pin):
        for place, byte in enumerate(pin):
            if (byte in self.characters) != bool(self.p4_white_list):
                return 0x6400 + place % 16
        return ACCEPTED


def class_of(byte):
    if 97 <= byte <= 122:
        return LOWER
    if 65 <= byte <= 90:
        return UPPER
    if 48 <= byte <= 57:
        return DIGIT
    # The dollar sign (36) is no punctuation here.
    if 33 <= byte <= 35 or 37 <= byte <= 47 or 58 <= byte <= 64 or 91 <= byte <= 96 \
            or 123 <= byte <= 126:
        return PUNCTUATION
    return OTHER
