#!/usr/bin/python3
"""What is in the Debian packages, without installing them."""

import glob
import os
import re
import subprocess
import tempfile
import unittest

PACKAGES = os.environ["ZELDLG_PACKAGES"]
ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", ".."))
LIBRARY, DEVELOPMENT = "libzeldlglib3", "libzeldlglib-dev"
PROGRAMS = DEMO, SETTINGS, PKCS11 = "zeldlg-demo", "zeldlg-settings", "zeldlg-p11"
PYTHON = "python3-zeldlg"


def run(*command, code=0, cwd=None):
    result = subprocess.run(command, text=True, cwd=cwd, stdout=subprocess.PIPE,
                            stderr=subprocess.PIPE, env={**os.environ, "LC_ALL": "C.UTF-8"})
    if result.returncode != code:
        raise AssertionError(f"{' '.join(command)}: exit code {result.returncode}\n"
                             + result.stdout + result.stderr)
    return result.stdout.strip()


ARCHITECTURE = run("dpkg", "--print-architecture")
LIB = "usr/lib/" + run("dpkg-architecture", "-qDEB_HOST_MULTIARCH")
VERSION = run("dpkg-parsechangelog", "-l", f"{ROOT}/debian/changelog", "-S", "Version")
UPSTREAM = VERSION.rsplit("-", 1)[0]


def documents(package):
    return {f"usr/share/doc/{package}/copyright", f"usr/share/doc/{package}/changelog.gz",
            f"usr/share/doc/{package}/changelog.Debian.gz"} | (
                {f"usr/share/lintian/overrides/{package}"}
                if package in (LIBRARY, SETTINGS, PKCS11) else set())


CONTENTS = {
    LIBRARY: {f"{LIB}/libzeldlglib.so.3", f"{LIB}/libzeldlglib.so.{UPSTREAM}",
              f"{LIB}/zeldlg/zeldlg-helper",
              "usr/share/tessaly/registry", f"usr/share/doc/{LIBRARY}/hosting.md",
              f"usr/share/doc/{LIBRARY}/pkcs11.md", f"usr/share/doc/{LIBRARY}/settings.md"},
    DEVELOPMENT: {f"{LIB}/libzeldlglib.so", "usr/include/zeldlg/zeldlg.h",
                  "usr/include/zeldlg/zeldlg.hpp", "usr/include/zeldlg/probe.hpp",
                  f"{LIB}/cmake/zeldlg/zeldlgConfig.cmake",
                  f"{LIB}/cmake/zeldlg/zeldlgConfigVersion.cmake",
                  f"{LIB}/cmake/zeldlg/zeldlgTargets-relwithdebinfo.cmake",
                  f"{LIB}/cmake/zeldlg/zeldlgTargets.cmake", f"{LIB}/pkgconfig/zeldlg.pc",
                  f"usr/share/doc/{DEVELOPMENT}/docs/hosting.md",
                  f"usr/share/doc/{DEVELOPMENT}/docs/pkcs11.md",
                  f"usr/share/doc/{DEVELOPMENT}/docs/settings.md",
                  f"usr/share/doc/{DEVELOPMENT}/docs/gallery.md",
                  f"usr/share/doc/{DEVELOPMENT}/docs/hosts.md",
                  f"usr/share/doc/{DEVELOPMENT}/docs/themes.md",
                  f"usr/share/doc-base/{DEVELOPMENT}.libzeldlglib",
                  *(f"usr/share/doc/{DEVELOPMENT}/{name}" for name in run(
                      "git", "-C", ROOT, "ls-files", "--cached", "--others",
                      "--exclude-standard", "examples", "docs/pictures/gallery",
                      "docs/pictures/hosts", "docs/pictures/pkcs11").splitlines())},
    PYTHON: {f"usr/lib/python3/dist-packages/zeldlg/{name}"
             for name in ("__init__.py", "_probe.py", "_records.py", "py.typed")},
    **{program: {f"usr/bin/{program}", f"usr/share/man/man1/{program}.1.gz"}
       for program in PROGRAMS},
}
CONTENTS[PKCS11] |= {f"{LIB}/pkcs11/zeldlg-p11-module.so",
                     "usr/share/p11-kit/modules/zeldlg-p11.module"}
