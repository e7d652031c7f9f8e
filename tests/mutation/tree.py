"""A copy of the tree with mutants in it, and what is built of that."""

import os
import subprocess
import zlib

from mutation.excluded import reason_to_exclude
from mutation.instrument import (CHOICE, has_to_be_known, instrumented, lines_named,
                                 replaced)
from mutation.source import mutants_of

TARGETS = {"codes": "tests/unit/CMakeFiles/zeldlg_unit.dir/stated_codes_test.cpp.o",
           "unit": "zeldlg_unit", "whitebox": "zeldlg_gui_whitebox",
           "blackbox": "zeldlglib zeldlg-demo zeldlg-settings zeldlg_test_host zeldlg_test_host_gtk3 "
                       "zeldlg_test_host_qt5 zeldlg_test_host_wx zeldlg_rough_host "
                       "zeldlg_rough_constructor zeldlg_dying_library",
           "all": "zeldlg_unit"}


class BuildFailed(Exception):
    """The compiler refused; its output."""


class Tree:
    def __init__(self, project, place):
        self.project = project
        self.root = os.path.join(place, "tree")
        self.build = os.path.join(self.root, "build", "release")
        self._refused = os.path.join(place, "refused")
        self.sources = {}  # path: the code as it is in the project

    def read(self):
        """Reads the sources of the project, those not yet committed too. Returns all its files."""
        listed = subprocess.run(["git", "ls-files", "-z", "--cached", "--others",
                                 "--exclude-standard"], cwd=self.project, check=True,
                                capture_output=True, text=True).stdout.split("\0")
        files = [path for path in listed if os.path.isfile(os.path.join(self.project, path))]
        for path in files:
            if path.startswith("src/") and path.endswith((".cpp", ".h")):
                with open(os.path.join(self.project, path), encoding="utf-8") as file:
                    self.sources[path] = file.read()
        return files

    def copy(self):
        """Brings the copy up to date with all of the project's files but the sources. What is equal
        keeps its time, so that it is not built again."""
        files = self.read()
        for path in files:
            if path not in self.sources and not path.startswith("docs/pictures"):
                source = os.path.join(self.project, path)
                with open(source, "rb") as file:
                    self._write(path, file.read(), os.stat(source).st_mode)
        self._write("src/mutation.h", CHOICE.encode())
        self._remove_others({*files, "src/mutation.h"})

    def _remove_others(self, listed):
        for room in ("src", "tests"):
            for folder, _, names in os.walk(os.path.join(self.root, room)):
                for name in names:
                    path = os.path.join(folder, name)
                    if os.path.relpath(path, self.root) not in listed:
                        os.remove(path)

    def _write(self, path, content, mode=0o644):
        target = os.path.join(self.root, path)
        if os.path.exists(target):
            with open(target, "rb") as file:
                if file.read() == content:
                    return
        os.makedirs(os.path.dirname(target), exist_ok=True)
        with open(target, "wb") as file:
            file.write(content)
        os.chmod(target, mode & 0o777)

    def numbered(self):
        """All mutants by numbers that stay the same when others come or go: what is built with a
        number in it need not be built again."""
        numbered = {}
        for path in sorted(self.sources):
            for mutant in mutants_of(path, self.sources[path]):
                if not reason_to_exclude(mutant):
                    number = zlib.crc32(mutant.key.encode()) >> 1
                    while number in numbered:  # the same change in another line
                        number += 1
                    numbered[number] = mutant
        return numbered

    def _refused_before(self):
        """What the compiler has refused in an earlier run need not be tried again."""
        if not os.path.exists(self._refused):
            return set()
        with open(self._refused, encoding="utf-8") as file:
            return set(file.read().splitlines())

    def put(self, path, code):
        self._write(path, code.encode())

    def put_plain(self, path, mutant):
        """The file as it is in the project, with one mutant. Returns what stood there."""
        target = os.path.join(self.root, path)
        with open(target, encoding="utf-8") as file:
            before = (file.read(), os.stat(target))
        self.put(path, replaced(self.sources[path], [(mutant.start, mutant.end, mutant.changed)]))
        return before

    def put_back(self, path, before, keep_time):
        code, status = before
        self.put(path, code)
        if keep_time:
            os.utime(os.path.join(self.root, path), ns=(status.st_atime_ns, status.st_mtime_ns))

    def _configure(self):
        # Neither assertions nor warnings: a mutant is to be built, not to be read.
        subprocess.run(["cmake", "-S", self.root, "-B", self.build, "-G", "Ninja",
                        "-DCMAKE_BUILD_TYPE=RelWithDebInfo", "-DCMAKE_CXX_FLAGS=-w -Wno-narrowing",
                        "-DCMAKE_CXX_FLAGS_RELWITHDEBINFO=-g0", "-DCMAKE_C_FLAGS=-w",
                        "-DCMAKE_INSTALL_PREFIX=/usr"], check=True, stdout=subprocess.DEVNULL)

    def make(self, ring, jobs, keep_going=False):
        """Builds what a ring of tests needs; raises BuildFailed."""
        run = subprocess.run(["ninja", "-C", self.build, f"-j{jobs}", f"-k{int(not keep_going)}",
                              *TARGETS[ring].split()], capture_output=True, text=True)
        if run.returncode != 0:
            raise BuildFailed(run.stdout)

    def instrument(self, numbered, jobs, tell):
        """Builds with as many of the mutants as can be chosen at run time. {number: mutant} in and
        out; what is missing has to be built by itself."""
        known = {path: has_to_be_known(code) for path, code in self.sources.items()}
        refused_before = self._refused_before()
        left = {number: mutant for number, mutant in numbered.items()
                if mutant.start not in known[mutant.path] and mutant.key not in refused_before}
        configured = False
        while True:
            by_path = {path: {} for path in self.sources}
            for number, mutant in left.items():
                by_path[mutant.path][number] = mutant
            for path, mutants in by_path.items():
                self.put(path, instrumented(path, self.sources[path], mutants))
            if not configured:
                self._configure()
                configured = True
            try:
                for ring in TARGETS:
                    self.make(ring, jobs, keep_going=True)
                return left
            except BuildFailed as failure:
                errors = str(failure)
            named = lines_named(errors, self.build, self.root)
            refused = [number for number, mutant in left.items()
                       if any((mutant.path, line) in named
                              for line in range(mutant.line, mutant.last_line + 1))]
            if not refused:
                files = {path for path, _ in named}
                refused = [number for number, mutant in left.items() if mutant.path in files]
            if not refused:
                raise BuildFailed(errors)
            tell(f"{len(refused)} cannot be chosen at run time")
            with open(self._refused, "a", encoding="utf-8") as file:
                for number in refused:
                    print(left.pop(number).key, file=file)
