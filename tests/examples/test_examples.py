#!/usr/bin/python3
"""The example hosts, built here and as a stranger would, used by a person at the keyboard."""

import os
import re
import subprocess
import sys
import tempfile
import unittest

from stage import ProgramTestCase

sys.path.insert(0, os.path.join(os.path.dirname(__file__), "..", "pkcs11"))

from soft_token import PIN, TokenTestCase  # noqa: E402

BUILD = os.environ["ZELDLG_BUILD"]
LIBRARY = os.environ["ZELDLG_LIBRARY"]
ROOT = os.path.abspath(os.path.join(os.path.dirname(__file__), "..", ".."))
EXAMPLES = os.path.join(ROOT, "examples")
WARNINGS = ["-Wall", "-Wextra", "-Wpedantic", "-Wconversion", "-Werror"]


def command(*words, **environment):
    result = subprocess.run(words, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                            env={**os.environ, **environment})
    if result.returncode != 0:
        raise AssertionError(f"{' '.join(words)}\n{result.stdout}")
    return result.stdout


class Linked(ProgramTestCase):
    """What holds for the C and the C++ host however they were built."""

    directory = os.path.join(BUILD, "bin", "examples")
    library_path = None

    def start_host(self, name, **environment):
        return self.start(os.path.join(self.directory, name),
                          LD_LIBRARY_PATH=self.library_path, **environment)

    def test_the_login_goes_on_until_the_pin_is_right(self):
        process = self.start_host("login")
        self.answer(process, "Enter PIN", "1357")
        self.assertIn("PIN incorrect", self.answer(process, "Enter PIN", "2468"))
        self.assertNotIn("2468", self.ends(process, 0, "logged in"))

    def test_the_pin_is_changed_while_the_main_thread_goes_on(self):
        process = self.start_host("change_pin")
        self.answer(process, "Change transport PIN", "2468", "blue17", "blue17")
        said = self.ends(process, 0, "to be changed: 4 bytes to 6 bytes")
        self.assertGreater(int(said.split()[-1]), 1)
        self.assertNotIn("blue17", said)


class BuiltHere(Linked):
    def test_cancel_ends_them(self):
        for name, title in (("login", "Enter PIN"), ("change_pin", "Change transport PIN")):
            process = self.start_host(name)
            self.answer(process, title, key="Escape")
            self.ends(process, 1, "cancelled")

    def test_three_wrong_pins_lock_the_token(self):
        process = self.start_host("login")
        for _ in range(3):
            self.answer(process, "Enter PIN", "1357")
        self.answer(process, "Token locked")
        self.ends(process, 1, "locked")

    def test_the_longest_pin_fits(self):
        process = self.start_host("login")
        self.answer(process, "Enter PIN", "\u6f22" * 8)
        self.assertIn("PIN incorrect", self.answer(process, "Enter PIN", key="Escape"))
        self.ends(process, 1, "cancelled")

    def test_without_a_display_they_say_so(self):
        for name in ("login", "change_pin"):
            self.ends(self.start_host(name, DISPLAY=""), 2, "Is there a display?")


class Python(ProgramTestCase):
    def start_host(self, **environment):
        return self.start(sys.executable, os.path.join(EXAMPLES, "sign.py"), LIBRARY,
                          PYTHONPATH=os.path.join(ROOT, "python"), **environment)

    def test_it_signs_with_the_pin(self):
        process = self.start_host()
        self.answer(process, "Enter PIN", "975310")
        self.assertNotIn("975310", self.ends(process, 0, "signing with a PIN of 6 bytes"))

    def test_cancel_ends_it(self):
        process = self.start_host()
        self.answer(process, "Enter PIN", key="Escape")
        self.ends(process, 1, "cancelled")

    def test_without_a_display_it_says_so(self):
        self.ends(self.start_host(DISPLAY=""), 2, "is there a display?")


