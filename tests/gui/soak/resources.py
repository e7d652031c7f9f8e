"""What a host holds of the system, and what of it has to be given back."""

import os
import re
import resource
from dataclasses import dataclass

from stage import wait_until


# Fonts, icons and texts that were shown for the first time stay in the toolkit's caches.
MOST_RSS_GROWTH = 24 * 1024
MOST_HEAP_GROWTH = 8 * 2**20
# Names of threads: GLib's, and one of a newer Pango, there as long as it has any font.
_KEPT = ("pool-", "[pango] ")


@dataclass
class Resources:
    threads: int    # without those that the toolkit's libraries keep for whoever needs one next
    files: list
    x_windows: int  # of the whole screen, mapped or not
    rss: int        # kB
    heap: int       # bytes
    helper_threads: int = 0
    helper_files: int = 0
    helper_rss: int = 0

    @classmethod
    def of(cls, host, screen):
        kinds = [re.sub(r"\d+", "N", target) for target in host.fds()]
        threads = [name for name in host.threads() if not name.startswith(_KEPT)]
        found = cls(len(threads), sorted(kinds), screen.x11.count_windows(),
                    host.rss(), host.heap())
        for helper in host.helpers():
            found.helper_threads += len([name for name in _threads(helper)
                                         if not name.startswith(_KEPT)])
            found.helper_files += len(os.listdir(f"/proc/{helper}/fd"))
            with open(f"/proc/{helper}/statm") as file:
                found.helper_rss += int(file.read().split()[1]) * resource.getpagesize() // 1024
        return found

    def compare(self, before):
        """AssertionError where more is held than before."""
        for name in ("threads", "files", "x_windows", "helper_threads", "helper_files"):
            if getattr(self, name) != getattr(before, name):
                raise AssertionError(f"{name}: {getattr(before, name)} became "
                                     f"{getattr(self, name)}")
        if os.environ.get("ZELDLG_INSTRUMENTED"):
            return  # a sanitizer keeps what is freed
        for name, most in (("rss", MOST_RSS_GROWTH), ("heap", MOST_HEAP_GROWTH),
                           ("helper_rss", MOST_RSS_GROWTH)):
            if getattr(self, name) > getattr(before, name) + most:
                raise AssertionError(f"{name}: {getattr(before, name)} grew to "
                                     f"{getattr(self, name)}")

    def __str__(self):
        return (f"RSS {self.rss / 1024:.1f} MB, heap {self.heap / 2**20:.1f} MB, "
                f"{self.threads} threads, {len(self.files)} files, "
                f"{self.x_windows} X windows"
                + (f"; the helper: RSS {self.helper_rss / 1024:.1f} MB, {self.helper_threads} "
                   f"threads, {self.helper_files} files" if self.helper_rss else ""))


def _threads(process_id):
    for task in os.listdir(f"/proc/{process_id}/task"):
        with open(f"/proc/{process_id}/task/{task}/comm") as file:
            yield file.read().strip()


def settled(host, screen):
    """The resources, once what ends by itself has ended: the window manager takes the frames of
    windows away after the windows.
    """
    seen = []

    def same_again():
        now = Resources.of(host, screen)
        seen.append((now.threads, now.files, now.x_windows, now.helper_threads, now.helper_files))
        return now if seen[-5:] == [seen[-1]] * 5 else None
    return wait_until(same_again, 20, "the resources to settle", seen=lambda: seen[-5:])
