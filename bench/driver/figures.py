"""What is measured: samples, and what they are held against."""

import statistics
from dataclasses import asdict, dataclass, field


def quantile(values, share):
    ordered = sorted(values)
    return ordered[min(int(share * len(ordered)), len(ordered) - 1)]


@dataclass
class Figure:
    """One line of the report. `target` is an upper limit, or with `at_least` a lower one; without
    a target the figure explains another.
    """
    name: str
    samples: list = field(repr=False)
    unit: str = ""
    target: float = None
    at_least: bool = False
    share: float = 0.5  # which quantile counts

    @property
    def value(self):
        return quantile(self.samples, self.share) if self.share != 0.5 \
            else statistics.median(self.samples)

    @property
    def spread(self):
        """Where the middle half of the samples lies."""
        return quantile(self.samples, 0.25), quantile(self.samples, 0.75)

    @property
    def met(self):
        if self.target is None:
            return None
        return self.value >= self.target if self.at_least else self.value <= self.target

    def as_row(self):
        low, high = self.spread
        target = "" if self.target is None else \
            f"{'≥' if self.at_least else '≤'} {number(self.target)}"
        verdict = {None: "", True: "met", False: "**missed**"}[self.met]
        is_median = self.share == 0.5 and len(self.samples) > 1
        return [self.name, f"{number(self.value)} {self.unit}".strip(),
                f"{number(low)} – {number(high)}" if is_median else "",
                target, verdict]

    def as_json(self):
        return {**asdict(self), "value": self.value, "spread": self.spread, "met": self.met}


def number(value):
    if value == int(value) and abs(value) < 1e6:
        return str(int(value))
    return f"{value:.3g}" if abs(value) < 1000 else f"{value:.0f}"


def ratios(ours, theirs):
    """Of samples that were taken in turns."""
    return [a / b for a, b in zip(ours, theirs)]