class Installed(Linked):
    """Built against an installation under another prefix; without tests of its own."""

    @classmethod
    def setUpClass(cls):
        scratch = tempfile.TemporaryDirectory(prefix="zeldlg-installed-")
        cls.addClassCleanup(scratch.cleanup)
        cls.directory = os.path.join(scratch.name, "build")
        cls.prefix = os.path.join(scratch.name, "prefix")
        cls.install()
        cls.build()

    @classmethod
    def install(cls):
        for component in ("runtime", "development", "python"):
            command("cmake", "--install", BUILD, "--prefix", cls.prefix, "--component", component)

    def used_library(self, name):
        lines = command("ldd", os.path.join(self.directory, name),
                             LD_LIBRARY_PATH=self.library_path or "").splitlines()
        return next(line.split()[2] for line in lines if "libzeldlglib" in line)

    def test_the_installed_library_is_used(self):
        for name in ("login", "change_pin"):
            self.assertTrue(self.used_library(name).startswith(self.prefix + "/"))


class FoundByCMake(Installed):
    @classmethod
    def where(cls):
        return [f"-DCMAKE_PREFIX_PATH={cls.prefix}"]

    @classmethod
    def build(cls):
        command("cmake", "-G", "Ninja", "-S", EXAMPLES, "-B", cls.directory,
                    *cls.where(),
                    f"-DCMAKE_C_FLAGS={' '.join(WARNINGS)}",
                    f"-DCMAKE_CXX_FLAGS={' '.join(WARNINGS)}")
        command("cmake", "--build", cls.directory)


class InAnotherProject(Linked):
    """Built with hosts that have the library's sources among their own: they get it and no more."""

    tree = os.path.join(BUILD, "parent")
    directory = os.path.join(tree, "programs")

    @classmethod
    def setUpClass(cls):
        cls.configure()
        command("cmake", "--build", cls.tree)

    @classmethod
    def configure(cls, *options):
        # Neither optimised nor for a debugger: what counts is that it is built.
        launcher = "env;CCACHE_SLOPPINESS=pch_defines,time_macros;ccache"
        command("cmake", "-G", "Ninja", "-S", os.path.join(os.path.dirname(__file__), "parent"),
                "-B", cls.tree, f"-DZELDLG_SOURCE={ROOT}", "-DCMAKE_INSTALL_LIBDIR=lib64",
                "-DCMAKE_COMPILE_WARNING_AS_ERROR=ON",
                f"-DCMAKE_C_COMPILER_LAUNCHER={launcher}",
                f"-DCMAKE_CXX_COMPILER_LAUNCHER={launcher}", "-UZELDLG_INSTALL", *options)

    @staticmethod
    def files(folder):
        return sorted(os.path.relpath(os.path.join(directory, name), folder)
                      for directory, _, names in os.walk(folder) for name in names)

    def test_the_parent_keeps_its_folders_tests_and_prefix_to_itself(self):
        self.configure()
        with tempfile.TemporaryDirectory() as prefix:
            command("cmake", "--install", self.tree, "--prefix", prefix)
            self.assertEqual(["bin/change_pin", "bin/login"], self.files(prefix))
        self.assertEqual(["change_pin", "login"], self.files(self.directory))
        self.assertFalse(os.path.exists(os.path.join(self.tree, "bin")))
        self.assertFalse(os.path.exists(os.path.join(self.tree, "libzeldlglib.so")))
        self.assertIn("Total Tests: 0", command("ctest", "--test-dir", self.tree, "-N"))


class InAnotherLayout(FoundByCMake):
    """Installed by such a project, in folders that no package of Debian has."""

    @classmethod
    def install(cls):
        cls.prefix = cls.prefix.removesuffix("prefix") + "opt/zeldlg"
        InAnotherProject.configure("-DZELDLG_INSTALL=ON")
        command("cmake", "--install", InAnotherProject.tree, "--prefix", cls.prefix)

    @classmethod
    def where(cls):
        # CMake does not look into lib64 on Debian by itself.
        return [f"-Dzeldlg_DIR={cls.prefix}/lib64/cmake/zeldlg"]

    def test_everything_is_where_it_was_told_to_be(self):
        folder = os.path.join(self.prefix, "lib64")
        self.assertEqual(os.path.join(folder, "libzeldlglib.so.3"), self.used_library("login"))
        with open(os.path.join(folder, "pkgconfig", "zeldlg.pc"), encoding="utf-8") as file:
            self.assertIn(f"prefix={self.prefix}\nlibdir=${{prefix}}/lib64\n", file.read())
        self.assertFalse(os.path.exists(os.path.join(self.prefix, "bin", "zeldlg-demo")))


