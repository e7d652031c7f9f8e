"""Whether the three PIN policies that are checked while the user types accept a PIN, from the 32
bytes of the record. Why they do not is up to the unit tests.

Written from the rules alone; the library's own checks are not consulted.
"""

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
        return ((not self.enabled & DISTANCE or self._is_far(pin))
                and (not self.enabled & CLASSES or self._is_mixed(pin))
                and (not self.enabled & RESTRICTION or not self.characters
                     or all((byte in self.characters) == bool(self.p4_white_list)
                            for byte in pin)))

    def _is_far(self, pin):
        if len(pin) < (3 if self.p1_full_check else 2):
            return True
        if not self.p1_case_sensitive:
            pin = pin.lower()
        steps = [left - right for left, right in zip(pin, pin[1:])]
        if self.p1_full_check:
            return abs(steps[0]) > self.p1_threshold or set(steps) != {steps[0]}
        # The first step counts by its size, every later one by its sign as well.
        return min([abs(steps[0]), *steps[1:]]) > self.p1_threshold

    def _is_mixed(self, pin):
        counts = {LOWER: 0, UPPER: 0, DIGIT: 0, PUNCTUATION: 0, OTHER: 0}
        for byte in pin:
            counts[class_of(byte)] += 1
        named = [counts[kind] for kind in (LOWER, UPPER, DIGIT, PUNCTUATION)
                 if counts[kind] and self.p2_mask & kind]
        others = bool(counts[OTHER] and self.p2_mask & OTHER)
        if len(named) + others < self.p2_classes:
            return False
        populated = sum(count >= self.p2_population for count in named) + others
        # One that has too few is looked for in all classes, whether they are in the mask or not.
        if populated < self.p2_classes and any(
                0 < counts[kind] < self.p2_population for kind in (LOWER, UPPER, DIGIT, PUNCTUATION)):
            return False
        return len(pin) >= self.p2_minimum


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