CONTROL = {LIBRARY: {"control", "md5sums", "shlibs", "symbols", "triggers"},
           # Those of the package for Python compile it.
           PYTHON: {"control", "md5sums", "postinst", "prerm"},
           **{package: {"control", "md5sums"} for package in (DEVELOPMENT, *PROGRAMS)}}
WITH_SYMBOLS = LIBRARY, *PROGRAMS
LINK = re.compile(r"\]\(([^)#\s]+)[^)]*\)")
# Their number grows with every language, and with every function.
GROWING = re.compile(r"usr/share/locale/[\w@]+/LC_MESSAGES/tokenutils\.mo"
                     rf"|usr/share/doc/{DEVELOPMENT}/html/.*")


class Packages(unittest.TestCase):
    @classmethod
    def setUpClass(cls):
        cls.directory = tempfile.TemporaryDirectory()
        cls.addClassCleanup(cls.directory.cleanup)
        for package in CONTENTS:
            run("dpkg-deb", "--raw-extract", cls.path_of(package), cls.tree(package))

    @staticmethod
    def path_of(package):
        architecture = "all" if package == PYTHON else ARCHITECTURE
        return os.path.join(PACKAGES, f"{package}_{VERSION}_{architecture}.deb")

    @classmethod
    def tree(cls, package):
        return os.path.join(cls.directory.name, package)

    @classmethod
    def files(cls, package):
        """The files of a package, without the control files."""
        return {os.path.relpath(os.path.join(directory, name), cls.tree(package))
                for directory, folders, names in os.walk(cls.tree(package))
                for name in names + [each for each in folders
                                     if os.path.islink(os.path.join(directory, each))]
                if not directory.endswith("/DEBIAN")}

    def field(self, package, name):
        return run("dpkg-deb", "--field", self.path_of(package), name)

    def binaries(self, package):
        return [path for path in (os.path.join(self.tree(package), name)
                                  for name in self.files(package))
                if not os.path.islink(path) and "ELF" in run("file", "--brief", path)]

    def test_they_are_all_of_the_version_that_the_changelog_names(self):
        symbols = [f"{package}-dbgsym" for package in WITH_SYMBOLS]
        self.assertEqual(sorted(map(self.path_of, [*CONTENTS, *symbols])),
                         sorted(glob.glob(os.path.join(PACKAGES, "*.deb"))))
        for package in CONTENTS:
            self.assertEqual("zeldlg", self.field(package, "Source"))
            self.assertEqual(VERSION, self.field(package, "Version"))

    def test_each_holds_exactly_its_files(self):
        for package, expected in CONTENTS.items():
            found = {path for path in self.files(package) if not GROWING.fullmatch(path)}
            self.assertEqual(expected | documents(package), found)
            self.assertEqual(CONTROL[package],
                             set(os.listdir(os.path.join(self.tree(package), "DEBIAN"))))

    def test_links_and_owners_and_modes(self):
        self.assertEqual(f"libzeldlglib.so.{UPSTREAM}",
                         os.readlink(f"{self.tree(LIBRARY)}/{LIB}/libzeldlglib.so.3"))
        self.assertEqual("libzeldlglib.so.3",
                         os.readlink(f"{self.tree(DEVELOPMENT)}/{LIB}/libzeldlglib.so"))
        for package in CONTENTS:
            for line in run("dpkg-deb", "--contents", self.path_of(package)).splitlines():
                mode, owner, *_, path = line.split(" -> ")[0].split()
                self.assertEqual("root/root", owner, path)
                wanted = {"d": "drwxr-xr-x", "l": "lrwxrwxrwx"}.get(mode[0], "-rw-r--r--")
                is_program = re.search(r"/bin/zeldlg|/zeldlg-helper$|/sign\.py$", path)
                self.assertEqual("-rwxr-xr-x" if is_program else wanted, mode, path)

    def test_shipped_files_are_those_of_the_source(self):
        for package, shipped, source in (
                (LIBRARY, "usr/share/tessaly/registry", "packaging/registry"),
                (DEVELOPMENT, "usr/include/zeldlg/zeldlg.h", "include/zeldlg/zeldlg.h")):
            with open(os.path.join(self.tree(package), shipped), "rb") as one, \
                    open(os.path.join(ROOT, source), "rb") as other:
                self.assertEqual(other.read(), one.read(), shipped)

    def test_links_of_the_pages_lead_to_what_is_installed_with_them(self):
        for package, count in ((LIBRARY, 3), (DEVELOPMENT, 6)):
            links = [(name, target) for name in self.files(package) if name.endswith(".md")
                     for target in LINK.findall(self.read(package, name))]
            self.assertGreaterEqual(len(links), count)
            for name, target in links:
                # An absolute path leads out of the folder, also into what it depends on.
                path = os.path.normpath(os.path.join("/", os.path.dirname(name), target))[1:]
                self.assertTrue(any(os.path.exists(os.path.join(self.tree(each), path))
                                    for each in (package, LIBRARY)), f"{name}: {target}")

    def test_pages_name_what_other_packages_install(self):
        page = self.read(LIBRARY, f"usr/share/doc/{LIBRARY}/hosting.md")
        for path in re.findall(r"`/(usr/[^`]+)`", page):
            self.assertTrue(any(os.path.exists(os.path.join(self.tree(each), path))
                                for each in CONTENTS) or path == "usr/share/fonts", path)
        self.assertIn("`/usr/include/zeldlg/zeldlg.h`", page)
        self.assertNotIn("../", page)

    def read(self, package, name):
        with open(os.path.join(self.tree(package), name), encoding="utf-8") as file:
            return file.read()

    def dependencies(self, package):
        return dict(re.fullmatch(r"(\S+)(?: \((.*)\))?", each).groups()
                    for each in self.field(package, "Depends").split(", "))

    def test_they_depend_on_the_packages_of_what_they_are_linked_with(self):
        for package, ours in ((LIBRARY, {}),
                              *((each, {LIBRARY: f"= {VERSION}"}) for each in PROGRAMS)):
            needed = set(ours)
            for binary in self.binaries(package):
                for soname in re.findall(r"NEEDED +(\S+)", run("objdump", "-p", binary)):
                    # Other word sizes may have a library of that name, too.
                    owner = run("dpkg", "--search",
                                f"*/{os.path.basename(LIB)}/{soname}").splitlines()[0]
                    needed.add(owner.split(":")[0])
            dependencies = self.dependencies(package)
            self.assertEqual(needed, set(dependencies))
            self.assertEqual(ours, {name: dependencies[name] for name in ours})

    def test_development_files_go_with_exactly_one_library(self):
        self.assertEqual({LIBRARY: f"= {VERSION}"}, self.dependencies(DEVELOPMENT))

    def test_the_library_comes_with_what_it_does_without(self):
        recommended = self.field(LIBRARY, "Recommends").split(", ")
        self.assertEqual(f"{SETTINGS} (= {VERSION})", recommended.pop())
        self.assertEqual("adwaita-icon-theme", recommended.pop(0))
        self.assertRegex(recommended.pop(), r"^fonts-[\w-]+( \| fonts-[\w-]+)+$")
        self.assertEqual([], recommended)

    def test_the_package_for_python_needs_no_more_than_python_and_a_library(self):
        self.assertEqual({LIBRARY: f">= {UPSTREAM}", "python3:any": None}, self.dependencies(PYTHON))

    def test_binaries_are_stripped_and_know_no_folder_of_the_build(self):
        for package, count in ((LIBRARY, 2), (DEVELOPMENT, 0), (PYTHON, 0), (DEMO, 1), (SETTINGS, 1),
                               (PKCS11, 2)):
            binaries = self.binaries(package)
            self.assertEqual(count, len(binaries))
            for binary in binaries:
                self.assertRegex(run("file", "--brief", binary), ", stripped$")
                self.assertNotRegex(run("objdump", "-p", binary), "R(UN)?PATH")
            for name in self.files(package):
                path = os.path.join(self.tree(package), name)
                if not os.path.islink(path):
                    with open(path, "rb") as file:
                        content = file.read()
                    self.assertNotIn(ROOT.encode(), content, name)

    def read_control(self, name):
        return self.read(LIBRARY, f"DEBIAN/{name}")

    def test_dependents_of_the_library_learn_its_version(self):
        self.assertEqual(f"libzeldlglib 3 {LIBRARY} (>= {UPSTREAM})\n", self.read_control("shlibs"))
        self.assertIn("activate-noawait ldconfig\n", self.read_control("triggers"))

    def test_the_symbols_are_the_52_exports(self):
        library = f"{self.tree(LIBRARY)}/{LIB}/libzeldlglib.so.{UPSTREAM}"
        self.assertIn("SONAME libzeldlglib.so.3",
                      " ".join(run("objdump", "-p", library).split()))
        listed = re.findall(r"^ (\S+)@ZELDLG_3 \S+$", self.read_control("symbols"), re.MULTILINE)
        exported = [line.split()[-1] for line in
                    run("nm", "--dynamic", "--defined-only", "--without-symbol-versions",
                        library).splitlines()]
        self.assertEqual(sorted(exported), sorted(listed))
        self.assertEqual(52, len(set(listed) - {"ZELDLG_3"}))
        # The judge of the archive: fails on symbols that are new, and on those that are gone.
        run("dpkg-gensymbols", f"-p{LIBRARY}", f"-v{VERSION}", f"-P{self.tree(LIBRARY)}",
            f"-I{self.tree(LIBRARY)}/DEBIAN/symbols", "-O", "-c4", cwd=ROOT)

    def test_the_manual_of_the_functions_has_every_export(self):
        page = self.read(DEVELOPMENT, f"usr/share/doc/{DEVELOPMENT}/html/zeldlg_8h.html")
        for name in re.findall(r"^ (\w+)@ZELDLG_3 ", self.read_control("symbols"), re.MULTILINE):
            self.assertTrue(name in page or name == "ZELDLG_3", name)

    def test_the_folders_of_pkg_config_are_plain(self):
        page = self.read(DEVELOPMENT, f"{LIB}/pkgconfig/zeldlg.pc")
        self.assertIn("\nlibdir=${prefix}/" + LIB.removeprefix("usr/") + "\n", page)
        self.assertNotIn("..", page)

    def test_symbols_for_a_debugger_are_those_of_the_binaries(self):
        for package in WITH_SYMBOLS:
            names = run("dpkg-deb", "--contents", self.path_of(f"{package}-dbgsym"))
            for binary in self.binaries(package):
                identity, = re.findall(r"BuildID\[sha1\]=(\w+)", run("file", "--brief", binary))
                self.assertIn(f"/.build-id/{identity[:2]}/{identity[2:]}.debug\n", names + "\n")

    def test_only_what_is_in_a_package_was_built(self):
        with open(os.path.join(PACKAGES, "build.log"), encoding="utf-8") as file:
            log = file.read()
        linked = {os.path.basename(name) for name in re.findall(r" -o (\S+)", log)
                  if not name.endswith((".o", ".gch"))}
        packaged = {os.path.basename(binary) for package in CONTENTS
                    for binary in self.binaries(package)}
        self.assertEqual(packaged, linked)
        # debhelper tells every project of CMake what not every one has.
        self.assertNotRegex(re.sub(r"CMake Warning:\n  Manually-specified .*\n", "", log),
                            r"(?i)\bwarning:")

    def test_lintian_finds_nothing(self):
        options = [] if os.getuid() != 0 else ["--allow-root"]
        # Overrides that are not needed any more are found as well.
        found = run("lintian", *options, "--display-info", "--pedantic", "--fail-on",
                    "error,warning", "--tag-display-limit", "0",
                    *glob.glob(os.path.join(PACKAGES, "*.changes"))).splitlines()
        # The packages are for two releases of Debian, and of the policy of the older one.
        self.assertEqual([], [line for line in found if not self.is_by_chance(line)
                              and "out-of-date-standards-version" not in line])

    @staticmethod
    def is_by_chance(line):
        """Bytes of instructions or pictures that read like a word misspelt: no text has that word."""
        misspelt = re.search(r"spelling-error-in-binary (\S+) ", line)
        return misspelt and subprocess.run(
            ["git", "-C", ROOT, "grep", "-I", "--quiet", "--word-regexp", "--fixed-strings",
             misspelt[1], "--", ":!tests"], check=False).returncode == 1


if __name__ == "__main__":
    unittest.main()