class FoundByPkgConfig(Installed, TokenTestCase):
    @classmethod
    def build(cls):
        os.mkdir(cls.directory)
        configs = [os.path.join(directory, "pkgconfig")
                   for directory, folders, _ in os.walk(cls.prefix) if "pkgconfig" in folders]
        configs = ":".join(configs)
        flags = command("pkg-config", "--cflags", "--libs", "zeldlg",
                            PKG_CONFIG_PATH=configs).split()
        cls.library_path = next(flag[2:] for flag in flags if flag.startswith("-L"))
        for compiler, source, name in (("cc -std=c11", "login.c", "login"),
                                       ("c++ -std=c++17", "change_pin.cpp", "change_pin")):
            command(*compiler.split(), *WARNINGS, os.path.join(EXAMPLES, source), "-o",
                        os.path.join(cls.directory, name), *flags)
        cls.build_as_the_readme_says(configs)

    @classmethod
    def build_as_the_readme_says(cls, configs):
        with open(os.path.join(ROOT, "README.md"), encoding="utf-8") as file:
            text = file.read()
        for language, name, standard in (("c", "host.c", "-std=c11"), ("cpp", "host.cpp", "")):
            program, = re.findall(rf"^```{language}\n(.*?)^```$", text, re.MULTILINE | re.DOTALL)
            words, = re.findall(rf"^`(c.* {re.escape(name)} .*?)`", text, re.MULTILINE)
            with open(os.path.join(cls.directory, name), "w", encoding="utf-8") as file:
                file.write(program)
            warnings = " ".join([standard, *WARNINGS])
            command("sh", "-c", f"cd '{cls.directory}' && {words} -o {name}.out {warnings}",
                        PKG_CONFIG_PATH=configs)
        cls.python, = re.findall(r"^```python\n(.*?)^```$", text, re.MULTILINE | re.DOTALL)

    def test_the_hosts_of_the_readme_log_in_to_a_token_and_are_short(self):
        self.make_token("Identity card")
        with open(os.path.join(ROOT, "README.md"), encoding="utf-8") as file:
            for program in re.findall(r"^```(?:cpp|python)\n(.*?)^```$", file.read(),
                                      re.MULTILINE | re.DOTALL):
                self.assertLessEqual(len(program.splitlines()), 25)
        modules, = (directory for directory, _, _ in os.walk(self.prefix)
                    if directory.endswith("dist-packages"))
        for start in (
                lambda: self.start_host("host.cpp.out", **self.softhsm),
                lambda: self.start(sys.executable, "-c", self.python, PYTHONPATH=modules,
                                   LD_LIBRARY_PATH=self.library_path, **self.softhsm)):
            process = start()
            self.answer(process, "Enter PIN", "1357")
            self.assertIn("PIN incorrect", self.answer(process, "Enter PIN", PIN))
            self.ends(process, 0, "logged in")
            process = start()
            self.answer(process, "Enter PIN", key="Escape")
            self.assertNotEqual(0, process.wait())
            self.ends(process, process.returncode, "not logged in")

    def test_the_program_of_the_readme_tells_how_long_the_pin_is(self):
        process = self.start_host("host.c.out")
        self.answer(process, "Enter PIN", "975310")
        self.assertNotIn("975310", self.ends(process, 0, "a PIN of 6 bytes"))

    def test_the_program_of_the_readme_can_be_cancelled(self):
        process = self.start_host("host.c.out")
        self.answer(process, "Enter PIN", key="Escape")
        self.assertEqual("", self.ends(process, 1))


def load_tests(loader, _tests, _pattern):
    cases = (BuiltHere, Python, FoundByCMake, InAnotherProject, InAnotherLayout,
             FoundByPkgConfig)
    return unittest.TestSuite(map(loader.loadTestsFromTestCase, cases))


if __name__ == "__main__":
    unittest.main()
